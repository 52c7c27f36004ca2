// The command-line host, run as a user runs it, and the dialog's preview
// held to what its commands draw.

#include <signal.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <ImfFrameBuffer.h>
#include <ImfHeader.h>
#include <ImfInputFile.h>

#include "Colormap.h"
#include "DialogPreview.h"
#include "MeshReader.h"
#include "core/TransformData.h"

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

    // The files in the test's folder, but for the run's own stdin/out/err.
    std::set<std::string> files() const {
        std::set<std::string> names;
        for (const auto& e : fs::directory_iterator(dir_)) {
            const std::string name = e.path().filename().string();
            if (name != "stdin.txt" && name != "stdout.txt" && name != "stderr.txt") names.insert(name);
        }
        return names;
    }

    // What the folder holds, file by file: a refused command leaves it so.
    std::map<std::string, std::string> contents() const {
        std::map<std::string, std::string> all;
        for (const std::string& name : files()) all[name] = readText(path(name));
        return all;
    }

    // Runs `gritwell ARGS` in the test's folder, with `input` on standard input.
    Outcome run(const std::string& args, const std::string& input = "") const {
        return shell("'" GRITWELL_CLI_PATH "' " + args, input);
    }

    // Runs a shell command in the test's folder.
    Outcome shell(const std::string& command, const std::string& input = "") const {
        std::ofstream(path("stdin.txt")) << input;
        const std::string line =
            "cd '" + dir_.string() + "' && " + command + " <stdin.txt >stdout.txt 2>stderr.txt";
        const int raw = std::system(line.c_str());
        return {WIFEXITED(raw) ? WEXITSTATUS(raw) : -1, readText(path("stdout.txt")),
                readText(path("stderr.txt"))};
    }

    fs::path dir_;
};

// A painted mesh as `gritwell paint` writes it.
struct PaintedMesh {
    struct Vertex {
        float x, y, z, intensity;
        unsigned char rgb[3];
    };
    std::vector<Vertex> vertices;
    std::vector<std::vector<std::int32_t>> faces;
};

PaintedMesh readPaintedPly(const fs::path& p) {
    const std::string bytes = readText(p);
    PaintedMesh mesh;
    const auto end = bytes.find("end_header\n");
    if (end == std::string::npos) return mesh;
    std::istringstream header(bytes.substr(0, end));
    std::size_t vertices = 0, faces = 0;
    for (std::string line; std::getline(header, line);) {
        std::sscanf(line.c_str(), "element vertex %zu", &vertices);
        std::sscanf(line.c_str(), "element face %zu", &faces);
    }
    const char* at = bytes.data() + end + 11;
    const char* const last = bytes.data() + bytes.size();
    for (std::size_t v = 0; v < vertices && at + 19 <= last; ++v, at += 19) {
        PaintedMesh::Vertex vertex;
        std::memcpy(&vertex, at, 16);
        std::memcpy(vertex.rgb, at + 16, 3);
        mesh.vertices.push_back(vertex);
    }
    for (std::size_t f = 0; f < faces && at < last; ++f) {
        const auto n = static_cast<unsigned char>(*at++);
        std::vector<std::int32_t> face(n);
        std::memcpy(face.data(), at, 4 * n);
        at += 4 * n;
        mesh.faces.push_back(face);
    }
    return mesh;
}

const std::string kSampleMesh = std::string(GRITWELL_SOURCE_DIR) + "/samples/bust.obj";

// Every 37th vertex as `gritwell eval` input lines, printed so they read
// back as the same floats.
std::string someVertices(const PaintedMesh& mesh) {
    std::string lines;
    char line[96];
    for (std::size_t v = 0; v < mesh.vertices.size(); v += 37) {
        std::snprintf(line, sizeof line, "%.9g %.9g %.9g\n", mesh.vertices[v].x, mesh.vertices[v].y,
                      mesh.vertices[v].z);
        lines += line;
    }
    return lines;
}

// eval's values against the painted intensities of the same vertices, bit for bit.
void expectSameBits(const PaintedMesh& mesh, const std::string& evalOutput) {
    std::istringstream values(evalOutput);
    std::size_t v = 0, compared = 0;
    for (std::string text; std::getline(values, text); v += 37, ++compared) {
        ASSERT_LT(v, mesh.vertices.size());
        const float value = std::strtof(text.c_str(), nullptr);
        EXPECT_EQ(std::memcmp(&value, &mesh.vertices[v].intensity, 4), 0)
            << "vertex " << v << ": eval " << text << ", paint " << mesh.vertices[v].intensity;
    }
    EXPECT_EQ(compared, (mesh.vertices.size() + 36) / 37);
}

}  // namespace

TEST_F(CommandLine, ListsTheHostsGenerators) {
    const Outcome r = run("list");
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_NE(r.out.find("Checkerboard     3.0      48 bytes"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("Spheres"), std::string::npos);
    EXPECT_NE(r.out.find("Constant         2.0      40 bytes"), std::string::npos);
    EXPECT_EQ(run("--version").out.substr(0, 9), "gritwell ");
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
    std::string unterminated(48, 'Z');
    unterminated[0] = 48;
    std::ofstream(path("unterminated.rec"), std::ios::binary) << unterminated;
    ASSERT_EQ(run("record new Checkerboard -o c.rec").status, 0);
    std::ofstream(path("cut.rec"), std::ios::binary) << readText(path("c.rec")).substr(0, 40);
    std::ofstream(path("huge.json")) << R"({"generator":"Brick","fields":{"brickHeight":1e400}})";
    std::ofstream(path("big.json")) << R"({"generator":"Brick","fields":{"brickHeight":1e300}})";
    std::ofstream(path("wide.json")) << R"({"generator":"Brick","size":4294967388})";
    std::ofstream(path("text.json")) << R"({"generator":"Brick","interactiveUpdate":[1]})";
    fs::create_directories(path("folder.json"));
    std::ofstream(path("t.ply")) << "ply\nformat ascii 1.0\n";
    const Case cases[] = {
        {"record new Checkerboard --set dpth=2 -o x.rec", "", "'Checkerboard' has no field 'dpth'"},
        {"record new Checkerboard --set depth=two -o x.rec", "", "field 'depth' of Checkerboard is a 32-bit integer; 'two' is not"},
        {"record new Checkerboard --set randomizeColors=maybe -o x.rec", "", "is a bool"},
        {"record new Nothing -o x.rec", "", "unknown generator 'Nothing'"},
        {"record show missing.rec", "", "'missing.rec' is neither a generator name nor a record file"},
        {"record show short.rec", "", "is not a state record: 9 bytes"},
        {"record show unterminated.rec", "", "name is not terminated"},
        {"record show cut.rec", "", "40 bytes, a Checkerboard record holds 48"},
        {"record from-json bad.json -o x.rec", "", "is not valid JSON"},
        {"record from-json unknown.json -o x.rec", "", "has no field 'colour'"},
        {"record from-json huge.json -o x.rec", "", "'huge.json' is not a record in JSON: "},
        {"record from-json big.json -o x.rec", "", "'1e+300' is beyond its range"},
        {"record from-json wide.json -o x.rec", "", "\"size\" is the record's size byte, 0 to 255; 4294967388 is not"},
        {"record from-json text.json -o x.rec", "", "is a bool (true or false); '[1]' is not"},
        {"record from-json folder.json -o x.rec", "", "cannot read 'folder.json': it is a folder"},
        {"record show folder.json", "", "cannot read 'folder.json': it is a folder"},
        {"eval Brick --transform folder.json", "", "cannot read 'folder.json': it is a folder"},
        {"paint t.ply Brick -o x.ply", "", "its header ends before 'end_header'"},
        {"eval Checkerboard", "1 2\n", "line 1: expected three numbers"},
        {"eval Checkerboard", "0 0 0\n1e400 0 0\n", "line 2: expected three numbers 'x y z', got '1e400 0 0'"},
        {"eval NoSuchThing", "", "neither a generator name nor a record file"},
        {"render Checkerboard --size 0 -o x.png", "", "--size must be 1 to 65536"},
        {"render Checkerboard --size 65537 -o x.exr", "", "--size must be 1 to 65536"},
        {"render Checkerboard -o x.jpg", "", "-o 'x.jpg': .jpg is not a format gritwell writes; pictures are written as: .png, .exr"},
        {"render Checkerboard --16bit -o x.exr", "", "--16bit is for PNG: an EXR holds 32-bit floats"},
        {"render Checkerboard --threads -1 -o x.png", "", "--threads must be 1 to 1024"},
        {"render Checkerboard --ramp 0:#000000,1:#fff -o x.png", "", "'#fff' is not a colour #RRGGBB"},
        {"render Checkerboard --ramp wood --colormap heat -o x.png", "", "give one of them"},
        {"gallery -o x", "", "-o 'x' has no extension to name its format; pictures are written as: .png"},
        {"--simd sse9 eval Voronoi", "1 2 3\n", "--simd must be scalar, avx2 or avx512, not 'sse9'"},
        {"frobnicate", "", "unknown command 'frobnicate' (commands: list, info, record, "},
        {"lsit", "", "unknown command 'lsit'; did you mean 'list'?"},
        {"record shwo c.rec", "", "unknown record command 'shwo'; did you mean 'show'?"},
        {"", "", "a command is required: list, info, record, "},
        {"render Checkerboard --sise 3 -o x.png", "", "render: there is no option '--sise'; did you mean '--size'?"},
        {"render Checkerboard", "", "render: -o/--output is required: the picture to write: .png, or .exr"},
        {"render Checkerboard --size many -o x.png", "", "render: --size takes a whole number, not 'many'"},
        {"eval Checkerboard --offset 1,2", "", "eval: --offset takes 3 values, not 2"},
        {"record show Chekerboard", "", "did you mean 'Checkerboard'?"},
        {"record new Brick --set pattern=Herringbon -o x.rec", "",
         "'pattern' of Brick is a number or one of the dialog's labels (Running Bond, Herringbone); 'Herringbon' is "
         "neither; did you mean 'Herringbone'?"},
        {"info Brik", "", "unknown generator 'Brik'; did you mean 'Brick'?"},
        {"record set Checkerboard depth=2", "", "'Checkerboard' is a generator name, and record set changes a record file"},
        {"transform new --scale 1,0,1 -o x.rec", "", "the transform's y scale must not be 0"},
    };
    for (const Case& c : cases) {
        const Outcome r = run(c.args, c.input);
        EXPECT_EQ(r.status, 2) << c.args;
        EXPECT_NE(r.err.find(c.message), std::string::npos) << c.args << "\n" << r.err;
        EXPECT_FALSE(fs::exists(path("x.rec")) || fs::exists(path("x.png")) || fs::exists(path("x.jpg")) ||
                     fs::exists(path("x.ply")))
            << c.args;
    }
}

TEST_F(CommandLine, EveryInstructionSetGivesTheSameValues) {
    // Enough points for whole vector blocks and a remainder, across cells.
    std::string points;
    for (int i = 0; i < 45; ++i)
        points += std::to_string(0.37f * i - 7.0f) + " " + std::to_string(1.3f - 0.21f * i) + " " +
                  std::to_string(0.05f * i * i - 3.0f) + "\n";
    const Outcome best = run("eval Voronoi", points);
    ASSERT_EQ(best.status, 0) << best.err;
    for (const std::string level : {"scalar", "avx2", "avx512"}) {
        const Outcome held = run("--simd " + level + " eval Voronoi", points);
        ASSERT_EQ(held.status, 0) << level << held.err;
        EXPECT_EQ(held.out, best.out) << level;
    }
}

TEST_F(CommandLine, RecordFormatsDocumentIsCurrent) {
    const Outcome r = run("record formats");
    ASSERT_EQ(r.status, 0);
    EXPECT_EQ(r.out, readText(fs::path(GRITWELL_SOURCE_DIR) / "docs" / "records.md"))
        << "regenerate it: build/gritwell record formats > docs/records.md";
}

// ---- paint ------------------------------------------------------------------

TEST_F(CommandLine, PaintGivesEachVertexWhatEvalGivesItsPoint) {
    Outcome r = run("paint '" + kSampleMesh + "' 'Perlin Noise' -o bust.ply");
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.err, "") << "no progress when standard error is not a terminal";
    const PaintedMesh mesh = readPaintedPly(path("bust.ply"));
    // The sample's vertices and faces as the file has them: a base fan of 96
    // triangles, 60 rings of 96 quads, a crown fan.
    ASSERT_EQ(mesh.vertices.size(), 5858u);
    ASSERT_EQ(mesh.faces.size(), 5952u);
    std::size_t quads = 0;
    for (const auto& face : mesh.faces) {
        quads += face.size() == 4;
        for (const std::int32_t i : face) ASSERT_TRUE(i >= 0 && i < 5858) << i;
    }
    EXPECT_EQ(quads, 96u * 60);

    r = run("eval 'Perlin Noise'", someVertices(mesh));
    ASSERT_EQ(r.status, 0) << r.err;
    expectSameBits(mesh, r.out);
    for (const auto& v : mesh.vertices) {
        const float clamped = std::isnan(v.intensity) ? 0.0f : std::fmin(std::fmax(v.intensity, 0.0f), 1.0f);
        const auto grey = static_cast<unsigned char>(std::lround(clamped * 255.0f));
        ASSERT_EQ(v.rgb[0], grey);
        ASSERT_EQ(v.rgb[1], grey);
        ASSERT_EQ(v.rgb[2], grey);
    }

    // Moved, turned and scaled: paint and eval place the texture alike, from
    // options or from a transform record file (whose flags word is planar).
    r = run("transform new --planar --offset 0.25,0,0 --rotate 0,0.1,0 --scale 1,1,3 --overall 0.5 -o t.xf");
    ASSERT_EQ(r.status, 0) << r.err;
    r = run("transform show t.xf");
    EXPECT_EQ(r.out.rfind("{\n  \"flags\": 6,\n  \"planar\": true,\n", 0), 0u) << r.out;
    EXPECT_NE(r.out.find("\"overall\": 0.5\n}"), std::string::npos) << r.out;
    for (const std::string transform :
         {"--offset=-0.5,0.1,2 --rotate 0.125,0,0.3 --scale 1,2,0.5 --overall 1.5", "--transform t.xf"}) {
        r = run("paint '" + kSampleMesh + "' Wood -o moved.ply " + transform);
        ASSERT_EQ(r.status, 0) << r.err;
        const PaintedMesh moved = readPaintedPly(path("moved.ply"));
        r = run("eval Wood " + transform, someVertices(moved));
        ASSERT_EQ(r.status, 0) << r.err;
        expectSameBits(moved, r.out);
        EXPECT_NE(readText(path("moved.ply")), readText(path("bust.ply")));
    }
}

TEST_F(CommandLine, PaintKeepsAPlyMeshAsItIs) {
    ASSERT_EQ(run("paint '" + kSampleMesh + "' Brick -o once.ply").status, 0);
    // The painted PLY read back: same vertices in the same order, same
    // faces, so painting it again gives the same file.
    const Outcome r = run("paint once.ply Brick -o twice.ply");
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(readText(path("twice.ply")), readText(path("once.ply")));
}

TEST_F(CommandLine, PaintErrorsLeaveNothingBehind) {
    fs::copy_file(kSampleMesh, path("bust.obj"));
    std::ofstream(path("junk.obj")) << "this is not a mesh at all, just some words\n";
    std::ofstream(path("short.xf")) << "too short";
    fs::create_directories(path("folder.ply"));
    struct Case {
        std::string args, message;
        int status = 2;
    };
    const Case cases[] = {
        {"paint bust.obj NoSuchGenerator -o out.ply", "'NoSuchGenerator' is neither a generator name nor a record file"},
        {"paint missing.obj Brick -o out.ply", "cannot read 'missing.obj': No such file or directory"},
        {"paint junk.obj Brick -o out.ply", "'junk.obj' has no vertices to paint"},
        {"paint bust.xyz Brick -o out.ply", "the formats it reads are .obj, .ply, .stl, .off, .gltf, .glb"},
        {"paint bust.obj Brick -o missing/out.ply", "cannot write 'missing/out.ply': No such file or directory"},
        {"paint bust.obj Brick -o folder.ply", "cannot write 'folder.ply': Is a directory"},
        {"paint bust.obj Brick -o out.ply --preview missing/out.png", "cannot write 'missing/out.png'"},
        {"paint bust.obj Brick -o out.obj", "painted meshes are written as: .ply"},
        {"paint bust.obj Brick -o out.ply --scale 1,0,1", "the transform's y scale must not be 0"},
        {"paint bust.obj Brick -o out.ply --offset 1,2", "--offset"},
        {"paint bust.obj Brick -o out.ply --transform short.xf", "'short.xf' is not a transform record: 9 bytes"},
        {"paint bust.obj Brick -o out.ply --transform none.xf", "cannot read 'none.xf'"},
        {"paint bust.obj Brick -o out.ply --preview out.png --colormap rainbow", "unknown colour map 'rainbow'"},
        {"paint bust.obj Brick -o out.ply --preview out.png --preview-size 5", "--preview-size must be 16 to 4096"},
        {"paint bust.obj Brick -o out.ply --preview out.png --view 0.5", "--view takes 2 values, not 1"},
        {"paint bust.obj 'Cell Noise' -o out.ply", "host sessions never open it"},
        {"--plugin /nonexistent.so paint bust.obj Brick -o out.ply", "cannot load the plug-in", 1},
    };
    const auto before = contents();
    for (const Case& c : cases) {
        const Outcome r = run(c.args);
        EXPECT_EQ(r.status, c.status) << c.args;
        EXPECT_NE(r.err.find(c.message), std::string::npos) << c.args << "\n" << r.err;
        EXPECT_EQ(contents(), before) << c.args;
    }
}

TEST_F(CommandLine, PaintShowsProgressOnATerminalOnly) {
    // `script` gives the program a terminal and copies what it shows.
    const std::string command = "script -qec \"'" GRITWELL_CLI_PATH "' paint '" + kSampleMesh +
                                "' Brick -o bust.ply --preview bust.png\" /dev/null";
    const Outcome r = shell(command);
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_NE(r.out.find("\rpaint: reading " + kSampleMesh), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("\rpaint: 0% of 5858 points"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("\rpaint: 5858 points in "), std::string::npos) << r.out;
    EXPECT_NE(r.out.find(" points/s"), std::string::npos) << r.out;
    const std::string png = readText(path("bust.png"));
    ASSERT_GT(png.size(), 24u);
    EXPECT_EQ(png.substr(1, 3), "PNG");
}

TEST_F(CommandLine, InterruptedPaintLeavesNoFileAndExits130) {
    // The mesh is a pipe nobody writes to: paint has opened its outputs and
    // waits for the mesh when the signal comes.
    ASSERT_EQ(::mkfifo(path("pipe.obj").c_str(), 0600), 0);
    std::ofstream(path("out.ply")) << "the previous painting";
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            if (::chdir(dir_.c_str()) != 0) ::_exit(99);
            std::freopen("stderr.txt", "w", stderr);
            ::execl(GRITWELL_CLI_PATH, "gritwell", "paint", "pipe.obj", "Brick", "-o", "out.ply", "--preview",
                    "out.png", static_cast<char*>(nullptr));
            ::_exit(98);
        }
        const fs::path partial = path("out.ply.partial-" + std::to_string(child));
        for (int i = 0; i < 2000 && !fs::exists(partial); ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        EXPECT_TRUE(fs::exists(partial)) << "paint never opened its output";
        ::kill(child, signal);
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFEXITED(status)) << strsignal(signal);
        EXPECT_EQ(WEXITSTATUS(status), 130) << strsignal(signal);
        EXPECT_EQ(files(), (std::set<std::string>{"out.ply", "pipe.obj"})) << strsignal(signal);
        EXPECT_EQ(readText(path("out.ply")), "the previous painting") << strsignal(signal);
    }
}

TEST_F(CommandLine, TheSampleMeshIsWhatItsScriptMakes) {
    const Outcome r = shell("python3 '" GRITWELL_SOURCE_DIR "/tools/samples/make_mesh.py' made.obj");
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(readText(path("made.obj")), readText(kSampleMesh))
        << "regenerate it: tools/samples/make_mesh.py";
}

// ---- records as presets -------------------------------------------------------

TEST_F(CommandLine, RecordSetEditsInPlaceAndNewStartsFromARecord) {
    ASSERT_EQ(run("record new Brick -o b.rec").status, 0);
    Outcome r = run("record set b.rec pattern=0 brickWidth=0.5 randomizeColors=on");
    ASSERT_EQ(r.status, 0) << r.err;
    r = run("record show b.rec");
    EXPECT_NE(r.out.find("\"pattern\": 0,"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("\"brickWidth\": 0.5,"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("\"randomizeColors\": true,"), std::string::npos) << r.out;
    // The dialog calls the brick pattern 0 "Running Bond" (its labels are
    // crossed with the patterns drawn).
    EXPECT_NE(r.out.find("\"labels\": {\n    \"pattern\": \"Running Bond\"\n  }"), std::string::npos) << r.out;
    EXPECT_EQ(files(), (std::set<std::string>{"b.rec"}));

    // A name stands for its defaults wherever a record file does.
    ASSERT_EQ(run("record new --from Brick -o named.rec").status, 0);
    EXPECT_EQ(run("record show Brick").out, run("record show named.rec").out);
    // A copy of it, NAME optional, then more fields.
    r = run("record new --from b.rec --set mortarThickness=0.02 -o c.rec");
    ASSERT_EQ(r.status, 0) << r.err;
    ASSERT_EQ(run("record new Brick --from b.rec -o same.rec").status, 0);
    EXPECT_EQ(readText(path("same.rec")), readText(path("b.rec")));
    r = run("record show c.rec");
    EXPECT_NE(r.out.find("\"brickWidth\": 0.5,"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("\"mortarThickness\": 0.02,"), std::string::npos) << r.out;

}

TEST_F(CommandLine, RecordSetTakesLabelsAndWarnsOfValuesTheDialogNeverGives) {
    ASSERT_EQ(run("record new Brick -o b.rec").status, 0);
    struct Case {
        std::string assignment, warning, shown;
    };
    const Case cases[] = {
        {"'pattern=running bond'", "", "\"pattern\": 0,"},
        {"brickWidth=500", "brickWidth=500 is outside the dialog's range, 0.001 to 99.990", "\"brickWidth\": 500.0,"},
        {"maxColor=-inf", "maxColor=-inf is not finite", "\"maxColor\": \"-inf\""},
        {"pattern=7", "pattern=7 is none of the dialog's items (it shows no item)", "\"pattern\": 7,"},
    };
    for (const Case& c : cases) {
        const Outcome r = run("record set b.rec " + c.assignment);
        EXPECT_EQ(r.status, 0) << c.assignment;
        EXPECT_EQ(r.err, c.warning.empty() ? ""
                                           : "gritwell: warning: " + c.warning +
                                                 "; stored as given, for records are never clamped\n");
        EXPECT_NE(run("record show b.rec").out.find(c.shown), std::string::npos) << c.assignment;
    }
}

TEST_F(CommandLine, InfoDescribesTheGeneratorsAndEveryField) {
    Outcome r = run("info");
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_NE(r.out.find("\nBrick            Mortar-jointed bricks in a running bond or a herringbone\n"), std::string::npos);
    EXPECT_NE(r.out.find("\nPenrose Rhombus  A Penrose tiling"), std::string::npos) << r.out;
    r = run("info Brick");
    for (const std::string field :
         {"pattern: int32 enumeration, default 1 (Herringbone); the dialog: 0 Running Bond, 1 Herringbone\n"
          "  How the bricks are laid\n",
          "brickWidth: float, default 0.8; the dialog: 0.001 to 99.990\n  Length of a brick along X, without mortar\n",
          "randomizeColors: bool, default false; the dialog: on or off\n"})
        EXPECT_NE(r.out.find(field), std::string::npos) << field << "\n" << r.out;
    EXPECT_NE(run("info Plaid").out.find("color1: float, default 0.234318; not in the dialog\n"), std::string::npos);
    r = run("info Voronoi --json");
    const nlohmann::json voronoi = nlohmann::json::parse(r.out);
    EXPECT_EQ(voronoi["fields"][0]["dialog"], nlohmann::json::parse(R"({"control": "number", "minimum": 0, "maximum": 1000})"));
    EXPECT_EQ(voronoi["fields"][2]["dialog"]["values"][2], nlohmann::json::parse(R"({"value": 2, "label": "Taxicab"})"));
    EXPECT_EQ(nlohmann::json::parse(run("info --json").out).size(), 34u);
}

TEST_F(CommandLine, OlderRecordsShowAndEvaluateWhatThePluginMakesOfThem) {
    // A version-3 Brick record (64 bytes): the four sizes, then the random
    // intensities; version 4 converts it.
    std::string brick3(64, '\0');
    brick3[0] = 64;
    brick3.replace(1, 5, "Brick");
    brick3[33] = 3;
    brick3[35] = 1;
    const float sizes[] = {0.5f, 1.25f, 0.75f, 0.05f};  // height, width, depth, mortar
    std::memcpy(&brick3[36], sizes, sizeof sizes);
    brick3[52] = 1;
    const float colours[] = {0.25f, 0.625f};
    std::memcpy(&brick3[56], colours, sizeof colours);
    std::ofstream(path("b3.rec"), std::ios::binary) << brick3;
    std::string brick2 = brick3;
    brick2[33] = 2;
    std::ofstream(path("b2.rec"), std::ios::binary) << brick2;

    struct Case {
        std::string file, version, note, same;  // same: the current record the plug-in evaluates
    };
    const Case cases[] = {
        {"b3.rec", "3.0", "version 3.0 of Brick; the plug-in converts it to the current version 4.0",
         "--set brickHeight=0.5 --set brickWidth=1.25 --set brickDepth=0.75 --set mortarThickness=0.05 "
         "--set randomizeColors=true --set minColor=0.25 --set maxColor=0.625"},
        {"b2.rec", "2.0", "version 2.0 of Brick; the plug-in ignores it and evaluates the defaults of the current "
                          "version 4.0", ""},
    };
    const std::string points = "0.1 0.1 0.1\n0.3 0.6 0.2\n1.7 -0.4 2.2\n-2.5 3.1 0.9\n";
    for (const Case& c : cases) {
        ASSERT_EQ(run("record new Brick " + c.same + " -o same.rec").status, 0) << c.file;
        const Outcome show = run("record show " + c.file);
        ASSERT_EQ(show.status, 0) << c.file << show.err;
        EXPECT_NE(show.out.find("\"version\": \"" + c.version + "\","), std::string::npos) << show.out;
        EXPECT_NE(show.out.find("\"note\": \"" + c.note + "\""), std::string::npos) << show.out;
        // Fields and labels: those of the current record the plug-in evaluates.
        const std::string same = run("record show same.rec").out;
        EXPECT_EQ(show.out.substr(show.out.find("\"fields\"")), same.substr(same.find("\"fields\"")));

        const Outcome eval = run("eval " + c.file, points);
        EXPECT_EQ(eval.out, run("eval same.rec", points).out) << c.file;
        EXPECT_NE(eval.err.find(c.note), std::string::npos) << eval.err;
        ASSERT_EQ(run("record new --from " + c.file + " -o from.rec").status, 0) << c.file;
        EXPECT_EQ(readText(path("from.rec")), readText(path("same.rec"))) << c.file;

        // from-json writes current versions only, and says how to write
        // the fields shown.
        std::ofstream(path("old.json")) << show.out;
        Outcome back = run("record from-json old.json -o back.rec");
        EXPECT_EQ(back.status, 2);
        EXPECT_NE(back.err.find("only the current version 4.0 of Brick can be written, not " + c.version),
                  std::string::npos)
            << back.err;
        std::string current = show.out;
        for (const std::string key : {"\"version\"", "\"size\""}) {
            const auto at = current.find("  " + key);
            current.erase(at, current.find('\n', at) + 1 - at);
        }
        std::ofstream(path("current.json")) << current;
        back = run("record from-json current.json -o back.rec");
        ASSERT_EQ(back.status, 0) << back.err;
        EXPECT_EQ(readText(path("back.rec")), readText(path("same.rec"))) << c.file;
    }
    EXPECT_NE(run("record show b3.rec").out.find("\"brickHeight\": 0.5,"), std::string::npos);
}

TEST_F(CommandLine, RecordEditErrorsNeverTouchTheInput) {
    ASSERT_EQ(run("record new Checkerboard --set depth=2 -o c.rec").status, 0);
    std::string unterminated = readText(path("c.rec"));
    unterminated.replace(1, 32, std::string(32, 'Z'));
    std::ofstream(path("unterminated.rec"), std::ios::binary) << unterminated;
    std::ofstream(path("cut.rec"), std::ios::binary) << readText(path("c.rec")).substr(0, 40);
    std::string old = readText(path("c.rec"));
    old[33] = 2;
    std::ofstream(path("old.rec"), std::ios::binary) << old;

    struct Case {
        std::string args, message;
    };
    const Case cases[] = {
        {"record set c.rec dpth=3", "'Checkerboard' has no field 'dpth'"},
        {"record set c.rec depth=3 dpth=3", "has no field 'dpth'"},  // all or nothing
        {"record set c.rec depth=1.5", "field 'depth' of Checkerboard is a 32-bit integer; '1.5' is not"},
        {"record set c.rec depth=99999999999", "is a 32-bit integer; '99999999999' is not"},
        {"record set c.rec randomizeColors=maybe", "is a bool (true or false); 'maybe' is not"},
        {"record set c.rec variability=much", "is a float; 'much' is not"},
        {"record set c.rec depth", "'depth' is not FIELD=VALUE"},
        {"record set unterminated.rec depth=3", "its generator name is not terminated"},
        {"record set cut.rec depth=3", "40 bytes, a Checkerboard record holds 48"},
        {"record set old.rec depth=3", "not a current Checkerboard record, so its fields are not known"},
        {"record set missing.rec depth=3", "cannot read 'missing.rec'"},
        {"record new Voronoi --from c.rec -o x.rec", "'c.rec' is a Checkerboard record, not Voronoi"},
        {"record new --from cut.rec -o x.rec", "40 bytes"},
        {"record new -o x.rec", "record new needs a generator NAME or --from FILE"},
        {"record new Checkerboard --set depth=3 -o missing/x.rec", "cannot write 'missing/x.rec'"},
    };
    const auto before = contents();
    for (const Case& c : cases) {
        const Outcome r = run(c.args);
        EXPECT_EQ(r.status, 2) << c.args;
        EXPECT_NE(r.err.find(c.message), std::string::npos) << c.args << "\n" << r.err;
        EXPECT_EQ(contents(), before) << c.args;
    }
}

TEST_F(CommandLine, RecordShowNamesWhatTheDialogShows) {
    ASSERT_EQ(run("record new Voronoi --set type=9 --set distanceMethod=2 -o v.rec").status, 0);
    Outcome r = run("record show v.rec");
    ASSERT_EQ(r.status, 0) << r.err;
    // 9 is no item of the dialog's list.
    EXPECT_NE(r.out.find("\"labels\": {\n    \"type\": null,\n    \"distanceMethod\": \"Taxicab\"\n  }"),
              std::string::npos)
        << r.out;
    std::ofstream(path("v.json")) << r.out;
    r = run("record from-json v.json -o back.rec");
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(readText(path("back.rec")), readText(path("v.rec")));
}

// ---- render -------------------------------------------------------------------

TEST_F(CommandLine, RenderColourMapsDepthsAndTransforms) {
    struct Case {
        std::string options;
        int bitDepth, colourType;
    };
    const Case cases[] = {{"", 8, 0}, {"--16bit", 16, 0}, {"--colormap heat", 8, 2}, {"--colormap viridis --16bit", 16, 2}};
    for (const Case& c : cases) {
        const Outcome r = run("render Voronoi --size 16 -o v.png " + c.options);
        ASSERT_EQ(r.status, 0) << c.options << r.err;
        const std::string png = readText(path("v.png"));
        ASSERT_GT(png.size(), 26u);
        EXPECT_EQ(png.substr(12, 4), "IHDR");
        EXPECT_EQ(png[24], c.bitDepth) << c.options;
        EXPECT_EQ(png[25], c.colourType) << c.options;
    }
    // Twice the scale over twice the extent samples the very same points; a
    // whole turn is no turn at all.
    ASSERT_EQ(run("render Wood --size 32 -o plain.png").status, 0);
    ASSERT_EQ(run("render Wood --size 32 --extent 8 --z 0.6 --overall 2 -o scaled.png").status, 0);
    ASSERT_EQ(run("render Wood --size 32 --rotate 1,-2,3 -o turned.png").status, 0);
    EXPECT_EQ(readText(path("scaled.png")), readText(path("plain.png")));
    EXPECT_EQ(readText(path("turned.png")), readText(path("plain.png")));

    const Outcome r = run("render Wood --colormap sepia -o x.png");
    EXPECT_EQ(r.status, 2);
    EXPECT_NE(r.err.find("unknown colour map 'sepia' (there are grey, heat, viridis, wood, stone, ocean)"), std::string::npos) << r.err;
    EXPECT_FALSE(fs::exists(path("x.png")));
    EXPECT_EQ(files(), (std::set<std::string>{"v.png", "plain.png", "scaled.png", "turned.png"})) << "no partial file left";
}

// ---- the dialog's preview ---------------------------------------------------

TEST_F(CommandLine, DialogPreviewDrawsWhatRenderAndPaintDraw) {
    gritwell::TransformData transforms;
    transforms.flags = 2 | 4;  // planar
    transforms.xOffset = 0.3f;
    transforms.yAngle = 0.1f;
    transforms.overallScale = 0.5f;
    char bytes[44];
    transforms.toBytes(bytes);
    std::ofstream(path("t.tf"), std::ios::binary).write(bytes, sizeof bytes);
    ASSERT_EQ(run("record new Brick --set randomizeColors=true -o b.rec").status, 0);
    Outcome r = run("render b.rec --size 40 --z 0.3 --transform t.tf -o slice.png");
    ASSERT_EQ(r.status, 0) << r.err;
    r = run("paint '" + kSampleMesh + "' b.rec --transform t.tf --preview mesh.png --preview-size 40 -o m.ply");
    ASSERT_EQ(r.status, 0) << r.err;
    // The default camera, given: yaw, then pitch.
    r = run("paint '" + kSampleMesh + "' b.rec --transform t.tf --preview same.png --preview-size 40 -o m.ply "
            "--view 0.07,0.03");
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(readText(path("same.png")), readText(path("mesh.png")));

    gritwell::PluginLibrary plugin(GRITWELL_PLUGIN_PATH);
    ASSERT_TRUE(plugin.ok()) << plugin.error();
    const gritwell::DialogPreview preview(plugin, gritwell::MeshReader::read(kSampleMesh), 40);
    char record[256] = {};
    const std::string rec = readText(path("b.rec"));
    rec.copy(record, rec.size());
    const gritwell::PreviewPictures pictures = preview.render(record, transforms);
    const std::vector<unsigned char> slice = gritwell::encodePng(pictures.slice), mesh = gritwell::encodePng(pictures.mesh);
    EXPECT_EQ(std::string(slice.begin(), slice.end()), readText(path("slice.png")));
    EXPECT_EQ(std::string(mesh.begin(), mesh.end()), readText(path("mesh.png")));
}

// ---- no command loses or corrupts a file ----------------------------------------

TEST_F(CommandLine, OutputsThatAreOneFileOrAnInputAreRefused) {
    fs::copy_file(kSampleMesh, path("m.obj"));
    ASSERT_EQ(run("paint m.obj Brick -o m.ply").status, 0);
    fs::create_symlink("m.ply", path("link.ply"));
    ASSERT_EQ(run("record new Brick -o c.rec").status, 0);
    struct Case {
        std::string args, message;
    };
    const Case cases[] = {
        {"paint m.ply Voronoi -o m.ply --preview m.ply", "-o 'm.ply' and --preview 'm.ply' are the same file"},
        {"paint m.obj Voronoi -o m.ply --preview link.ply", "and --preview 'link.ply' are the same file"},
        {"paint m.obj Voronoi -o - --preview -", "-o '-' and --preview '-' are the same file"},
        {"paint m.ply Voronoi -o link.ply", "-o 'link.ply' is the same file as MESH 'm.ply', which is read"},
        {"paint m.obj c.rec -o c.rec", "is the same file as TARGET 'c.rec'"},
        {"record new --from c.rec -o ./c.rec", "is the same file as --from 'c.rec'"},
    };
    const auto before = contents();
    for (const Case& c : cases) {
        const Outcome r = run(c.args);
        EXPECT_EQ(r.status, 2) << c.args;
        EXPECT_NE(r.err.find(c.message), std::string::npos) << c.args << "\n" << r.err;
        EXPECT_EQ(r.out, "") << c.args;
        EXPECT_EQ(contents(), before) << c.args;
    }
}

TEST_F(CommandLine, ReplacingAFileKeepsItsLinkAndModeAndRefusesAReadOnlyOne) {
    ASSERT_EQ(run("record new Brick -o brick.rec").status, 0);
    const std::string brick = readText(path("brick.rec"));
    std::ofstream(path("old.rec")) << "an older preset";
    fs::permissions(path("old.rec"), fs::perms(0640));
    fs::create_symlink("old.rec", path("link.rec"));
    fs::create_symlink("new.rec", path("dangling.rec"));
    for (const std::string link : {"link.rec", "dangling.rec"}) {
        const Outcome r = run("record new Brick -o " + link);
        ASSERT_EQ(r.status, 0) << link << r.err;
        EXPECT_TRUE(fs::is_symlink(path(link))) << link;
        EXPECT_EQ(readText(path(link)), brick) << link;
    }
    EXPECT_EQ(fs::status(path("old.rec")).permissions(), fs::perms(0640));

    // Read-only means no write permission bit, for root too.
    std::ofstream(path("ro.rec")) << brick;
    fs::permissions(path("ro.rec"), fs::perms(0444));
    for (const std::string args : {"record set ro.rec brickWidth=2", "record new Brick -o ro.rec"}) {
        const Outcome r = run(args);
        EXPECT_EQ(r.status, 2) << args;
        EXPECT_NE(r.err.find("cannot write 'ro.rec': it is read-only"), std::string::npos) << r.err;
        EXPECT_EQ(readText(path("ro.rec")), brick);
    }
}

TEST_F(CommandLine, StandardOutputPipesAndDevicesAreWrittenDirectly) {
    ASSERT_EQ(run("record new Brick -o brick.rec").status, 0);
    Outcome r = run("record new Brick -o -");
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, readText(path("brick.rec")));
    r = run("render Brick --size 8 -o -");
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out.substr(0, 4), "\x89PNG");
    r = shell("('" GRITWELL_CLI_PATH "' record new Brick -o /dev/stdout | cat > piped.rec)");
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(readText(path("piped.rec")), readText(path("brick.rec")));
    // A null device of the test's own, so a fault cannot replace the system's.
    if (::mknod(path("null").c_str(), S_IFCHR | 0666, ::makedev(1, 3)) != 0) GTEST_SKIP() << "cannot make a device";
    r = run("record new Brick -o null");
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_TRUE(fs::is_character_file(path("null")));
}

TEST_F(CommandLine, AFullDiskLeavesTheOldFileWhole) {
    fs::copy_file(kSampleMesh, path("bust.obj"));
    // A full device (like /dev/full) of the test's own, and a 64 KiB disk
    // in a mount namespace of its own; the painted bust needs 200 KiB.
    if (::mknod(path("full").c_str(), S_IFCHR | 0666, ::makedev(1, 7)) == 0) {
        const Outcome r = run("record new Brick -o full");
        EXPECT_EQ(r.status, 2);
        EXPECT_NE(r.err.find("cannot write 'full': No space left on device"), std::string::npos) << r.err;
        EXPECT_TRUE(fs::is_character_file(path("full")));
    }
    fs::create_directories(path("disk"));
    const std::string unshare = ::geteuid() == 0 ? "unshare -m" : "unshare -rm";
    const Outcome r = shell(unshare + " sh -c \"mount -t tmpfs -o size=64k tmpfs disk || exit 99; "
                                      "echo 'the previous painting' > disk/out.ply; '" GRITWELL_CLI_PATH
                                      "' paint bust.obj Brick -o disk/out.ply; echo \\$? > status.txt; "
                                      "cat disk/out.ply > left.txt; ls disk > listing.txt\"");
    if (r.status == 99 || !fs::exists(path("status.txt"))) GTEST_SKIP() << "cannot mount a small disk: " << r.err;
    EXPECT_EQ(readText(path("status.txt")), "2\n");
    EXPECT_NE(r.err.find("cannot write 'disk/out.ply': No space left on device"), std::string::npos) << r.err;
    EXPECT_EQ(readText(path("left.txt")), "the previous painting\n");
    EXPECT_EQ(readText(path("listing.txt")), "out.ply\n");
}

// ---- bake, colours and threads ---------------------------------------------------

namespace {

// The one float channel Y of an EXR, row-major.
std::vector<float> readExrY(const fs::path& p, int& width) {
    Imf::InputFile in(p.c_str());
    const Imath::Box2i w = in.header().dataWindow();
    width = w.max.x - w.min.x + 1;
    const int height = w.max.y - w.min.y + 1;
    std::vector<float> values(static_cast<std::size_t>(width) * height);
    Imf::FrameBuffer frame;
    frame.insert("Y", Imf::Slice(Imf::FLOAT, reinterpret_cast<char*>(values.data()), sizeof(float),
                                 sizeof(float) * width));
    in.setFrameBuffer(frame);
    in.readPixels(w.min.y, w.max.y);
    return values;
}

// A square from (0, 0, 0.3) to (2, 2, 0.3), its texture coordinates x/2 and y/2.
constexpr const char* kSquareObj =
    "v 0 0 0.3\nv 2 0 0.3\nv 2 2 0.3\nv 0 2 0.3\nvt 0 0\nvt 1 0\nvt 1 1\nvt 0 1\nf 1/1 2/2 3/3 4/4\n";

}  // namespace

TEST_F(CommandLine, BakedTexelsAreTheValuesAtTheirPointsOfTheSurface) {
    std::ofstream(path("square.obj")) << kSquareObj;
    // The same square as PLY, its texture coordinates as s and t, and wrapped a tile away.
    std::ofstream(path("square.ply")) << "ply\nformat ascii 1.0\nelement vertex 4\nproperty float x\nproperty float y\n"
                                         "property float z\nproperty float s\nproperty float t\nelement face 1\n"
                                         "property list uchar int vertex_indices\nend_header\n"
                                         "0 0 0.3 2 -1\n2 0 0.3 3 -1\n2 2 0.3 3 0\n0 2 0.3 2 0\n4 0 1 2 3\n";
    const std::string cases[] = {"square.obj 'Perlin Noise'", "square.ply Wood --offset 0.1,0.2,0.3 --rotate 0,0,0.1",
                                 "square.obj Brick --planar"};
    constexpr int n = 16;
    for (const std::string& c : cases) {
        Outcome r = run("bake " + c + " --size 16 -o square.exr");
        ASSERT_EQ(r.status, 0) << c << r.err;
        int width = 0;
        const std::vector<float> map = readExrY(path("square.exr"), width);
        ASSERT_EQ(width, n);
        std::string points;
        char line[96];
        for (int y = 0; y < n; ++y)
            for (int x = 0; x < n; ++x) {
                std::snprintf(line, sizeof line, "%.9g %.9g 0.3\n", 2.0 * (x + 0.5) / n, 2.0 * (1.0 - (y + 0.5) / n));
                points += line;
            }
        r = run("eval " + c.substr(c.find(' ') + 1), points);
        ASSERT_EQ(r.status, 0) << c << r.err;
        std::istringstream values(r.out);
        for (std::size_t i = 0; i < map.size(); ++i) {
            std::string text;
            ASSERT_TRUE(std::getline(values, text)) << c;
            const float value = std::strtof(text.c_str(), nullptr);
            EXPECT_EQ(std::memcmp(&value, &map[i], 4), 0) << c << " texel " << i << ": bake " << map[i] << ", eval " << text;
        }
    }
}

TEST_F(CommandLine, BakeRefusesWhatItCannotBakeAndLeavesNothingBehind) {
    std::ofstream(path("square.obj")) << kSquareObj;
    std::ofstream(path("plain.obj")) << "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n";
    std::ofstream(path("badvt.obj")) << "v 0 0 0\nv 1 0 0\nv 0 1 0\nvt 0 0\nvt 1 0\nf 1/1 2/2 3/9\n";
    const std::pair<std::string, std::string> cases[] = {
        {"bake plain.obj Brick -o m.png", "'plain.obj' has no texture coordinates: bake lays the texture out"},
        {"bake badvt.obj Brick -o m.png", "'badvt.obj' has texture coordinates (vt lines) that none of its faces"},
        {"bake square.obj Brick --size 0 -o m.png", "--size must be 1 to 65536"},
        {"bake square.obj Brick --size 65537 -o m.exr", "--size must be 1 to 65536"},
        {"bake square.obj Brick --padding -1 -o m.png", "--padding must be 0 to 65536"},
        {"bake square.obj Brick -o m.tif", ".tif is not a format gritwell writes; pictures are written as: .png, .exr"},
        {"bake square.obj Brick --16bit -o m.exr", "--16bit is for PNG"},
        {"bake missing.obj Brick -o m.png", "cannot read 'missing.obj'"},
        {"bake square.obj Brick --ramp 0:#000000,x -o m.png", "--ramp stop 'x' has no ':'"},
        {"bake square.obj Nothing -o m.png", "'Nothing' is neither a generator name nor a record file"},
        {"bake square.obj Brick --size 16385 -o m.png --preview p.png", "--preview holds the whole map in memory"},
        {"bake square.obj Brick -o m.png --preview p.exr", "pictures are written as: .png"},
    };
    const auto before = contents();
    for (const auto& [args, message] : cases) {
        const Outcome r = run(args);
        EXPECT_EQ(r.status, 2) << args;
        EXPECT_NE(r.err.find(message), std::string::npos) << args << "\n" << r.err;
        EXPECT_EQ(contents(), before) << args;
    }
}

TEST_F(CommandLine, BakePreviewIsWrittenBesideTheMap) {
    // Both files, the picture at the size asked for (its colours are
    // MeshPreview's, tested with paint).
    std::ofstream(path("square.obj")) << kSquareObj;
    const Outcome r = run("bake square.obj Constant --ramp 0:#ff0000,1:#ff0000 --size 8 -o m.png --preview p.png "
                          "--preview-size 32 --view 0,0");
    ASSERT_EQ(r.status, 0) << r.err;
    const std::string png = readText(path("p.png"));
    ASSERT_GT(png.size(), 24u);
    EXPECT_EQ(png.substr(1, 3), "PNG");
    EXPECT_EQ(png.substr(16, 8), std::string("\0\0\0\x20\0\0\0\x20", 8)) << "32 x 32";
    EXPECT_TRUE(fs::exists(path("m.png")));
}

TEST_F(CommandLine, EveryThreadCountGivesTheSameBits) {
    const std::string cases[] = {
        "render FBM --size 70 -o OUT.png",
        "render Brick --size 50 --tileable --rotate 0.1,0,0 -o OUT.exr",
        "render Wood --size 40 --ramp wood --16bit -o OUT.png",
        "bake '" + kSampleMesh + "' Granite --size 96 --offset 0.5,0,0 -o OUT.exr",
        "bake '" + kSampleMesh + "' Scales --size 64 --colormap viridis -o OUT.png",
        "paint '" + kSampleMesh + "' Voronoi --ramp ocean -o OUT.ply",
    };
    for (std::string c : cases) {
        const auto at = c.find("OUT");
        const std::string one = std::string(c).replace(at, 3, "one"), three = std::string(c).replace(at, 3, "three");
        const std::string oneFile = one.substr(one.rfind(' ') + 1), threeFile = three.substr(three.rfind(' ') + 1);
        Outcome r = run(one + " --threads 1");
        ASSERT_EQ(r.status, 0) << c << r.err;
        r = run(three + " --threads 3");
        ASSERT_EQ(r.status, 0) << c << r.err;
        EXPECT_EQ(readText(path(oneFile)), readText(path(threeFile))) << c;
    }
}

TEST_F(CommandLine, PaintedColoursFollowTheRamp) {
    const std::string ramp = "0:#ff0000,0.5:#00ff00,1:#0000ff";
    ASSERT_EQ(run("paint '" + kSampleMesh + "' Granite -o m.ply --ramp " + ramp).status, 0);
    const PaintedMesh mesh = readPaintedPly(path("m.ply"));
    ASSERT_EQ(mesh.vertices.size(), 5858u);
    const gritwell::Colormap::Map map = gritwell::Colormap::parseRamp(ramp);
    std::set<int> greens;
    for (const PaintedMesh::Vertex& v : mesh.vertices) {
        const gritwell::Colormap::Rgb c = map.colour(v.intensity);
        for (int k = 0; k < 3; ++k) ASSERT_EQ(v.rgb[k], gritwell::Colormap::level(c[k], 8)) << v.intensity;
        greens.insert(v.rgb[1]);
    }
    EXPECT_GT(greens.size(), 8u) << "the colours run along the ramp";
}
