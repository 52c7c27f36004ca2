#pragma once
// State records as JSON: the header and the named fields of the generator's
// field table, in record order, then the dialog's labels of its enumeration
// fields.

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "RecordFile.h"

namespace gritwell {

nlohmann::ordered_json recordToJson(const LoadedRecord& record);

// The shortest decimal that reads back as the same float; NaN and the
// infinities, which JSON lacks, as the strings "nan", "inf" and "-inf".
nlohmann::ordered_json floatToJson(float v);

// Builds a record from JSON: the generator's defaults, then every key given.
// Unknown keys, wrong types and foreign versions are CliErrors.
std::vector<unsigned char> recordFromJson(const nlohmann::ordered_json& json);

// Sets one field from its text form ("depth=2", "interactiveUpdate=false",
// or an enumeration by its label: "pattern=Running Bond"). Returns a warning
// when the value stored is one the dialog would never give (outside its
// range, none of its items, not finite), else nothing; the value is stored
// either way.
std::string setFieldFromText(std::vector<unsigned char>& record, const GeneratorInfo& generator,
                      const std::string& assignment);

}  // namespace gritwell
