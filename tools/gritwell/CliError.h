#pragma once
// Errors the command-line host reports before exiting: a message for the
// user and the exit status (2 for bad input, 1 when the environment fails).

#include <stdexcept>
#include <string>

namespace gritwell {

class CliError : public std::runtime_error {
public:
    static constexpr int kBadInput = 2;
    static constexpr int kEnvironment = 1;

    explicit CliError(const std::string& message, int status = kBadInput)
        : std::runtime_error(message), status_(status) {}
    int status() const { return status_; }

private:
    int status_;
};

}  // namespace gritwell
