// Mesh files through our reader, as `gritwell paint` reads them: the first
// byte picks OBJ or PLY, the rest is the file. A refusal (CliError) is the
// right answer to a damaged file; a hang, a crash or any other exception is
// a fault.

#include <cstdint>

#include "CliError.h"
#include "FuzzFile.h"
#include "MeshReader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const char* extension = (data[0] & 1) != 0 ? ".ply" : ".obj";
    const std::string path = gritwell::fuzz::writeFuzzFile(data + 1, size - 1, extension);
    try {
        const gritwell::Mesh mesh = gritwell::MeshReader::read(path);
        // What paint and the writer rely on: every corner names a vertex of
        // the mesh, and the faces, of three corners or more, hold them all.
        for (const std::uint32_t corner : mesh.faceCorners)
            if (corner >= mesh.vertexCount()) __builtin_trap();
        std::size_t corners = 0;
        for (const std::uint32_t size : mesh.faceSizes) {
            if (size < 3) __builtin_trap();
            corners += size;
        }
        if (corners != mesh.faceCorners.size() || mesh.positions.size() % 3 != 0) __builtin_trap();
    } catch (const gritwell::CliError&) {
    }
    std::remove(path.c_str());
    return 0;
}
