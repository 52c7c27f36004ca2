#include "core/TransformData.h"

#include <cstring>
#include <type_traits>

namespace gritwell {

static_assert(std::is_trivially_copyable_v<TransformData> && std::is_standard_layout_v<TransformData>);

void TransformData::toBytes(char* out) const { std::memcpy(out, this, sizeof *this); }

TransformData TransformData::fromBytes(const char* in) {
    TransformData t;
    std::memcpy(&t, in, sizeof t);
    return t;
}

}  // namespace gritwell
