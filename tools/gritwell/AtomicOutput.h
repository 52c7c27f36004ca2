#pragma once
// AtomicOutput: a file written beside its destination under a temporary name
// and renamed over it only once complete, so that a failure, Ctrl-C or a
// kill leaves either the old file or the whole new one, never half of it.
// While one is open, SIGINT and SIGTERM remove the temporary and end the
// program with status 130.

#include <cstdio>
#include <string>

namespace gritwell {

class AtomicOutput {
public:
    // Creates "<path>.partial-<pid>"; a CliError (status 2) when it cannot.
    // Up to four may be open at once, each for a different path.
    explicit AtomicOutput(const std::string& path);
    // Removes the temporary unless commit() succeeded.
    ~AtomicOutput();
    AtomicOutput(const AtomicOutput&) = delete;
    AtomicOutput& operator=(const AtomicOutput&) = delete;

    // The open temporary, fully buffered; write to it with fwrite.
    std::FILE* file() const { return file_; }
    const std::string& temporaryPath() const { return temporary_; }

    // Flushes, closes and renames the temporary over the destination; a
    // CliError (status 2) when any step fails, the temporary then removed.
    // Call it once.
    void commit();

    // The status a signal ends the program with while an output is open.
    static constexpr int kInterruptedStatus = 130;

private:
    void discard();

    std::string path_;
    std::string temporary_;
    std::FILE* file_ = nullptr;
    int slot_ = 0;  // its entry among the paths a signal removes
    bool pending_ = false;  // the temporary exists and is ours to remove
};

}  // namespace gritwell
