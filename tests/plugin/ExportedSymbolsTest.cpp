// The plug-in exports the host's names and nothing else of ours.

#include <cstdio>
#include <set>
#include <string>

#include <gtest/gtest.h>

TEST(ExportedSymbols, OnlyTheHostsEntryPoints) {
    const std::string command = std::string("nm -D --defined-only '") + GRITWELL_PLUGIN_PATH + "'";
    FILE* pipe = popen(command.c_str(), "r");
    ASSERT_NE(pipe, nullptr);
    std::set<std::string> exported;
    char line[512];
    while (std::fgets(line, sizeof line, pipe) != nullptr) {
        char address[64], type[8], name[400];
        if (std::sscanf(line, "%63s %7s %399s", address, type, name) == 3) exported.insert(name);
    }
    ASSERT_EQ(pclose(pipe), 0) << command;
    const std::set<std::string> expected{"beginSession",     "continueSession", "continueSessionOne",
                                         "endSession",       "interactWithUser", "appKilled",
                                         "DLL2KelmarCallBack"};
    EXPECT_EQ(exported, expected);
}
