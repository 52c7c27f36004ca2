#pragma once
// FuzzInput: the fuzzer's bytes taken front to back as the harnesses need
// them; past the end every read yields zeros, so a short input is still a
// complete (if dull) case.

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>

namespace gritwell::fuzz {

class FuzzInput {
public:
    FuzzInput(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

    std::size_t remaining() const { return size_ - pos_; }

    std::uint8_t byte() { return pos_ < size_ ? data_[pos_++] : 0; }

    // Up to n bytes into out; the rest of out is left as it was. Returns
    // how many were copied.
    std::size_t bytes(void* out, std::size_t n) {
        const std::size_t k = n < remaining() ? n : remaining();
        if (k != 0) std::memcpy(out, data_ + pos_, k);
        pos_ += k;
        return k;
    }

    template <class T>
    T value() {
        T v{};
        bytes(&v, sizeof v);
        return v;
    }

    // A coordinate: one selector byte picks a value generators find hard
    // (NaN, infinities, huge, exact negative integers, denormals), or asks
    // for the next four bytes as a raw float.
    float coordinate() {
        const std::uint8_t s = byte();
        if (s < kHardValues.size()) return kHardValues[s];
        if (s < 0x80) return static_cast<float>(static_cast<int>(s) - 0x40);  // small integers
        return value<float>();
    }

    static constexpr std::array<float, 24> kHardValues{
        std::numeric_limits<float>::quiet_NaN(),
        -std::numeric_limits<float>::quiet_NaN(),
        std::numeric_limits<float>::infinity(),
        -std::numeric_limits<float>::infinity(),
        1e30f,
        -1e30f,
        std::numeric_limits<float>::max(),
        std::numeric_limits<float>::lowest(),
        std::numeric_limits<float>::denorm_min(),
        -std::numeric_limits<float>::denorm_min(),
        std::numeric_limits<float>::min(),
        -0.0f,
        0.0f,
        -1.0f,
        -2.0f,
        -3.0f,
        -16.0f,
        -2147483648.0f,
        2147483648.0f,
        -4294967296.0f,
        0x1p23f,
        -0x1p24f,
        0.5f,
        -0.5f,
    };

private:
    const std::uint8_t* data_;
    std::size_t size_;
    std::size_t pos_ = 0;
};

}  // namespace gritwell::fuzz
