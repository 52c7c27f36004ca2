// Mesh files through our reader, as `gritwell paint` reads them: the first
// byte picks OBJ or PLY, the rest is the file. A refusal (CliError) is the
// right answer to a damaged file; a hang, a crash or any other exception is
// a fault.

#include <cstdint>

#include "CliError.h"
#include "FuzzFile.h"
#include "MeshReader.h"

// The mesh library leaks part of a scene it gives up on; that is its own
// memory, freed when the command ends, and no fault of ours to report.
extern "C" const char* __lsan_default_suppressions() { return "leak:libassimp.so\n"; }

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const char* extension = (data[0] & 1) != 0 ? ".ply" : ".obj";
    const std::string path = gritwell::fuzz::writeFuzzFile(data + 1, size - 1, extension);
    try {
        const gritwell::Mesh mesh = gritwell::MeshReader::read(path);
        // What paint relies on: every corner names a vertex of the mesh.
        for (const std::uint32_t corner : mesh.faceCorners)
            if (corner >= mesh.vertexCount()) __builtin_trap();
    } catch (const gritwell::CliError&) {
    }
    std::remove(path.c_str());
    return 0;
}
