#include "RecordVariants.h"

#include <cstdint>

#include "core/FloatToInt.h"
#include "core/Texture3D.h"

namespace gritwell::RecordVariants {

namespace {

constexpr float kRealScale = 1.25f;  // a quarter larger; exact in float

bool isOctaveCount(std::string_view name) {
    constexpr std::string_view kSuffix = "ctaves";  // octaves, cellOctaves, scaleNoiseOctaves...
    return name.size() >= kSuffix.size() && name.substr(name.size() - kSuffix.size()) == kSuffix;
}

}  // namespace

std::vector<char> record(const GeneratorInfo& generator, int v) {
    TexturePtr t(generator.create());
    std::vector<char> bytes(256, 0);
    t->getDescription(bytes.data());
    if (v <= 0) return bytes;
    for (const FieldInfo& f : generator.fields) {
        if (f.type == FieldType::Bool) {
            writeBoolField(bytes.data(), f, true);
        } else if (f.type == FieldType::Int32 && v >= 2) {
            const std::int32_t now = readIntField(bytes.data(), f);
            writeIntField(bytes.data(), f, isOctaveCount(f.name) ? (v == 2 ? 8 : 12) : wrapAdd(now, v - 1));
        } else if (f.type == FieldType::Float && v >= 3) {
            writeFloatField(bytes.data(), f, readFloatField(bytes.data(), f) * kRealScale);
        }
    }
    return bytes;
}

std::string_view label(int v) {
    constexpr std::string_view kLabels[kCount] = {"defaults", "switches", "detail", "detail+"};
    return v >= 0 && v < kCount ? kLabels[v] : "?";
}

}  // namespace gritwell::RecordVariants
