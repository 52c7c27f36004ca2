#pragma once
// The command line's own mistakes in gritwell's words: CLI11's parse errors
// restyled to name the command and say what it wanted, and a mistyped
// command with the nearest known one.

#include <optional>
#include <string>

#include <CLI/CLI.hpp>

namespace gritwell {

// "unknown command 'lsit'; did you mean 'list'? (commands: ...)" when the
// arguments name a command that does not exist. Asked before parsing,
// because CLI11 takes an unknown command for a missing one.
std::optional<std::string> unknownCommand(CLI::App& app, int argc, const char* const* argv);

// The message for a parse error, ending with where the command's help is.
std::string describeParseError(CLI::App& app, const CLI::ParseError& error);

}  // namespace gritwell
