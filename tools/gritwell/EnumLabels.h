#pragma once
// EnumLabels: what the generator dialog's combo boxes call each stored value
// of an enumeration field, so that tools without Qt can show records in the
// dialog's words. A test holds the table to the dialog's own panels.

#include <cstdint>
#include <span>
#include <string_view>

namespace gritwell::EnumLabels {

struct Item {
    std::int32_t value;      // what the record stores when the item is chosen
    std::string_view label;  // the combo box text
};

struct Field {
    std::string_view generator;
    std::string_view field;           // as in the generator's field table
    std::span<const Item> items;      // in the combo box's order, top first
    std::string_view otherValues;     // what the combo shows for any other value; empty: no item
};

// Every enumeration field of every generator the dialog offers.
std::span<const Field> all();

// The entry for a generator's field; null when the field is not an enumeration.
const Field* find(std::string_view generator, std::string_view field);

// The label the dialog shows for `value`; empty when it shows no item.
std::string_view label(const Field& field, std::int32_t value);

}  // namespace gritwell::EnumLabels
