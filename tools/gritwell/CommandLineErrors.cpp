#include "CommandLineErrors.h"

#include <cctype>
#include <sstream>
#include <string_view>
#include <vector>

#include "Nearest.h"

namespace gritwell {

namespace {

// "render", "record new"; empty for the program itself.
std::string commandPath(const CLI::App* app) {
    std::string path;
    for (; app != nullptr && app->get_parent() != nullptr; app = app->get_parent())
        path = app->get_name() + (path.empty() ? "" : " " + path);
    return path;
}

// The command the error belongs to: the last one the arguments reached.
CLI::App* failingCommand(CLI::App& app) {
    CLI::App* at = &app;
    while (!at->get_subcommands().empty()) at = at->get_subcommands().back();
    return at;
}

std::vector<std::string> commandNames(CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::App* sub : app.get_subcommands([](CLI::App*) { return true; })) names.push_back(sub->get_name());
    return names;
}

std::string joined(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& w : words) text += (text.empty() ? "" : ", ") + w;
    return text;
}

// "-o/--output" for an option, its name for a positional argument.
std::string displayName(const CLI::Option& option) {
    std::string name = option.get_name(false, true);
    if (name.empty()) name = option.get_name(true, false);
    for (char& c : name)
        if (c == ',') c = '/';
    return name;
}

bool takesValue(const CLI::Option& option) { return option.get_type_size_min() > 0; }

std::string afterPrefix(const std::string& text, std::string_view prefix) {
    const auto at = text.find(prefix);
    return at == std::string::npos ? std::string() : text.substr(at + prefix.size());
}

std::string unexpected(const CLI::App& command, const std::string& arguments) {
    std::vector<std::string> names;
    for (const CLI::Option* o : command.get_options()) {
        for (const std::string& name : o->get_lnames()) names.push_back("--" + name);
        for (const std::string& name : o->get_snames()) names.push_back("-" + name);
    }
    const std::vector<std::string_view> candidates(names.begin(), names.end());
    // CLI11 lists them last first.
    std::vector<std::string> words;
    std::istringstream split(arguments);
    for (std::string word; split >> word;) words.insert(words.begin(), word);
    for (const std::string& word : words)
        if (word.size() > 1 && word[0] == '-') {
            const std::string option = word.substr(0, word.find('='));
            return "there is no option '" + option + "'" + didYouMean(option, candidates);
        }
    std::string list;
    for (const std::string& word : words) list += (list.empty() ? "'" : ", '") + word + "'";
    return "unexpected argument" + std::string(words.size() > 1 ? "s " : " ") + list;
}

}  // namespace

std::optional<std::string> unknownCommand(CLI::App& app, int argc, const char* const* argv) {
    CLI::App* level = &app;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        const std::vector<std::string> names = commandNames(*level);
        if (names.empty() || arg == "--") return std::nullopt;
        if (arg[0] == '-') {
            const CLI::Option* option = level->get_option_no_throw(arg.substr(0, arg.find('=')));
            if (option != nullptr && takesValue(*option) && arg.find('=') == std::string::npos) ++i;
            continue;
        }
        CLI::App* sub = nullptr;
        try {
            sub = level->get_subcommand(arg);
        } catch (const CLI::OptionNotFound&) {
            const std::vector<std::string_view> candidates(names.begin(), names.end());
            const std::string path = commandPath(level);
            return "unknown " + (path.empty() ? std::string() : path + " ") + "command '" + arg + "'" +
                   didYouMean(arg, candidates) + " (commands: " + joined(names) + ")";
        }
        level = sub;
    }
    return std::nullopt;
}

std::string describeParseError(CLI::App& app, const CLI::ParseError& error) {
    CLI::App* command = failingCommand(app);
    const std::string path = commandPath(command);
    const std::string lead = path.empty() ? "" : path + ": ";
    const std::string text = error.what();
    auto option = [command](const std::string& name) { return command->get_option_no_throw(name); };
    std::string message;

    if (dynamic_cast<const CLI::RequiredError*>(&error) != nullptr) {
        const std::string name = text.substr(0, text.find(" is required"));
        if (text.starts_with("A subcommand")) {
            message = lead + "a command is required: " + joined(commandNames(*command));
        } else if (const CLI::Option* o = option(name)) {
            message = lead + displayName(*o) + " is required: " + o->get_description();
        }
    } else if (dynamic_cast<const CLI::ConversionError*>(&error) != nullptr) {
        const std::string rest = afterPrefix(text, "Could not convert: ");
        const std::string name = rest.substr(0, rest.find(" = "));
        if (const CLI::Option* o = rest.empty() ? nullptr : option(name)) {
            const std::string type = o->get_type_name();
            const bool one = o->get_items_expected_max() == 1;
            const std::string wanted = type == "INT"     ? (one ? "a whole number" : "whole numbers")
                                       : type == "FLOAT" ? (one ? "a number" : "numbers")
                                                         : "a value";
            message = lead + displayName(*o) + " takes " + wanted + ", not '" + afterPrefix(rest, " = ") + "'";
        }
    } else if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) != nullptr) {
        const std::string name = text.substr(0, text.find(':'));
        if (const CLI::Option* o = option(name)) {
            const std::string received = afterPrefix(text, "received ");
            message = lead + displayName(*o) +
                      (received.empty() ? " needs a value"
                                        : " takes " + std::to_string(o->get_items_expected_min()) + " values, not " +
                                              received) +
                      " (" + o->get_description() + ")";
        }
    } else if (dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr) {
        message = lead + unexpected(*command, afterPrefix(text, "expected: "));
    } else if (dynamic_cast<const CLI::ExcludesError*>(&error) != nullptr) {
        const auto at = text.find(" excludes ");
        message = lead + text.substr(0, at) + " and " + text.substr(at + 10) + " cannot be given together";
    }
    if (message.empty()) {
        message = lead + text;
        message[lead.size()] = static_cast<char>(std::tolower(static_cast<unsigned char>(message[lead.size()])));
    }
    return message + "\nRun 'gritwell " + (path.empty() ? "" : path + " ") + "--help' for " +
           (path.empty() ? "the commands." : "its options.");
}

}  // namespace gritwell
