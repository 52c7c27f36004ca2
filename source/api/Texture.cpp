// gritwell::Texture: one generator behind the public interface, opened and
// evaluated exactly as the host's session opens and evaluates it.

#include <gritwell/gritwell.h>

#include <algorithm>
#include <cstring>
#include <iterator>

#include "api/Generators.h"
#include "core/BaseData.h"
#include "core/SliceGrid.h"
#include "core/Texture3D.h"
#include "textures/TextureFactory.h"

namespace gritwell {

struct Texture::Impl {
    TexturePtr texture;
    const GeneratorInfo* info = nullptr;
};

namespace {

// The host's record buffer: a record never runs past it, and a converter
// reading an older layout reads inside it whatever the record's size.
constexpr std::size_t kRecordBuffer = 256;

// The batch call counts points in an int; longer arrays go in pieces, which
// changes no value since every point is evaluated on its own.
constexpr std::size_t kMostPointsPerCall = std::size_t{1} << 24;

// Points per block when the coordinates come as three arrays.
constexpr std::size_t kSplitBlock = 256;

void fail(Status* status, Errc code, std::string message) {
    if (status != nullptr) *status = {code, std::move(message)};
}

Status emptyTexture() { return {Errc::badArgument, "the texture is empty: make it with fromName or fromRecord"}; }

// The field type a Value holds, in the order of its alternatives.
FieldType typeOf(const Value& value) {
    constexpr FieldType kAlternatives[] = {FieldType::Int32, FieldType::Float, FieldType::Bool};
    static_assert(std::variant_size_v<Value> == std::size(kAlternatives));
    return kAlternatives[value.index()];
}

}  // namespace

Texture::Texture() noexcept = default;
Texture::~Texture() = default;
Texture::Texture(Texture&& other) noexcept = default;
Texture& Texture::operator=(Texture&& other) noexcept = default;

Texture::Texture(const Texture& other) {
    if (other.empty()) return;
    impl_ = std::make_unique<Impl>();
    impl_->info = other.impl_->info;
    impl_->texture.reset(impl_->info->create());
    char record[kRecordBuffer]{};
    other.impl_->texture->getDescription(record);
    impl_->texture->setStateFromDescription(record);
    impl_->texture->setFlags(other.impl_->texture->flags());
}

Texture& Texture::operator=(const Texture& other) {
    if (this != &other) *this = Texture(other);
    return *this;
}

Texture Texture::fromName(std::string_view name, Status* status) {
    Texture t;
    Texture3D* texture = TextureFactory::create(name);
    if (texture == nullptr) {
        fail(status, Errc::unknownGenerator, "no generator is called '" + std::string(name) + "'");
        return t;
    }
    t.impl_ = std::make_unique<Impl>();
    t.impl_->texture.reset(texture);
    t.impl_->info = TextureFactory::find(name);
    if (status != nullptr) *status = {};
    return t;
}

Texture Texture::fromRecord(const void* bytes, std::size_t size, Status* status) {
    constexpr std::size_t kHeader = sizeof(BaseData);
    if (bytes == nullptr || size < kHeader || size >= kRecordBuffer) {
        fail(status, Errc::badRecord,
             "a record is 36 to 255 bytes, its 36-byte header first; got " + std::to_string(bytes ? size : 0));
        return {};
    }
    char record[kRecordBuffer]{};
    std::memcpy(record, bytes, size);
    const std::size_t stated = static_cast<unsigned char>(record[0]);
    if (stated != size) {
        fail(status, Errc::badRecord,
             "the record's byte 0 gives its size as " + std::to_string(stated) + " bytes, but " +
                 std::to_string(size) + " were given");
        return {};
    }
    const std::string name = Texture3D::recordName(record);
    Texture t = fromName(name, nullptr);
    if (t.empty()) {
        fail(status, Errc::unknownGenerator, "the record names no generator: '" + name + "'");
        return t;
    }
    const GeneratorInfo& info = *t.impl_->info;
    const BaseData current = makeHeader(info.recordSize, info.name, info.majorVersion, info.minorVersion);
    if (Texture3D::versionsMatch(record, current) && size != static_cast<std::size_t>(info.recordSize)) {
        fail(status, Errc::badRecord,
             "a " + name + " record of version " + std::to_string(info.majorVersion) + "." +
                 std::to_string(info.minorVersion) + " is " + std::to_string(info.recordSize) + " bytes, not " +
                 std::to_string(size));
        return {};
    }
    t.impl_->texture->setStateFromDescription(record);
    if (status != nullptr) *status = {};
    return t;
}

bool Texture::empty() const noexcept { return impl_ == nullptr; }

std::string Texture::name() const { return empty() ? std::string() : std::string(impl_->info->name); }

GeneratorDesc Texture::generator() const { return empty() ? GeneratorDesc{} : describeGenerator(*impl_->info); }

Status Texture::get(std::string_view field, Value& value) const {
    if (empty()) return emptyTexture();
    const FieldInfo* f = impl_->info->field(field);
    if (f == nullptr)
        return {Errc::unknownField, name() + " has no field '" + std::string(field) +
                                        "'; its fields are: " + fieldNameList(*impl_->info)};
    char record[kRecordBuffer]{};
    impl_->texture->getDescription(record);
    switch (f->type) {
        case FieldType::Int32: value = readIntField(record, *f); break;
        case FieldType::Float: value = readFloatField(record, *f); break;
        case FieldType::Bool: value = readBoolField(record, *f); break;
    }
    return {};
}

Status Texture::set(std::string_view field, const Value& value) {
    if (empty()) return emptyTexture();
    const FieldInfo* f = impl_->info->field(field);
    if (f == nullptr)
        return {Errc::unknownField, name() + " has no field '" + std::string(field) +
                                        "'; its fields are: " + fieldNameList(*impl_->info)};
    if (typeOf(value) != f->type)
        return {Errc::wrongType, name() + "." + std::string(field) + " is " + std::string(fieldTypeName(f->type)) +
                                     ", not " + std::string(fieldTypeName(typeOf(value)))};
    // Through the record's bytes, as a host edits a stored record: the
    // generator adopts its own version whole.
    char record[kRecordBuffer]{};
    impl_->texture->getDescription(record);
    switch (f->type) {
        case FieldType::Int32: writeIntField(record, *f, std::get<std::int32_t>(value)); break;
        case FieldType::Float: writeFloatField(record, *f, std::get<float>(value)); break;
        case FieldType::Bool: writeBoolField(record, *f, std::get<bool>(value)); break;
    }
    impl_->texture->setStateFromDescription(record);
    return {};
}

int Texture::flags() const noexcept { return empty() ? 2 : impl_->texture->flags(); }

void Texture::setFlags(int flags) noexcept {
    if (!empty()) impl_->texture->setFlags(flags);
}

std::vector<unsigned char> Texture::record() const {
    if (empty()) return {};
    char record[kRecordBuffer]{};
    impl_->texture->getDescription(record);
    return std::vector<unsigned char>(record, record + impl_->info->recordSize);
}

Status Texture::evaluate(const float* xyz, std::size_t n, float* out) const {
    if (empty()) return emptyTexture();
    if (n == 0) return {};
    if (xyz == nullptr || out == nullptr) return {Errc::badArgument, "evaluate: null point or result array"};
    Texture3D& texture = *impl_->texture;
    for (std::size_t start = 0; start < n; start += kMostPointsPerCall) {
        const std::size_t count = std::min(kMostPointsPerCall, n - start);
        texture(xyz + 3 * start, static_cast<int>(count), out + start);
    }
    return {};
}

Status Texture::evaluate(const float* x, const float* y, const float* z, std::size_t n, float* out) const {
    if (empty()) return emptyTexture();
    if (n == 0) return {};
    if (x == nullptr || y == nullptr || z == nullptr || out == nullptr)
        return {Errc::badArgument, "evaluate: null coordinate or result array"};
    Texture3D& texture = *impl_->texture;
    float block[3 * kSplitBlock];
    for (std::size_t start = 0; start < n; start += kSplitBlock) {
        const std::size_t count = std::min(kSplitBlock, n - start);
        for (std::size_t i = 0; i < count; ++i) {
            block[3 * i] = x[start + i];
            block[3 * i + 1] = y[start + i];
            block[3 * i + 2] = z[start + i];
        }
        texture(block, static_cast<int>(count), out + start);
    }
    return {};
}

Status Texture::renderSlice(int size, float z, float extent, float* out) const {
    if (empty()) return emptyTexture();
    if (size < 1 || size > kLargestSlice)
        return {Errc::badArgument, "a slice is 1 to " + std::to_string(kLargestSlice) + " samples on a side, not " +
                                       std::to_string(size)};
    if (out == nullptr) return {Errc::badArgument, "renderSlice: null result array"};
    // A row at a time: the largest slice's points alone would take gigabytes.
    std::vector<float> row(3 * static_cast<std::size_t>(size));
    for (int r = 0; r < size; ++r) {
        sliceRow(size, r, z, extent, row.data());
        (*impl_->texture)(row.data(), size, out + static_cast<std::size_t>(size) * r);
    }
    return {};
}

}  // namespace gritwell
