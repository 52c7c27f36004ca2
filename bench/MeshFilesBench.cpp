// Painting a mesh of a million vertices, phase by phase: reading it from
// binary PLY and from OBJ, evaluating every vertex through the plug-in's
// session, writing the painted PLY, and all of it end to end as
// `gritwell paint` does it. The meshes are made when the program starts, in
// a temporary folder removed when it ends.

#include <unistd.h>

#include <charconv>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "AtomicOutput.h"
#include "HostTransform.h"
#include "Mesh.h"
#include "MeshPainter.h"
#include "MeshReader.h"
#include "PlyWriter.h"
#include "PluginLibrary.h"
#include "ProgressMeter.h"
#include "RecordFile.h"
#include "textures/TextureFactory.h"

using namespace gritwell;
namespace fs = std::filesystem;

namespace {

constexpr int kSide = 1000;  // vertices along each side of the grid: a million, and two triangles a square

// A wavy grid: coordinates with the digits an exporter writes, every vertex
// used, every square split in two.
Mesh grid() {
    Mesh mesh;
    mesh.positions.reserve(3 * kSide * kSide);
    for (int j = 0; j < kSide; ++j)
        for (int i = 0; i < kSide; ++i)
            mesh.positions.insert(mesh.positions.end(),
                                  {i * 0.0123f - 6.1f, j * 0.0117f - 5.3f, 0.4f * std::sin(0.05f * i) * std::cos(0.03f * j)});
    for (std::uint32_t j = 0; j + 1 < kSide; ++j)
        for (std::uint32_t i = 0; i + 1 < kSide; ++i) {
            const std::uint32_t a = j * kSide + i;
            mesh.faceSizes.insert(mesh.faceSizes.end(), {3, 3});
            mesh.faceCorners.insert(mesh.faceCorners.end(), {a, a + 1, a + kSide + 1, a, a + kSide + 1, a + kSide});
        }
    return mesh;
}

void writeFile(const fs::path& path, const std::string& bytes) {
    std::FILE* f = std::fopen(path.c_str(), "wb");
    if (f == nullptr || std::fwrite(bytes.data(), 1, bytes.size(), f) != bytes.size() || std::fclose(f) != 0)
        std::perror(path.c_str());
}

// The grid as a plain binary PLY (float x, y, z; uchar int lists) and as
// OBJ with six decimals; then the folder is removed at exit.
struct Files {
    fs::path folder = fs::temp_directory_path() / ("gritwell-mesh-bench-" + std::to_string(::getpid()));
    fs::path ply = folder / "grid.ply", obj = folder / "grid.obj", out = folder / "painted.ply";

    Files() {
        fs::create_directories(folder);
        const Mesh mesh = grid();
        std::string bytes = "ply\nformat binary_little_endian 1.0\nelement vertex " +
                            std::to_string(mesh.vertexCount()) +
                            "\nproperty float x\nproperty float y\nproperty float z\nelement face " +
                            std::to_string(mesh.faceCount()) + "\nproperty list uchar int vertex_indices\nend_header\n";
        bytes.append(reinterpret_cast<const char*>(mesh.positions.data()), mesh.positions.size() * sizeof(float));
        for (std::size_t f = 0; f < mesh.faceCount(); ++f) {
            bytes.push_back(3);
            bytes.append(reinterpret_cast<const char*>(&mesh.faceCorners[3 * f]), 3 * sizeof(std::uint32_t));
        }
        writeFile(ply, bytes);

        std::string text;
        char line[96];
        for (std::size_t v = 0; v < mesh.vertexCount(); ++v) {
            const float* p = &mesh.positions[3 * v];
            text.append(line, std::snprintf(line, sizeof line, "v %.6f %.6f %.6f\n", p[0], p[1], p[2]));
        }
        for (std::size_t f = 0; f < mesh.faceCount(); ++f) {
            const std::uint32_t* c = &mesh.faceCorners[3 * f];
            text.append(line, std::snprintf(line, sizeof line, "f %u %u %u\n", c[0] + 1, c[1] + 1, c[2] + 1));
        }
        writeFile(obj, text);
    }
    ~Files() { fs::remove_all(folder); }
};

const Files& files() {
    static const Files made;
    return made;
}

PluginLibrary& plugin() {
    static PluginLibrary library(GRITWELL_PLUGIN_PATH);
    return library;
}

const GeneratorInfo* generator(const std::string& name) {
    for (const GeneratorInfo* g : TextureFactory::hostGenerators())
        if (g->name == name) return g;
    return nullptr;
}

// ---- the phases ---------------------------------------------------------------

void BM_Read(benchmark::State& state, bool obj) {
    const std::string path = obj ? files().obj : files().ply;
    std::size_t vertices = 0;
    for (auto _ : state) {
        const Mesh mesh = MeshReader::read(path);
        vertices = mesh.vertexCount();
        benchmark::DoNotOptimize(mesh.positions.data());
    }
    state.counters["vertices"] = double(vertices);
    state.SetItemsProcessed(state.iterations() * vertices);
}

std::vector<float> paint(const Mesh& mesh, const std::string& name) {
    PluginSession session(plugin(), defaultRecord(*generator(name)), TransformData{});
    ProgressMeter progress = ProgressMeter::neverShown();
    return MeshPainter::paint([&session](const float* p, int n, float* out) { session.evaluate(p, n, out); }, mesh,
                              HostTransform(), progress);
}

bool ready(benchmark::State& state, const std::string& name) {
    if (!plugin().ok()) state.SkipWithError(plugin().error().c_str());
    else if (generator(name) == nullptr) state.SkipWithError(("no generator " + name).c_str());
    else return true;
    return false;
}

void BM_Evaluate(benchmark::State& state, std::string name) {
    if (!ready(state, name)) return;
    const Mesh mesh = MeshReader::read(files().ply);
    for (auto _ : state) benchmark::DoNotOptimize(paint(mesh, name).data());
    state.SetItemsProcessed(state.iterations() * mesh.vertexCount());
}

// The painted PLY into the page cache, then the same through the atomic
// output as the command writes it, which waits for the disk.
void BM_Write(benchmark::State& state, bool atomic) {
    const Mesh mesh = MeshReader::read(files().ply);
    std::vector<float> values(mesh.vertexCount());
    for (std::size_t v = 0; v < values.size(); ++v) values[v] = float(v % 1000) / 999.0f;
    for (auto _ : state) {
        if (atomic) {
            PlyWriter::writeFile(files().out, mesh, values);
        } else {
            std::FILE* f = std::fopen(files().out.c_str(), "wb");
            if (f == nullptr || !PlyWriter::write(f, mesh, values)) state.SkipWithError("cannot write");
            if (f != nullptr) std::fclose(f);
        }
    }
    state.SetItemsProcessed(state.iterations() * mesh.vertexCount());
}

void BM_Paint(benchmark::State& state, bool obj, std::string name) {
    if (!ready(state, name)) return;
    const std::string path = obj ? files().obj : files().ply;
    std::size_t vertices = 0;
    for (auto _ : state) {
        const Mesh mesh = MeshReader::read(path);
        PlyWriter::writeFile(files().out, mesh, paint(mesh, name));
        vertices = mesh.vertexCount();
    }
    state.SetItemsProcessed(state.iterations() * vertices);
}

const int kRegistered = [] {
    const auto ms = [](benchmark::internal::Benchmark* b) { b->Unit(benchmark::kMillisecond)->UseRealTime(); };
    ms(benchmark::RegisterBenchmark("Paint/read/binary PLY", BM_Read, false));
    ms(benchmark::RegisterBenchmark("Paint/read/OBJ", BM_Read, true));
    for (const char* name : {"Brick", "Voronoi"})
        ms(benchmark::RegisterBenchmark((std::string("Paint/evaluate/") + name).c_str(), BM_Evaluate, name));
    ms(benchmark::RegisterBenchmark("Paint/write/PLY", BM_Write, false));
    ms(benchmark::RegisterBenchmark("Paint/write/PLY on disk", BM_Write, true));
    for (const bool obj : {false, true})
        ms(benchmark::RegisterBenchmark((std::string("Paint/end to end/") + (obj ? "OBJ" : "binary PLY") + "/Brick").c_str(),
                                        BM_Paint, obj, std::string("Brick")));
    return 0;
}();

}  // namespace
