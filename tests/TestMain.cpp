// The test programs' main: GoogleTest's, and --simd=LEVEL (scalar, avx2 or
// avx512) to hold the batch paths to one instruction set for the whole run.

#include <cstdio>
#include <optional>
#include <string_view>

#include <gtest/gtest.h>

#include "core/SimdLevel.h"

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    constexpr std::string_view kSimd = "--simd=";
    for (int i = 1; i < argc; ++i) {
        const std::string_view arg = argv[i];
        const std::optional<gritwell::SimdLevel> level =
            arg.starts_with(kSimd) ? gritwell::simdLevelFromName(arg.substr(kSimd.size())) : std::nullopt;
        if (!level) {
            std::fprintf(stderr, "%s: unknown argument '%s' (besides GoogleTest's flags: --simd=scalar|avx2|avx512)\n",
                         argv[0], argv[i]);
            return 2;
        }
        gritwell::setSimdLevel(*level);
        if (gritwell::simdLevel() != *level)
            std::fprintf(stderr, "%s: this processor runs at most %s; the tests run that\n", argv[0],
                         gritwell::simdLevelName(gritwell::simdLevel()));
    }
    return RUN_ALL_TESTS();
}
