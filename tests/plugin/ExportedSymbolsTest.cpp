// The plug-in exports the host's names and nothing else of ours; the
// command-line host exports only the variable the plug-in looks up.

#include <cstdio>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "plugin/HostInterface.h"

namespace {

std::set<std::string> exportedNames(const std::string& path) {
    const std::string command = "nm -D --defined-only '" + path + "'";
    FILE* pipe = popen(command.c_str(), "r");
    EXPECT_NE(pipe, nullptr) << command;
    std::set<std::string> exported;
    if (pipe == nullptr) return exported;
    char line[512];
    while (std::fgets(line, sizeof line, pipe) != nullptr) {
        char address[64], type[8], name[400];
        if (std::sscanf(line, "%63s %7s %399s", address, type, name) == 3) exported.insert(name);
    }
    EXPECT_EQ(pclose(pipe), 0) << command;
    return exported;
}

}  // namespace

TEST(ExportedSymbols, OnlyTheHostsEntryPoints) {
    const std::set<std::string> expected{"beginSession",     "continueSession", "continueSessionOne",
                                         "endSession",       "interactWithUser", "appKilled",
                                         "DLL2KelmarCallBack"};
    EXPECT_EQ(exportedNames(GRITWELL_PLUGIN_PATH), expected);
}

TEST(ExportedSymbols, TheCommandLineHostExportsItsLevelRequestOnly) {
    // The C library's and the C++ library's own symbols aside: ours carry
    // the project's name.
    std::set<std::string> ours;
    for (const std::string& name : exportedNames(GRITWELL_CLI_PATH))
        if (name.find("gritwell") != std::string::npos) ours.insert(name);
    EXPECT_EQ(ours, std::set<std::string>{kRequestedSimdLevelName});
}
