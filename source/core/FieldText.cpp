#include "core/FieldText.h"

#include <cstdint>
#include <cstring>
#include <istream>
#include <ostream>

namespace gritwell {

void writeFieldText(std::ostream& os, const void* record, std::span<const FieldInfo> fields) {
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const FieldInfo& f = fields[i];
        switch (f.type) {
            case FieldType::Int32: os << readIntField(record, f); break;
            case FieldType::Float: os << readFloatField(record, f); break;
            case FieldType::Bool: os << (readBoolField(record, f) ? 1 : 0); break;
        }
        os << (i + 1 < fields.size() ? ' ' : '\n');
    }
}

void readFieldText(std::istream& is, void* record, std::size_t recordSize, std::span<const FieldInfo> fields) {
    // Read into a copy, so a bad token halfway leaves the record whole.
    unsigned char scratch[256];
    if (recordSize > sizeof scratch) {
        is.setstate(std::ios::failbit);
        return;
    }
    std::memcpy(scratch, record, recordSize);
    for (const FieldInfo& f : fields) {
        switch (f.type) {
            case FieldType::Int32: {
                std::int32_t v;
                if (is >> v) writeIntField(scratch, f, v);
                break;
            }
            case FieldType::Float: {
                float v;
                if (is >> v) writeFloatField(scratch, f, v);
                break;
            }
            case FieldType::Bool: {
                // Formatted extraction of a bool takes 0 or 1 and fails on
                // any other number.
                bool v;
                if (is >> v) writeBoolField(scratch, f, v);
                break;
            }
        }
        if (!is) return;
    }
    std::memcpy(record, scratch, recordSize);
}

}  // namespace gritwell
