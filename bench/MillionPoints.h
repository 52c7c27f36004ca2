#pragma once
// A million points in [-8, 8)^3 from a multiplicative hash of their index:
// tools/bench/python_table.py makes the same cloud in numpy, so the Python
// module and the C++ library are timed on the same points.

#include <cstdint>
#include <vector>

inline std::vector<float> millionPoints() {
    constexpr std::uint64_t kCoordinates = 3'000'000;
    std::vector<float> xyz(kCoordinates);
    for (std::uint64_t i = 0; i < kCoordinates; ++i)
        xyz[i] = static_cast<float>(static_cast<double>((i * 2654435761u) % 4294967296u) / 4294967296.0 * 16.0 - 8.0);
    return xyz;
}
