#pragma once
// The 36-byte header that opens every state record.

#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace gritwell {

static_assert(std::endian::native == std::endian::little,
              "state records are little-endian and copied verbatim");

struct BaseData {
    std::uint8_t size;               // whole record, header included
    char name[32];                   // NUL-terminated generator name
    std::int8_t majorVersion;
    std::int8_t minorVersion;
    std::uint8_t interactiveUpdate;  // a bool byte; any non-zero value reads as true
};
static_assert(sizeof(BaseData) == 36);
static_assert(offsetof(BaseData, name) == 1);
static_assert(offsetof(BaseData, majorVersion) == 33);
static_assert(offsetof(BaseData, minorVersion) == 34);
static_assert(offsetof(BaseData, interactiveUpdate) == 35);

// The header every generator's constructor writes: its size, name and
// version, with interactive update on.
constexpr BaseData makeHeader(int size, std::string_view name, int major, int minor) {
    BaseData h{};
    h.size = static_cast<std::uint8_t>(size);
    for (std::size_t i = 0; i < name.size() && i < sizeof h.name - 1; ++i) h.name[i] = name[i];
    h.majorVersion = static_cast<std::int8_t>(major);
    h.minorVersion = static_cast<std::int8_t>(minor);
    h.interactiveUpdate = 1;
    return h;
}

}  // namespace gritwell
