// `gritwell dialog` refuses what it cannot do before it opens anything.

#include <sys/wait.h>

#include <cstdio>
#include <string>

#include <gtest/gtest.h>

namespace {

struct Outcome {
    int status;
    std::string err;
};

Outcome run(const std::string& environment, const std::string& args) {
    const std::string command = "env " + environment + " '" GRITWELL_CLI_PATH "' " + args + " 2>&1 >/dev/null";
    FILE* pipe = popen(command.c_str(), "r");
    std::string err;
    char buffer[256];
    while (pipe != nullptr && std::fgets(buffer, sizeof buffer, pipe) != nullptr) err += buffer;
    const int raw = pipe != nullptr ? pclose(pipe) : -1;
    return {WIFEXITED(raw) ? WEXITSTATUS(raw) : -1, err};
}

}  // namespace

TEST(DialogCommand, RefusesBeforeOpening) {
    const struct {
        const char* environment;
        const char* args;
        int status;
        const char* message;
    } cases[] = {
        {"-u DISPLAY -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM", "dialog", 1, "needs a display"},
        {"QT_QPA_PLATFORM=offscreen", "dialog /nonexistent/record.rec -o /dev/null", 2, "cannot read"},
    };
    for (const auto& c : cases) {
        const Outcome r = run(c.environment, c.args);
        EXPECT_EQ(r.status, c.status) << c.args;
        EXPECT_NE(r.err.find(c.message), std::string::npos) << r.err;
    }
}
