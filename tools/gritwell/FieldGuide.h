#pragma once
// FieldGuide: what the generator dialog says about each record field: the
// tool tip of the control that edits it and the range that control allows.
// The dialog's forms are the one source; field_guide writes this table from
// its panels (FieldGuide.inc), since the command line never links the
// dialog, and the test command checks that the table is current. Fields the
// dialog shows nowhere have no entry.

#include <cstdint>
#include <span>
#include <string_view>

namespace gritwell::FieldGuide {

enum class Control : std::uint8_t {
    Number,  // a number box or a slider: minimum and maximum apply
    List,    // a drop-down list of an enumeration's items (EnumLabels)
    Switch,  // a check box or toggle button
};

struct Entry {
    std::string_view generator;
    std::string_view field;    // as in the generator's field table
    std::string_view meaning;  // the control's tool tip
    Control control;
    double minimum, maximum;                    // a Number's range
    std::string_view minimumText, maximumText;  // as the control writes them
};

std::span<const Entry> all();

// The entry for a generator's field; null when the dialog does not show it.
const Entry* find(std::string_view generator, std::string_view field);

}  // namespace gritwell::FieldGuide
