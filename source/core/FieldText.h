#pragma once
// The text form of a record's fields, shared by every generator's stream
// operators: the fields of its table, in table order, blank-separated, then
// a newline. A debugging aid; no record is stored this way.

#include <cstddef>
#include <iosfwd>
#include <span>

#include "core/GeneratorInfo.h"

namespace gritwell {

// Writes each field with the stream's formatting: floats as floats, Int32
// fields as integers, bools as 0 or 1.
void writeFieldText(std::ostream& os, const void* record, std::span<const FieldInfo> fields);

// Reads the same fields in the same order with the stream's formatted
// extraction (a bool is 0 or 1) and writes them into the record of
// `recordSize` bytes only once every one was read; a failed read leaves the
// record as it was and the stream failed.
void readFieldText(std::istream& is, void* record, std::size_t recordSize, std::span<const FieldInfo> fields);

}  // namespace gritwell
