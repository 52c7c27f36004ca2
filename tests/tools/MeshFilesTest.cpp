// Meshes in and out: the mesh reader, the PLY writer and the atomic
// output both commands write through.

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <limits>
#include <sstream>

#include <gtest/gtest.h>

#include "AtomicOutput.h"
#include "CliError.h"
#include "MeshReader.h"
#include "PlyWriter.h"

namespace fs = std::filesystem;
using namespace gritwell;

// The mesh library (STL, OFF and glTF) leaks part of a scene it gives up on,
// as on the cut files below; that is its own memory, freed when the command
// ends, and no fault of ours to report under the sanitizers.
extern "C" [[gnu::visibility("default")]] const char* __lsan_default_suppressions() { return "leak:libassimp.so\n"; }

namespace {

class MeshFiles : public testing::Test {
protected:
    void SetUp() override {
        dir_ = fs::temp_directory_path() / ("gritwell-mesh-" + std::to_string(::getpid()) + "-" +
                                            testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::create_directories(dir_);
    }
    void TearDown() override { fs::remove_all(dir_); }

    std::string write(const std::string& name, const std::string& text) const {
        std::ofstream((dir_ / name).string(), std::ios::binary) << text;
        return (dir_ / name).string();
    }
    std::string read(const std::string& name) const {
        std::ifstream in((dir_ / name).string(), std::ios::binary);
        std::ostringstream s;
        s << in.rdbuf();
        return s.str();
    }
    // Every file in the folder but the given one: what a failed write left.
    std::vector<std::string> others(const std::string& keep = "") const {
        std::vector<std::string> names;
        for (const auto& e : fs::directory_iterator(dir_))
            if (e.path().filename() != keep) names.push_back(e.path().filename().string());
        return names;
    }
    void expectRefused(const std::string& path, const std::string& message) const {
        try {
            MeshReader::read(path);
            ADD_FAILURE() << "read " << path;
        } catch (const CliError& e) {
            EXPECT_NE(std::string(e.what()).find(message), std::string::npos) << e.what();
            EXPECT_EQ(e.status(), CliError::kBadInput);
        }
    }

    fs::path dir_;
};

// A quad and a triangle sharing an edge, then a triangle in another group
// reusing three of their vertices; normals and texture coordinates on the
// first two split the corners, and vertex 7 is used by nothing.
constexpr const char* kGroupedObj =
    "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nv 2 0 0\nv 2 1 0\nv 5 5 5\n"
    "vt 0 0\nvt 1 0\nvt 1 1\nvn 0 0 1\nvn 0 0 -1\n"
    "f 4/1/1 3/2/1 2/3/1 1/1/1\nf 2/1/2 5/2/2 6/3/2 3/1/2\n"
    "g other\nf 1 2 4\n";

}  // namespace

TEST_F(MeshFiles, ObjCornersAreJoinedAcrossTheWholeFile) {
    const Mesh mesh = MeshReader::read(write("grouped.OBJ", kGroupedObj));
    // In the order faces first use them; the unused (5, 5, 5) is gone.
    const std::vector<float> positions = {0, 1, 0, 1, 1, 0, 1, 0, 0, 0, 0, 0, 2, 0, 0, 2, 1, 0};
    EXPECT_EQ(mesh.positions, positions);
    EXPECT_EQ(mesh.faceSizes, (std::vector<std::uint32_t>{4, 4, 3}));
    EXPECT_EQ(mesh.faceCorners, (std::vector<std::uint32_t>{0, 1, 2, 3, 2, 4, 5, 1, 3, 2, 0}));
}

TEST_F(MeshFiles, PlyRoundTripKeepsEveryVertexInOrder) {
    // Two vertices at the same place, and one no face uses: a PLY file's
    // vertex list is the file's own, so all of them come back.
    Mesh mesh;
    mesh.positions = {0, 0, 0, 1, 0, 0, 1, 1, 0, 1, 0, 0, 9, 9, 9, -0.5f, 1e-7f, 3};
    mesh.faceSizes = {4, 3};
    mesh.faceCorners = {0, 1, 2, 5, 3, 2, 5};
    const std::vector<float> values(6, 0.25f);
    PlyWriter::writeFile((dir_ / "m.ply").string(), mesh, values);
    const Mesh back = MeshReader::read((dir_ / "m.ply").string());
    EXPECT_EQ(back.positions, mesh.positions);
    EXPECT_EQ(back.faceSizes, mesh.faceSizes);
    EXPECT_EQ(back.faceCorners, mesh.faceCorners);
}

TEST_F(MeshFiles, PointCloudsHaveVerticesButNoFaces) {
    const Mesh cloud = MeshReader::read(write("points.obj", "v 0 0 0\nv 1 2 3\n"));
    EXPECT_EQ(cloud.positions, (std::vector<float>{0, 0, 0, 1, 2, 3}));
    EXPECT_EQ(cloud.faceCount(), 0u);
}

// A value's bytes in either order, for binary PLY bodies.
struct Bytes {
    bool big = false;
    std::string s;
    template <typename T>
    Bytes& operator<<(T value) {
        char b[sizeof value];
        std::memcpy(b, &value, sizeof value);
        if (big) std::reverse(b, b + sizeof value);
        s.append(b, sizeof value);
        return *this;
    }
};

TEST_F(MeshFiles, PlyDialectsGiveTheSameMesh) {
    // Four vertices, a triangle and a quad, and a two-corner list that is no face.
    const std::vector<float> positions = {0, 0, 0, 1, 0, 0, 0, 1, 0, 0.5f, 2, -3};
    const std::string head = "ply\nformat ";
    const std::string xyz = "property float x\nproperty float y\nproperty float z\n";
    const std::string faces = "element face 3\nproperty list uchar int vertex_indices\nend_header\n";
    const std::string asciiBody = "0 0 0\n1 0 0\n0 1 0\n0.5 2 -3\n3 0 1 2\n4 3 2 1 0\n2 0 1\n";
    // Doubles; floats big-endian with ushort counts; a list among the
    // vertices' properties; each with the three lists after.
    Bytes doubles, big{true, {}}, listed;
    for (std::size_t i = 0; i < positions.size(); i += 3) {
        doubles << double(positions[i]) << double(positions[i + 1]) << double(positions[i + 2]);
        big << positions[i] << positions[i + 1] << positions[i + 2];
        listed << positions[i] << std::uint8_t(2) << 7.0f << 8.0f << positions[i + 1] << positions[i + 2];
    }
    for (Bytes* b : {&doubles, &big, &listed}) {
        const bool wide = b == &big;
        const auto count = [&](int n) -> Bytes& { return wide ? (*b << std::uint16_t(n)) : (*b << std::uint8_t(n)); };
        count(3) << 0 << 1 << 2;
        count(4) << 3 << 2 << 1 << 0;
        count(2) << 0 << 1;
    }
    struct Case {
        std::string name, text;
    };
    const Case cases[] = {
        {"ascii", head + "ascii 1.0\r\nelement vertex 4\r\n" + xyz + faces + asciiBody},
        {"ascii reordered, other properties and elements",
         head + "ascii 1.0\nelement vertex 4\nproperty double z\nproperty uchar nx\nproperty short y\nproperty float x\n"
                "element edge 2\nproperty list uchar int ends\nelement face 3\nproperty uchar flag\n"
                "property list uint uint vertex_index\nend_header\n"
                "0 9 0 0\n0 9 0 1\n0 9 1 0\n-3 9 2 +0.5e0\n2 0 1\n3 0 1 2\n1 3 0 1 2\n1 4 3 2 1 0\n1 2 0 1\n"},
        {"binary doubles", head + "binary_little_endian 1.0\nelement vertex 4\nproperty double x\n"
                                  "property double y\nproperty double z\n" + faces + doubles.s},
        {"big-endian", head + "binary_big_endian 1.0\nelement vertex 4\n" + xyz +
                           "element face 3\nproperty list ushort int vertex_indices\nend_header\n" + big.s},
        {"a list among the vertices", head + "binary_little_endian 1.0\nelement vertex 4\nproperty float x\n"
                                              "property list uchar float w\nproperty float y\nproperty float z\n" +
                                              faces + listed.s},
    };
    for (const Case& c : cases) {
        const Mesh mesh = MeshReader::read(write("d.ply", c.text));
        EXPECT_EQ(mesh.positions, positions) << c.name;
        EXPECT_EQ(mesh.faceSizes, (std::vector<std::uint32_t>{3, 4})) << c.name;
        EXPECT_EQ(mesh.faceCorners, (std::vector<std::uint32_t>{0, 1, 2, 3, 2, 1, 0})) << c.name;
    }
}

TEST_F(MeshFiles, PlyDoublesRoundToFloatAsTheProcessorDoes) {
    // Past the float range the language leaves the conversion undefined;
    // the reader gives the processor's answer: an infinity from FLT_MAX plus
    // half its step on, FLT_MAX just below.
    const double edge = 0x1.ffffffp127;
    const float inf = std::numeric_limits<float>::infinity(), max = std::numeric_limits<float>::max();
    const std::pair<double, float> cases[] = {
        {1e300, inf}, {-1e300, -inf}, {edge, inf}, {std::nextafter(edge, 0.0), max}, {-edge, -inf}, {0.1, 0.1f}};
    std::string text = "ply\nformat ascii 1.0\nelement vertex 6\nproperty double x\nproperty float y\n"
                       "property float z\nend_header\n";
    for (const auto& [value, expected] : cases) {
        char line[64];
        std::snprintf(line, sizeof line, "%.17g 0 0\n", value);
        text += line;
    }
    const Mesh mesh = MeshReader::read(write("d.ply", text));
    for (std::size_t i = 0; i < std::size(cases); ++i)
        EXPECT_EQ(mesh.positions[3 * i], cases[i].second) << cases[i].first;
}

TEST_F(MeshFiles, DamagedPlyFilesSayWhere) {
    const std::string ascii = "ply\nformat ascii 1.0\nelement vertex 3\nproperty float x\nproperty float y\n";
    const std::string binary = "ply\nformat binary_little_endian 1.0\nelement vertex ";
    const std::string list = "element face 1\nproperty list char int vertex_indices\nend_header\n";
    Bytes negative;
    negative << 0.0f << 0.0f << 0.0f << std::int8_t(-1);
    struct Case {
        std::string text, message;
    };
    const Case cases[] = {
        {ascii + "property float z\nelement face 1\nproperty list uchar float vertex_indices\nend_header\n",
         "its faces' vertex_indices are not whole numbers"},
        {ascii + "end_header\n0 0\n1 0\n0 1\n", "its vertices have no z"},
        {ascii + "property float z\nend_header\n0 0 0\n1 0 zero\n", "is damaged: vertex 1 holds 'zero' where a number"},
        {ascii + "property float z\nend_header\n0 0 0\n1 0 0\n", "is cut short: it ends in vertex 2 of 3"},
        {ascii + "property float z\n" + list + "0 0 0\n1 0 0\n0 1 0\n3 0 1 -1\n", "a face uses vertex -1 of 3"},
        {binary + "1\nproperty float x\nproperty float y\nproperty float z\n" + list + negative.s,
         "face 0 has a list of -1 items"},
        {binary + "100000000\nproperty float x\nproperty float y\nproperty float z\nend_header\n",
         "it ends in vertex 0 of 100000000"},
        {binary + "3000000000\nproperty float x\nproperty float y\nproperty float z\nend_header\n",
         "more vertices than gritwell paints at once"},
        {"ply\nformat ascii 1.0\nelement face 0\nend_header\n", "has no vertices to paint"},
    };
    for (const Case& c : cases) expectRefused(write("bad.ply", c.text), c.message);
}

TEST_F(MeshFiles, ObjStatementsAndNumbers) {
    struct Case {
        std::string name, text;
        std::vector<float> positions;
        std::vector<std::uint32_t> sizes, corners;
    };
    const Case cases[] = {
        {"relative numbers, slashes, CRLF, tabs, comments",
         "v 0 0 0\r\nv\t1 0 0\r\nv +0 1 0 # top\r\nvt 0 0\nf -3/1 -2/1/1\t-1//1 # c\n",
         {0, 0, 0, 1, 0, 0, 0, 1, 0}, {3}, {0, 1, 2}},
        {"correctly rounded", "v 0.1 16777217 -2.5e-8\n", {0.1f, 16777216.0f, -2.5e-8f}, {}, {}},
        {"lines, points and two-corner faces paint but are no faces", "v 0 0 0\nv 1 0 0\nv 2 0 0\nv 3 0 0\nl 2 3\np 1\nf 3 2\n",
         {1, 0, 0, 2, 0, 0, 0, 0, 0}, {}, {}},
        {"equal positions join, by their bits", "v 1 1 1\nv -0 0 0\nv 1 1 1\nv 0 0 0\nf 3 2 1 4\n",
         {1, 1, 1, -0.0f, 0, 0, 0, 0, 0}, {4}, {0, 1, 0, 2}},
        {"a face before its vertices; other statements passed over",
         "o thing\nf 1 2 3\ns 1\nusemtl m\nvp 1 2\nvn 0 0 1\nv 0 0 0\nv 1 0 0\nv 0 1 0 1\n",
         {0, 0, 0, 1, 0, 0, 0, 1, 0}, {3}, {0, 1, 2}},
        {"a point cloud, joined", "v 1 2 3\nv 1 2 3\nv 0 0 0", {1, 2, 3, 0, 0, 0}, {}, {}},
    };
    for (const Case& c : cases) {
        const Mesh mesh = MeshReader::read(write("s.obj", c.text));
        ASSERT_EQ(mesh.positions.size(), c.positions.size()) << c.name;
        EXPECT_EQ(std::memcmp(mesh.positions.data(), c.positions.data(), 4 * c.positions.size()), 0) << c.name;
        EXPECT_EQ(mesh.faceSizes, c.sizes) << c.name;
        EXPECT_EQ(mesh.faceCorners, c.corners) << c.name;
    }
}

TEST_F(MeshFiles, DamagedObjFilesSayWhere) {
    struct Case {
        std::string text, message;
    };
    const Case cases[] = {
        {"v 1 2\n", "is damaged: line 1 is not a vertex 'v x y z'"},
        {"v 1e99 0 0\n", "line 1 is not a vertex"},
        {"v 0 0 0\nf 1 x 1\n", "line 2 names no vertex with 'x'"},
        {"v 0 0 0\n\nf 0 1 1\n", "line 3 names no vertex with '0'"},
        {"v 0 0 0\nf -2 1 1\n", "line 2 names vertex -2 of 1"},
        {"v 0 0 0\nf 1 1 9\n", "is damaged: it uses vertex 9 of 1"},
    };
    for (const Case& c : cases) expectRefused(write("bad.obj", c.text), c.message);
}

TEST_F(MeshFiles, PlyWrittenInBuffersComesBackWhole) {
    // More than a buffer's worth of vertices and of faces, faces of every
    // size, so that rows meet the buffer's end at every offset.
    Mesh mesh;
    for (int v = 0; v < 70000; ++v) mesh.positions.insert(mesh.positions.end(), {float(v), -0.5f * v, 1.0f / (v + 1)});
    for (std::uint32_t f = 0, at = 0; f < 4000; ++f, at = (at + 7) % 60000) {
        mesh.faceSizes.push_back(3 + f % 253);
        for (std::uint32_t c = 0; c < 3 + f % 253; ++c) mesh.faceCorners.push_back(at + c);
    }
    std::vector<float> values(mesh.vertexCount());
    for (std::size_t v = 0; v < values.size(); ++v) values[v] = float(v) / 7e4f;
    PlyWriter::writeFile((dir_ / "big.ply").string(), mesh, values);
    const Mesh back = MeshReader::read((dir_ / "big.ply").string());
    EXPECT_EQ(back.positions, mesh.positions);
    EXPECT_EQ(back.faceSizes, mesh.faceSizes);
    EXPECT_EQ(back.faceCorners, mesh.faceCorners);
    const std::string bytes = read("big.ply");
    float last;
    std::memcpy(&last, bytes.data() + PlyWriter::header(mesh).size() + 19 * 69999 + 12, 4);
    EXPECT_EQ(last, values.back());
}

TEST_F(MeshFiles, StlOffAndGltfAreRead) {
    // One triangle each (STL and OFF twice over); STL comes as corners and
    // is joined, glTF's node moves its mesh 5 along z (the buffer: indices
    // 0, 1, 2 and the corners (0, 0, 0), (1, 0, 0), (0, 1, 0)).
    const std::string gltf =
        R"({"asset":{"version":"2.0"},"scene":0,"scenes":[{"nodes":[0]}],"nodes":[{"mesh":0,"translation":[0,0,5]}],)"
        R"("meshes":[{"primitives":[{"attributes":{"POSITION":1},"indices":0}]}],)"
        R"("buffers":[{"byteLength":44,"uri":"data:application/octet-stream;base64,)" +
        std::string("AAABAAIAAAAAAAAAAAAAAAAAAAAAAIA/AAAAAAAAAAAAAAAAAACAPwAAAAA=") +
        R"("}],"bufferViews":[{"buffer":0,"byteLength":6},{"buffer":0,"byteOffset":8,"byteLength":36}],)"
        R"("accessors":[{"bufferView":0,"componentType":5123,"count":3,"type":"SCALAR"},)"
        R"({"bufferView":1,"componentType":5126,"count":3,"type":"VEC3","max":[1,1,0],"min":[0,0,0]}]})";
    struct Case {
        std::string name, text;
        float z;
    };
    const Case cases[] = {
        {"t.stl", "solid t\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 0 0\nvertex 0 1 0\nendloop\n"
                  "endfacet\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 0 0\nvertex 0 1 0\nendloop\n"
                  "endfacet\nendsolid t\n", 0},
        {"t.off", "OFF\n3 2 0\n0 0 0\n1 0 0\n0 1 0\n3 0 1 2\n3 0 1 2\n", 0},
        {"t.gltf", gltf, 5},
    };
    for (const Case& c : cases) {
        const Mesh mesh = MeshReader::read(write(c.name, c.text));
        EXPECT_EQ(mesh.positions, (std::vector<float>{0, 0, c.z, 1, 0, c.z, 0, 1, c.z})) << c.name;
        EXPECT_EQ(mesh.faceCorners.size(), c.name == "t.gltf" ? 3u : 6u) << c.name;
    }
}

TEST_F(MeshFiles, UnreadableMeshesSayWhy) {
    fs::create_directories(dir_ / "folder.obj");
    expectRefused((dir_ / "folder.obj").string(), "it is a folder");
    expectRefused(write("junk.obj", "junk\n"), "has no vertices to paint");
    expectRefused(write("badheader.ply", "ply\nelement vertex 1\n"), "cannot read the mesh");
    // The library passes a PLY face's indices through unchecked.
    expectRefused(write("outside.ply",
                        "ply\nformat ascii 1.0\nelement vertex 3\nproperty float x\nproperty float y\n"
                        "property float z\nelement face 1\nproperty list uchar int vertex_indices\nend_header\n"
                        "0 0 0\n1 0 0\n0 1 0\n3 0 1 7\n"),
                  "is damaged: a face uses vertex 7 of 3");
    // A binary file cut short, in its vertices and in its last face.
    Mesh mesh;
    mesh.positions = {0, 0, 0, 1, 0, 0, 0, 1, 0};
    mesh.faceSizes = {3, 3};
    mesh.faceCorners = {0, 1, 2, 2, 1, 0};
    PlyWriter::writeFile((dir_ / "whole.ply").string(), mesh, std::vector<float>(3));
    const std::string whole = read("whole.ply");
    const std::size_t header = PlyWriter::header(mesh).size();
    expectRefused(write("cut.ply", whole.substr(0, header + 40)), "'" + (dir_ / "cut.ply").string() +
                                                                     "' is cut short: it ends in vertex 2 of 3");
    expectRefused(write("cut.ply", whole.substr(0, whole.size() - 1)), "it ends in face 1 of 2");
}

TEST_F(MeshFiles, EveryCutFileIsReadOrRefused) {
    // The library spins forever on a PLY header without its end_header line;
    // every prefix of each format's file must come back, and a PLY cut
    // anywhere in its header must be refused.
    Mesh mesh;
    mesh.positions = {0, 0, 0, 1, 0, 0, 0, 1, 0};
    mesh.faceSizes = {3};
    mesh.faceCorners = {0, 1, 2};
    PlyWriter::writeFile((dir_ / "binary.ply").string(), mesh, std::vector<float>(3));
    const std::string ascii =
        "ply\nformat ascii 1.0\ncomment c\nelement vertex 3\nproperty float x\nproperty float y\n"
        "property float z\nelement face 1\nproperty list uchar int vertex_indices\nend_header\n"
        "0 0 0\n1 0 0\n0 1 0\n3 0 1 2\n";
    struct Case {
        std::string name, text;
        std::size_t headerEnd;  // every shorter prefix is refused
    };
    const Case cases[] = {
        {"a.ply", ascii, ascii.find("end_header") + 10},
        {"b.ply", read("binary.ply"), PlyWriter::header(mesh).size()},
        {"c.obj", "# c\nmtllib m.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\nvn 0 0 1\nvt 0 0\ng g\nusemtl m\nf 1/1/1 2/1/1 3/1/1\n", 0},
        {"d.off", "OFF\n3 1 0\n0 0 0\n1 0 0\n0 1 0\n3 0 1 2\n", 0},
        {"e.stl", "solid t\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 0 0\nvertex 0 1 0\nendloop\n"
                  "endfacet\nendsolid t\n", 0},
    };
    for (const Case& c : cases)
        for (std::size_t n = 0; n < c.text.size(); ++n) {
            const std::string file = write(c.name, c.text.substr(0, n));
            try {
                MeshReader::read(file);
                EXPECT_GE(n, c.headerEnd) << c.name << " cut to " << n << " bytes was read";
            } catch (const CliError& e) {
                EXPECT_EQ(e.status(), CliError::kBadInput);
            }
        }
    expectRefused(write("t.ply", "ply\nformat ascii 1.0\n"), "its header ends before 'end_header'");
    expectRefused(write("u.ply", "ply\nformat ascii 1.0\nelement vertex many\nend_header\n"),
                  "line 3 of its header is not 'element NAME COUNT'");
    expectRefused(write("v.ply", "ply\nformat ascii 1.0\nelement vertex 1\nproperty quad x\nend_header\n"),
                  "line 4 of its header has a property of no PLY type: 'quad'");
}

TEST_F(MeshFiles, PlyLayoutIntensitiesAndGreys) {
    Mesh mesh;
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const std::vector<float> values = {0.5f, nan, -1.0f, 2.0f, 0.999f, 0.0019f};
    for (std::size_t i = 0; i < values.size(); ++i) mesh.positions.insert(mesh.positions.end(), {float(i), 0.5f, -1});
    mesh.faceSizes = {3, 3};
    mesh.faceCorners = {0, 1, 2, 3, 4, 5};
    PlyWriter::writeFile((dir_ / "p.ply").string(), mesh, values);

    const std::string bytes = read("p.ply");
    const std::string header = PlyWriter::header(mesh);
    ASSERT_EQ(bytes.compare(0, header.size(), header), 0);
    ASSERT_EQ(bytes.size(), header.size() + 6 * 19 + 2 * (1 + 3 * 4));

    const unsigned char greys[] = {128, 0, 0, 255, 255, 0};
    for (std::size_t v = 0; v < values.size(); ++v) {
        const char* vertex = bytes.data() + header.size() + 19 * v;
        float xyz[4];
        std::memcpy(xyz, vertex, sizeof xyz);
        EXPECT_EQ(xyz[0], float(v));
        EXPECT_EQ(std::memcmp(&xyz[3], &values[v], 4), 0) << "the intensity is kept as it is, NaN included";
        for (int c = 0; c < 3; ++c) EXPECT_EQ(static_cast<unsigned char>(vertex[16 + c]), greys[v]) << v;
    }
    const char* face = bytes.data() + header.size() + 6 * 19 + 13;
    std::int32_t corners[3];
    std::memcpy(corners, face + 1, sizeof corners);
    EXPECT_EQ(face[0], 3);
    EXPECT_EQ(corners[0], 3);
    EXPECT_EQ(corners[2], 5);
}

TEST_F(MeshFiles, FacesTooLargeForPlyAreRefusedBeforeWriting) {
    Mesh mesh;
    mesh.positions.assign(3 * 256, 0.0f);
    mesh.faceSizes = {256};
    for (std::uint32_t i = 0; i < 256; ++i) mesh.faceCorners.push_back(i);
    EXPECT_THROW(PlyWriter::writeFile((dir_ / "big.ply").string(), mesh, std::vector<float>(256)), CliError);
    EXPECT_TRUE(others().empty());
}

TEST_F(MeshFiles, AtomicOutputReplacesOnlyOnCommit) {
    const std::string path = write("out.bin", "old");
    {
        AtomicOutput out(path);
        std::fputs("half", out.file());
        // Abandoned without commit: the old file stays, the temporary goes.
    }
    EXPECT_EQ(read("out.bin"), "old");
    EXPECT_EQ(others("out.bin"), std::vector<std::string>{});
    {
        // Several at once, each to its own file.
        AtomicOutput out(path), other((dir_ / "other").string());
        std::fputs("new", out.file());
        std::fputs("B", other.file());
        other.commit();
        out.commit();
    }
    EXPECT_EQ(read("out.bin") + read("other"), "newB");
    EXPECT_EQ(others("out.bin"), std::vector<std::string>{"other"});
}
