#include "FieldGuide.h"

namespace gritwell::FieldGuide {

namespace {

constexpr Entry kEntries[] = {
#include "FieldGuide.inc"
};

}  // namespace

std::span<const Entry> all() { return kEntries; }

const Entry* find(std::string_view generator, std::string_view field) {
    for (const Entry& e : kEntries)
        if (e.generator == generator && e.field == field) return &e;
    return nullptr;
}

}  // namespace gritwell::FieldGuide
