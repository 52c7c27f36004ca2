// The command-line host, run as a user runs it.

#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace {

struct Outcome {
    int status;
    std::string out;
    std::string err;
};

std::string readText(const fs::path& p) {
    std::ifstream in(p, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

class CommandLine : public testing::Test {
protected:
    void SetUp() override {
        dir_ = fs::temp_directory_path() /
               ("gritwell-cli-" + std::to_string(::getpid()) + "-" +
                testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::create_directories(dir_);
    }
    void TearDown() override { fs::remove_all(dir_); }

    fs::path path(const std::string& name) const { return dir_ / name; }

    // Runs `gritwell ARGS` in the test's folder, with `input` on standard input.
    Outcome run(const std::string& args, const std::string& input = "") const {
        std::ofstream(path("stdin.txt")) << input;
        const std::string command = "cd '" + dir_.string() + "' && '" GRITWELL_CLI_PATH "' " + args +
                                    " <stdin.txt >stdout.txt 2>stderr.txt";
        const int raw = std::system(command.c_str());
        return {WIFEXITED(raw) ? WEXITSTATUS(raw) : -1, readText(path("stdout.txt")),
                readText(path("stderr.txt"))};
    }

    fs::path dir_;
};

}  // namespace

TEST_F(CommandLine, ListsTheHostsGenerators) {
    const Outcome r = run("list");
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_NE(r.out.find("Checkerboard     3.0      48 bytes"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("Spheres"), std::string::npos);
    EXPECT_NE(r.out.find("Constant         2.0      40 bytes"), std::string::npos);
}

TEST_F(CommandLine, RecordNewAndShowRoundTrip) {
    Outcome r = run("record new Checkerboard --set depth=2 --set variability=0.1 --set interactiveUpdate=false -o c.rec");
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(fs::file_size(path("c.rec")), 48u);

    r = run("record show c.rec");
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out,
              "{\n"
              "  \"generator\": \"Checkerboard\",\n"
              "  \"version\": \"3.0\",\n"
              "  \"size\": 48,\n"
              "  \"interactiveUpdate\": false,\n"
              "  \"fields\": {\n"
              "    \"depth\": 2,\n"
              "    \"randomizeColors\": false,\n"
              "    \"variability\": 0.1\n"
              "  }\n"
              "}\n");

    // And back: from-json reproduces the record byte for byte.
    std::ofstream(path("c.json")) << r.out;
    r = run("record from-json c.json -o back.rec");
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(readText(path("back.rec")), readText(path("c.rec")));
}

TEST_F(CommandLine, EvalPrintsTheWorkedValues) {
    const Outcome r = run("eval Checkerboard",
                      "0.5 0.5 0.5\n1.5 0.5 0.5\n# comment\n\n-0.5 0.5 0.5\n-1.0 0.5 0.5\n");
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, "0.25\n0.75\n0.75\n0.25\n");

    const Outcome deep = run("record new Checkerboard --set depth=2 -o d.rec");
    ASSERT_EQ(deep.status, 0);
    EXPECT_EQ(run("eval d.rec", "0.25 0.25 0.25\n1.25 0.25 0.25\n").out, "0.125\n0.75\n");
    EXPECT_EQ(run("eval Spheres --planar", "0.5 0.5 9\n").out, "0\n");
    EXPECT_EQ(run("eval Spheres", "0.5 0.5 9\n").out, "1\n");
}

TEST_F(CommandLine, BadInputGetsAClearMessageAndStatusTwo) {
    struct Case {
        std::string args, input, message;
    };
    std::ofstream(path("short.rec")) << "too short";
    std::ofstream(path("bad.json")) << "{ \"generator\": ";
    std::ofstream(path("unknown.json")) << R"({"generator": "Checkerboard", "fields": {"colour": 1}})";
    const Case cases[] = {
        {"record new Checkerboard --set dpth=2 -o x.rec", "", "'Checkerboard' has no field 'dpth'"},
        {"record new Checkerboard --set depth=two -o x.rec", "", "field 'depth' of Checkerboard is a 32-bit integer; 'two' is not"},
        {"record new Checkerboard --set randomizeColors=maybe -o x.rec", "", "is a bool"},
        {"record new Nothing -o x.rec", "", "unknown generator 'Nothing'"},
        {"record show missing.rec", "", "cannot read 'missing.rec': No such file or directory"},
        {"record show short.rec", "", "is not a state record: 9 bytes"},
        {"record from-json bad.json -o x.rec", "", "is not valid JSON"},
        {"record from-json unknown.json -o x.rec", "", "has no field 'colour'"},
        {"eval Checkerboard", "1 2\n", "line 1: expected three numbers"},
        {"eval NoSuchThing", "", "neither a generator name nor a record file"},
        {"render Checkerboard --size 0 -o x.png", "", "--size must be 1 to 8192"},
        {"frobnicate", "", "gritwell: "},
        {"", "", "gritwell: "},
    };
    for (const Case& c : cases) {
        const Outcome r = run(c.args, c.input);
        EXPECT_EQ(r.status, 2) << c.args;
        EXPECT_NE(r.err.find(c.message), std::string::npos) << c.args << "\n" << r.err;
        EXPECT_FALSE(fs::exists(path("x.rec")) || fs::exists(path("x.png"))) << c.args;
    }
}

TEST_F(CommandLine, DamagedRecordFilesAreNamedAsSuch) {
    std::string record(48, '\0');
    record[0] = 48;
    record.replace(1, 32, std::string(32, 'Z'));
    std::ofstream(path("unterminated.rec"), std::ios::binary) << record;
    Outcome r = run("record show unterminated.rec");
    EXPECT_EQ(r.status, 2);
    EXPECT_NE(r.err.find("name is not terminated"), std::string::npos) << r.err;

    ASSERT_EQ(run("record new Checkerboard -o c.rec").status, 0);
    std::string truncated = readText(path("c.rec")).substr(0, 40);
    std::ofstream(path("cut.rec"), std::ios::binary) << truncated;
    r = run("record show cut.rec");
    EXPECT_EQ(r.status, 2);
    EXPECT_NE(r.err.find("40 bytes, a Checkerboard record holds 48"), std::string::npos) << r.err;

    // Another version: shown with a note, evaluated at the defaults with a warning.
    std::string old = readText(path("c.rec"));
    old[33] = 2;
    std::ofstream(path("old.rec"), std::ios::binary) << old;
    r = run("record show old.rec");
    EXPECT_EQ(r.status, 0);
    EXPECT_NE(r.out.find("\"version\": \"2.0\""), std::string::npos);
    EXPECT_NE(r.out.find("not the current version 3.0"), std::string::npos);
    r = run("eval old.rec", "1.5 0.5 0.5\n");
    EXPECT_EQ(r.out, "0.75\n");
    EXPECT_NE(r.err.find("evaluates the defaults"), std::string::npos);
}

TEST_F(CommandLine, RenderWritesAPngOfTheSlice) {
    const Outcome r = run("render Checkerboard --size 64 --extent 2 -o out.png");
    ASSERT_EQ(r.status, 0) << r.err;
    const std::string png = readText(path("out.png"));
    ASSERT_GT(png.size(), 8u);
    EXPECT_EQ(png.substr(1, 3), "PNG");
    EXPECT_FALSE(fs::exists(path("out.png.partial")));
}

TEST_F(CommandLine, AMissingPluginIsReported) {
    const Outcome r = run("--plugin /nonexistent/GritwellPlugin.so eval Checkerboard", "0 0 0\n");
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.err.find("cannot load the plug-in /nonexistent/GritwellPlugin.so"), std::string::npos) << r.err;
}

TEST_F(CommandLine, RecordFormatsDocumentIsCurrent) {
    const Outcome r = run("record formats");
    ASSERT_EQ(r.status, 0);
    EXPECT_EQ(r.out, readText(fs::path(GRITWELL_SOURCE_DIR) / "docs" / "records.md"))
        << "regenerate it: build/gritwell record formats > docs/records.md";
}
