#include "noise/CellNoise.h"

#include <cstdint>

#include "core/FloatToInt.h"

namespace gritwell::CellNoise {

namespace {
// The integer hash of a cell number, on 32-bit words with wrap-around.
std::uint32_t hash(std::uint32_t n) {
    n ^= n << 13;
    return n * (n * n * 15731u + 789221u) + 1376312589u;
}
// The 1-D and the 2-/3-D scalings differ on purpose; records depend on both.
float unitFromSigned(std::uint32_t h) { return static_cast<float>((h & 0x7fffffffu) / 2147483647.0); }
float unitFromUnsigned(std::uint32_t h) { return static_cast<float>(h) / 4294967296.0f; }
std::uint32_t cell(float v) { return static_cast<std::uint32_t>(cellIndex(v)); }
}  // namespace

float cellNoise(float x) { return unitFromSigned(hash(cell(x))); }

float cellNoise(float x, float y) { return unitFromUnsigned(hash(cell(y) * 1301u + cell(x))); }

float cellNoise(float x, float y, float z) {
    return unitFromUnsigned(hash(cell(y) * 1301u + cell(z) * 314159u + cell(x)));
}

}  // namespace gritwell::CellNoise
