#include "core/Texture3D.h"

#include <cstring>
#include <new>

namespace gritwell {

float Texture3D::operator()(const float*) { return 1.0f; }

void Texture3D::operator()(const float*, int n, float* out) {
    for (int i = 0; i < n; ++i) out[i] = 1.0f;
}

void Texture3D::getDescription(char* out) { std::memcpy(out, "Empty", 6); }

void Texture3D::setStateFromDescription(const char*) {}

int Texture3D::majorVersion(const char* record) {
    return static_cast<std::int8_t>(record[offsetof(BaseData, majorVersion)]);
}

int Texture3D::minorVersion(const char* record) {
    return static_cast<std::int8_t>(record[offsetof(BaseData, minorVersion)]);
}

bool Texture3D::versionsMatch(const char* record, const BaseData& current) {
    if (majorVersion(record) != current.majorVersion) return false;
    return minorVersion(record) == current.minorVersion;
}

std::string Texture3D::recordName(const char* record) {
    const char* name = record + offsetof(BaseData, name);
    return std::string(name, strnlen(name, sizeof(BaseData::name)));
}

void Texture3D::release(Texture3D* texture) {
    if (texture == nullptr) return;
    texture->Texture3D::~Texture3D();
    ::operator delete(texture);
}

}  // namespace gritwell
