#pragma once
// State records as JSON: the header and the named fields of the generator's
// field table, in record order, then the dialog's labels of its enumeration
// fields.

#include <istream>
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

// Parses `in` and builds the record from it. Every exception of the JSON
// library (a syntax error, a number beyond a double such as 1e400) becomes a
// CliError that names `name`.
std::vector<unsigned char> recordFromJsonStream(std::istream& in, const std::string& name);

// One line of eval's input: "x y z" into xyz and true; false for a blank
// line or a comment ('#' first). Anything else, a number beyond a float
// included, is a CliError naming the line.
bool readPointLine(const std::string& line, long lineNumber, float xyz[3]);

// Sets one field from its text form ("depth=2", "interactiveUpdate=false",
// or an enumeration by its label: "pattern=Running Bond"). Returns a warning
// when the value stored is one the dialog would never give (outside its
// range, none of its items, not finite), else nothing; the value is stored
// either way.
std::string setFieldFromText(std::vector<unsigned char>& record, const GeneratorInfo& generator,
                      const std::string& assignment);

}  // namespace gritwell
