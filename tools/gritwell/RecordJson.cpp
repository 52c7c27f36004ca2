#include "RecordJson.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <sstream>

#include "CliError.h"
#include "EnumLabels.h"
#include "FieldGuide.h"
#include "Nearest.h"
#include "core/Texture3D.h"
#include "textures/TextureFactory.h"

namespace gritwell {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::string_view kInteractiveUpdate = "interactiveUpdate";

std::vector<std::string_view> fieldNames(const GeneratorInfo& generator) {
    std::vector<std::string_view> names = {kInteractiveUpdate};
    for (const FieldInfo& f : generator.fields) names.push_back(f.name);
    return names;
}

std::string joined(const std::vector<std::string_view>& words) {
    std::string text;
    for (const std::string_view w : words) text += (text.empty() ? "" : ", ") + std::string(w);
    return text;
}

[[noreturn]] void badValue(const GeneratorInfo& generator, std::string_view field,
                           std::string_view type, const std::string& value) {
    throw CliError("field '" + std::string(field) + "' of " + std::string(generator.name) +
                   " is " + std::string(type) + "; '" + value + "' is not");
}

bool parseBool(const GeneratorInfo& generator, std::string_view field, const std::string& text) {
    if (text == "true" || text == "1" || text == "on") return true;
    if (text == "false" || text == "0" || text == "off") return false;
    badValue(generator, field, "a bool (true or false)", text);
}

std::int32_t parseInt(const GeneratorInfo& generator, std::string_view field, const std::string& text) {
    std::int32_t v = 0;
    const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), v);
    if (ec != std::errc() || end != text.data() + text.size() || text.empty())
        badValue(generator, field, "a 32-bit integer", text);
    return v;
}

float parseFloat(const GeneratorInfo& generator, std::string_view field, const std::string& text) {
    char* end = nullptr;
    errno = 0;
    const float v = std::strtof(text.c_str(), &end);
    if (text.empty() || end != text.c_str() + text.size() || std::isspace(static_cast<unsigned char>(text[0])))
        badValue(generator, field, "a float", text);
    // "inf" is a value a record may hold; 1e300 is not, and would be stored
    // as one. (Underflow to a denormal or zero is a float's own rounding.)
    if (errno == ERANGE && std::isinf(v))
        throw CliError("field '" + std::string(field) + "' of " + std::string(generator.name) + " is a float; '" +
                       text + "' is beyond its range (at most about 3.4e38)");
    return v;
}

// The text form of a JSON value, for fields given as JSON.
std::string jsonText(const Json& value) {
    if (value.is_string()) return value.get<std::string>();
    if (value.is_number_float()) {
        // Round through float's shortest form so 0.1 means 0.1f exactly.
        char text[32];
        const auto end = std::to_chars(text, text + sizeof text, value.get<double>()).ptr;
        return std::string(text, end);
    }
    return value.dump();
}

void setField(std::vector<unsigned char>& record, const GeneratorInfo& generator,
              std::string_view field, const std::string& text) {
    if (field == kInteractiveUpdate) {
        record[offsetof(BaseData, interactiveUpdate)] = parseBool(generator, field, text) ? 1 : 0;
        return;
    }
    const FieldInfo* f = generator.field(field);
    if (f == nullptr)
        throw CliError("'" + std::string(generator.name) + "' has no field '" + std::string(field) + "'" +
                       didYouMean(field, fieldNames(generator)) + " (fields: " + joined(fieldNames(generator)) + ")");
    switch (f->type) {
        case FieldType::Int32: writeIntField(record.data(), *f, parseInt(generator, field, text)); break;
        case FieldType::Float: writeFloatField(record.data(), *f, parseFloat(generator, field, text)); break;
        case FieldType::Bool: writeBoolField(record.data(), *f, parseBool(generator, field, text)); break;
    }
}

}  // namespace

Json floatToJson(float v) {
    // Not to the double nearest the float: 0.1f shows as 0.1.
    if (std::isnan(v)) return "nan";
    if (std::isinf(v)) return v > 0 ? "inf" : "-inf";
    char text[32];
    const auto end = std::to_chars(text, text + sizeof text, v).ptr;
    return std::strtod(std::string(text, end).c_str(), nullptr);
}

Json recordToJson(const LoadedRecord& record) {
    const auto& bytes = record.bytes;
    const char* raw = reinterpret_cast<const char*>(bytes.data());
    Json json;
    json["generator"] = Texture3D::recordName(raw);
    json["version"] = std::to_string(Texture3D::majorVersion(raw)) + "." +
                      std::to_string(Texture3D::minorVersion(raw));
    json["size"] = bytes[0];
    json[kInteractiveUpdate] = bytes[offsetof(BaseData, interactiveUpdate)] != 0;
    // The header is the file's own; the fields are those the plug-in
    // evaluates, which for another version are converted or the defaults.
    if (!record.currentVersion) json["note"] = versionNote(record);
    const std::vector<unsigned char> evaluated = record.currentVersion ? bytes : adoptedRecord(record);
    Json fields = Json::object();
    for (const FieldInfo& f : record.generator->fields) {
        switch (f.type) {
            case FieldType::Int32: fields[f.name] = readIntField(evaluated.data(), f); break;
            case FieldType::Float: fields[f.name] = floatToJson(readFloatField(evaluated.data(), f)); break;
            case FieldType::Bool: fields[f.name] = readBoolField(evaluated.data(), f); break;
        }
    }
    json["fields"] = fields;

    // What the dialog's combo boxes show for the enumeration fields (null:
    // no item); from-json ignores it, the numbers are what counts.
    Json labels = Json::object();
    for (const FieldInfo& f : record.generator->fields)
        if (const EnumLabels::Field* e = EnumLabels::find(record.generator->name, f.name)) {
            const std::string_view label = EnumLabels::label(*e, readIntField(evaluated.data(), f));
            labels[f.name] = label.empty() ? Json() : Json(std::string(label));
        }
    if (!labels.empty()) json["labels"] = labels;
    return json;
}

std::vector<unsigned char> recordFromJson(const Json& json) {
    if (!json.is_object() || !json.contains("generator") || !json["generator"].is_string())
        throw CliError("a record in JSON needs a \"generator\" name");
    const std::string name = json["generator"].get<std::string>();
    const GeneratorInfo* generator = TextureFactory::find(name);
    if (generator == nullptr)
        throw CliError("unknown generator '" + name + "'" + nearestGeneratorHint(name) + " (see 'gritwell list')");
    std::vector<unsigned char> record = defaultRecord(*generator);

    for (const auto& [key, value] : json.items()) {
        if (key == "generator" || key == "note" || key == "labels") continue;
        if (key == "version") {
            const std::string current =
                std::to_string(generator->majorVersion) + "." + std::to_string(generator->minorVersion);
            if (jsonText(value) != current)
                throw CliError("only the current version " + current + " of " + name + " can be written, not " +
                               jsonText(value) + " (for a record of another version, 'record show' prints the " +
                               "fields the plug-in evaluates, in version " + current +
                               "'s layout: leave out \"version\" and \"size\" to write them as a current record)");
        } else if (key == "size") {
            // Compared whole: 4294967388 must not pass as its low bits, 92.
            if (!value.is_number_unsigned() || value.get<std::uint64_t>() > 255)
                throw CliError("\"size\" is the record's size byte, 0 to 255; " + jsonText(value) + " is not");
            record[0] = static_cast<unsigned char>(value.get<std::uint64_t>());
        } else if (key == kInteractiveUpdate) {
            setField(record, *generator, key, jsonText(value));
        } else if (key == "fields") {
            if (!value.is_object()) throw CliError("\"fields\" must be an object");
            for (const auto& [field, fieldValue] : value.items())
                setField(record, *generator, field, jsonText(fieldValue));
        } else {
            throw CliError("unknown key \"" + key +
                           "\" (a record has generator, version, size, interactiveUpdate, fields, labels)");
        }
    }
    return record;
}

std::vector<unsigned char> recordFromJsonStream(std::istream& in, const std::string& name) {
    try {
        return recordFromJson(Json::parse(in));
    } catch (const nlohmann::json::parse_error& e) {
        throw CliError("'" + name + "' is not valid JSON: " + e.what());
    } catch (const nlohmann::json::exception& e) {
        // A number beyond a double (1e400) is the library's out_of_range,
        // not a parse_error; none of its exceptions may end the program.
        throw CliError("'" + name + "' is not a record in JSON: " + e.what());
    }
}

bool readPointLine(const std::string& line, long lineNumber, float xyz[3]) {
    const auto first = line.find_first_not_of(" \t\r");
    if (first == std::string::npos || line[first] == '#') return false;
    std::istringstream fields(line);
    std::string rest;
    if (!(fields >> xyz[0] >> xyz[1] >> xyz[2]) || (fields >> rest))
        throw CliError("line " + std::to_string(lineNumber) + ": expected three numbers 'x y z', got '" + line +
                       "'");
    return true;
}

namespace {

// An enumeration's value by its label, as the dialog's list shows it (any
// case); the text itself when it is a number.
std::string valueForLabel(const GeneratorInfo& generator, std::string_view field, const std::string& text) {
    const EnumLabels::Field* labels = EnumLabels::find(generator.name, field);
    if (labels == nullptr) return text;
    auto same = [](std::string_view a, std::string_view b) {
        return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
                   return std::tolower(static_cast<unsigned char>(x)) == std::tolower(static_cast<unsigned char>(y));
               });
    };
    std::vector<std::string_view> names;
    for (const EnumLabels::Item& item : labels->items) {
        if (same(item.label, text)) return std::to_string(item.value);
        names.push_back(item.label);
    }
    std::int32_t number = 0;
    const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (ec == std::errc() && end == text.data() + text.size() && !text.empty()) return text;
    throw CliError("field '" + std::string(field) + "' of " + std::string(generator.name) +
                   " is a number or one of the dialog's labels (" + joined(names) + "); '" + text + "' is neither" +
                   didYouMean(text, names));
}

// Why the value stored in `f` is one the dialog would never give; empty when
// it would.
std::string outsideTheDialog(const std::vector<unsigned char>& record, const GeneratorInfo& generator,
                             const FieldInfo& f) {
    const FieldGuide::Entry* guide = FieldGuide::find(generator.name, f.name);
    if (f.type == FieldType::Float && !std::isfinite(readFloatField(record.data(), f))) return "is not finite";
    if (guide == nullptr || f.type == FieldType::Bool) return {};
    const double v = f.type == FieldType::Float ? readFloatField(record.data(), f) : readIntField(record.data(), f);
    if (guide->control == FieldGuide::Control::Number && (v < guide->minimum || v > guide->maximum))
        return "is outside the dialog's range, " + std::string(guide->minimumText) + " to " +
               std::string(guide->maximumText);
    const EnumLabels::Field* labels = EnumLabels::find(generator.name, f.name);
    if (guide->control == FieldGuide::Control::List && labels != nullptr) {
        for (const EnumLabels::Item& item : labels->items)
            if (item.value == v) return {};
        return "is none of the dialog's items" + (labels->otherValues.empty()
                                                      ? std::string(" (it shows no item)")
                                                      : " (it shows " + std::string(labels->otherValues) + ")");
    }
    return {};
}

}  // namespace

std::string setFieldFromText(std::vector<unsigned char>& record, const GeneratorInfo& generator,
                             const std::string& assignment) {
    const auto eq = assignment.find('=');
    if (eq == std::string::npos || eq == 0)
        throw CliError("'" + assignment + "' is not FIELD=VALUE");
    const std::string field = assignment.substr(0, eq), text = assignment.substr(eq + 1);
    setField(record, generator, field, valueForLabel(generator, field, text));
    const FieldInfo* f = generator.field(field);
    const std::string why = f == nullptr ? std::string() : outsideTheDialog(record, generator, *f);
    if (why.empty()) return why;
    return field + "=" + text + " " + why + "; stored as given, for records are never clamped";
}

}  // namespace gritwell
