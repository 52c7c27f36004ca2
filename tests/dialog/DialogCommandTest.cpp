// `gritwell dialog` as a host of the dialog: what it refuses before opening
// anything, and, driven by its hidden --script, what it prints and writes
// for each way the dialog closes.

#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "DialogTestSupport.h"
#include "core/TransformData.h"

namespace fs = std::filesystem;

namespace {

struct Outcome {
    int status;
    std::string out, err;
};

std::string readText(const fs::path& p) {
    std::ifstream in(p, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

class DialogCommand : public testing::Test {
protected:
    void SetUp() override {
        dir_ = fs::temp_directory_path() / ("gritwell-dialog-" + std::to_string(::getpid()));
        fs::create_directories(dir_);
    }
    void TearDown() override { fs::remove_all(dir_); }

    fs::path path(const std::string& name) const { return dir_ / name; }

    // `gritwell ARGS` in the test's folder, under `env ENVIRONMENT`.
    Outcome run(const std::string& environment, const std::string& args) const {
        const std::string command = "cd '" + dir_.string() + "' && env " + environment + " '" GRITWELL_CLI_PATH "' " +
                                    args + " >out.txt 2>err.txt";
        const int raw = std::system(command.c_str());
        return {WIFEXITED(raw) ? WEXITSTATUS(raw) : -1, readText(path("out.txt")), readText(path("err.txt"))};
    }

    fs::path dir_;
};

constexpr const char* kNoDisplay = "-u DISPLAY -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM -u XDG_SESSION_TYPE";

}  // namespace

TEST_F(DialogCommand, RefusesBeforeOpening) {
    std::ofstream(path("short.tf")) << "not 44 bytes";
    const std::string noServer = "DISPLAY=" + dialogtest::displayWithoutServer();
    const struct {
        std::string environment, args;
        int status;
        std::string message;
    } cases[] = {
        // Without the check, Qt would abort on each of these.
        {"", "dialog", 1, "(DISPLAY unset, WAYLAND_DISPLAY unset, QT_QPA_PLATFORM unset)"},
        {noServer, "dialog Brick", 1, "(" + noServer + ", WAYLAND_DISPLAY unset, QT_QPA_PLATFORM unset)"},
        {"QT_QPA_PLATFORM=xcb", "dialog", 1, "needs a display, and none is usable"},
        {"QT_QPA_PLATFORM=wayland WAYLAND_DISPLAY=/nonexistent", "dialog", 1, "WAYLAND_DISPLAY=/nonexistent"},
        {"QT_QPA_PLATFORM=nonesuch", "dialog", 1, "QT_QPA_PLATFORM=nonesuch)"},
        // Bad input is reported first, display or not.
        {"", "dialog NoSuchThing", 2, "neither a generator name nor a record file"},
        {"", "dialog Brick --transform short.tf", 2, "is not a transform record"},
        {"", "dialog Brick -o /nonexistent/brick.rec", 2, "/nonexistent/brick.rec"},
        {"", "dialog Brick --script Wood", 2, "--script must end with ok, cancel or close"},
        {"", "dialog Brick --no-preview --mesh x.obj", 2, "--no-preview and --mesh cannot be given together"},
    };
    for (const auto& c : cases) {
        const Outcome r = run(std::string(kNoDisplay) + " " + c.environment, c.args);
        EXPECT_EQ(r.status, c.status) << c.args;
        EXPECT_NE(r.err.find(c.message), std::string::npos) << c.args << "\n" << r.err;
        if (c.status == 1) {
            EXPECT_EQ(r.err.find('\n'), r.err.size() - 1) << "one line:\n" << r.err;
        }
    }
}

TEST_F(DialogCommand, PrintsTheUsersChangesAndWritesTheRecordAfterOkOnly) {
    ASSERT_EQ(run("", "record new Weave -o weave.rec").status, 0);
    ASSERT_EQ(run("", "record new Brick -o brick.rec").status, 0);
    gritwell::TransformData transforms;
    transforms.xOffset = 0.5f;
    transforms.zAngle = 0.25f;
    char bytes[44];
    transforms.toBytes(bytes);
    std::ofstream(path("in.tf"), std::ios::binary).write(bytes, sizeof bytes);

    const struct {
        const char* args;
        const char* firstUpdate;  // nullptr: no change, so no update line
        const char* written;      // the record -o holds afterwards; nullptr: none
    } cases[] = {
        {"dialog weave.rec --script Brick,ok", "update: Brick, 92 bytes; transforms 2 1 0.5 0 0 1 1 1 0 0 0.25",
         "brick.rec"},
        {"dialog weave.rec --script ok --no-preview", nullptr, "weave.rec"},
        {"dialog weave.rec --script Brick,cancel", "update: Brick", nullptr},
        {"dialog Weave --script Brick,close --no-preview", "update: Brick", nullptr},
    };
    for (const auto& c : cases) {
        fs::remove(path("out.rec"));
        fs::remove(path("out.tf"));
        const Outcome r = run("QT_QPA_PLATFORM=offscreen",
                              std::string(c.args) + " --transform in.tf -o out.rec --transform-out out.tf");
        ASSERT_EQ(r.status, 0) << c.args << "\n" << r.err;
        // Standard output is the host's lines alone: the loading calls and
        // the application's comings and goings are not among them.
        if (c.firstUpdate != nullptr) {
            EXPECT_EQ(r.out.rfind(c.firstUpdate, 0), 0u) << c.args << "\n" << r.out;
        } else {
            EXPECT_EQ(r.out, "") << c.args;
        }
        std::istringstream lines(r.out);
        for (std::string line; std::getline(lines, line);) EXPECT_EQ(line.rfind("update: ", 0), 0u) << line;
        const bool preview = std::string(c.args).find("--no-preview") == std::string::npos;
        EXPECT_EQ(r.err.find("gritwell: preview: ") != std::string::npos, preview) << c.args << "\n" << r.err;
        EXPECT_NE(r.err.find("transforms: 2 1 0.5 0 0 1 1 1 0 0 0.25\n"), std::string::npos) << r.err;
        EXPECT_EQ(readText(path("out.tf")), std::string(bytes, sizeof bytes)) << c.args;
        if (c.written != nullptr) {
            EXPECT_EQ(readText(path("out.rec")), readText(path(c.written))) << c.args;
        } else {
            EXPECT_FALSE(fs::exists(path("out.rec"))) << c.args;
        }
    }
}
