// The text stream readers of Vec2, Vec3, Vec4 and Mat4 over arbitrary text:
// values are read until the stream fails, and whatever was read is written
// back and must read back to the same bits.
//
// Input: a selector byte, then the text.

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <sstream>
#include <string>

#include "core/Mat4.h"
#include "core/Vec2.h"
#include "core/Vec3.h"
#include "core/Vec4.h"

namespace {

constexpr int kMaxValues = 64;

template <class T>
void readAll(const std::string& text) {
    std::istringstream is(text);
    for (int i = 0; i < kMaxValues; ++i) {
        T v{};
        if (!(is >> v)) break;
        std::ostringstream os;
        os.precision(9);  // enough digits for every float to read back exactly
        os << v;
        std::istringstream again(os.str());
        T w{};
        // What the writer wrote the reader accepts, to the same bits
        // (the stream reads "nan" and "inf" as failures, so those are skipped).
        if (!(again >> w)) {
            if (os.str().find_first_of("ni") == std::string::npos) std::abort();
            continue;
        }
        if (std::memcmp(&v, &w, sizeof v) != 0) std::abort();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::string text(reinterpret_cast<const char*>(data) + 1, size - 1);
    switch (data[0] % 4) {
        case 0: readAll<gritwell::Vec2>(text); break;
        case 1: readAll<gritwell::Vec3>(text); break;
        case 2: readAll<gritwell::Vec4>(text); break;
        case 3: readAll<gritwell::Mat4>(text); break;
    }
    return 0;
}
