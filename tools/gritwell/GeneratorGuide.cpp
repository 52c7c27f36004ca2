#include "GeneratorGuide.h"

#include <cstdio>

#include "EnumLabels.h"
#include "FieldGuide.h"
#include "RecordFile.h"
#include "RecordJson.h"
#include "textures/TextureFactory.h"

namespace gritwell::GeneratorGuide {

namespace {

using Json = nlohmann::ordered_json;

std::string versionOf(const GeneratorInfo& g) {
    return std::to_string(g.majorVersion) + "." + std::to_string(g.minorVersion);
}

Json defaultOf(const std::vector<unsigned char>& record, const FieldInfo& f) {
    switch (f.type) {
        case FieldType::Int32: return readIntField(record.data(), f);
        case FieldType::Float: return floatToJson(readFloatField(record.data(), f));
        case FieldType::Bool: return readBoolField(record.data(), f);
    }
    return nullptr;
}

// "0.001 to 100.000", "0 Running Bond, 1 Herringbone", "on or off".
std::string dialogText(const FieldGuide::Entry& guide, const EnumLabels::Field* labels) {
    switch (guide.control) {
        case FieldGuide::Control::Number:
            return std::string(guide.minimumText) + " to " + std::string(guide.maximumText);
        case FieldGuide::Control::Switch: return "on or off";
        case FieldGuide::Control::List: break;
    }
    std::string items;
    if (labels == nullptr) return items;
    for (const EnumLabels::Item& item : labels->items)
        items += (items.empty() ? "" : ", ") + std::to_string(item.value) + " " + std::string(item.label);
    if (!labels->otherValues.empty()) items += "; any other value shows " + std::string(labels->otherValues);
    return items;
}

}  // namespace

std::string listText() {
    std::string text;
    char line[256];
    for (const GeneratorInfo* g : TextureFactory::hostGenerators()) {
        std::snprintf(line, sizeof line, "%-16s %s\n", std::string(g->name).c_str(), std::string(g->summary).c_str());
        text += line;
    }
    text += "\nIn the library, never opened by the host:\n";
    for (const GeneratorInfo* g : TextureFactory::libraryOnlyGenerators()) {
        std::snprintf(line, sizeof line, "%-16s %s\n", std::string(g->name).c_str(), std::string(g->summary).c_str());
        text += line;
    }
    return text + "\n'gritwell info NAME' describes every field of one.\n";
}

Json listJson() {
    Json list = Json::array();
    for (const GeneratorInfo* g : TextureFactory::allGenerators())
        list.push_back({{"generator", g->name},
                        {"summary", g->summary},
                        {"version", versionOf(*g)},
                        {"size", g->recordSize},
                        {"host", TextureFactory::isHostGenerator(*g)}});
    return list;
}

std::string generatorText(const GeneratorInfo& g) {
    const std::vector<unsigned char> defaults = defaultRecord(g);
    std::string text = std::string(g.name) + " " + versionOf(g) + ", a " + std::to_string(g.recordSize) +
                       "-byte record: " + std::string(g.summary) + "\n";
    if (!TextureFactory::isHostGenerator(g)) text += "In the library; host sessions and the dialog never open it.\n";
    for (const FieldInfo& f : g.fields) {
        const EnumLabels::Field* labels = EnumLabels::find(g.name, f.name);
        text += "\n" + std::string(f.name) + ": " + std::string(fieldTypeName(f.type)) +
                (labels != nullptr ? " enumeration" : "") + ", default " + defaultOf(defaults, f).dump();
        if (labels != nullptr) text += " (" + std::string(EnumLabels::label(*labels, readIntField(defaults.data(), f))) + ")";
        const FieldGuide::Entry* guide = FieldGuide::find(g.name, f.name);
        if (guide == nullptr) {
            text += "; not in the dialog\n";
            continue;
        }
        text += "; the dialog: " + dialogText(*guide, labels) + "\n  " + std::string(guide->meaning) + "\n";
    }
    return text;
}

Json generatorJson(const GeneratorInfo& g) {
    const std::vector<unsigned char> defaults = defaultRecord(g);
    Json fields = Json::array();
    for (const FieldInfo& f : g.fields) {
        Json field = {{"name", f.name}, {"type", fieldTypeName(f.type)}, {"default", defaultOf(defaults, f)}};
        const FieldGuide::Entry* guide = FieldGuide::find(g.name, f.name);
        field["meaning"] = guide != nullptr ? Json(guide->meaning) : Json();
        Json dialog;
        if (guide != nullptr && guide->control == FieldGuide::Control::Number)
            dialog = {{"control", "number"}, {"minimum", guide->minimum}, {"maximum", guide->maximum}};
        else if (guide != nullptr && guide->control == FieldGuide::Control::Switch)
            dialog = {{"control", "switch"}};
        else if (guide != nullptr)
            dialog = {{"control", "list"}};
        if (const EnumLabels::Field* labels = EnumLabels::find(g.name, f.name)) {
            Json values = Json::array();
            for (const EnumLabels::Item& item : labels->items)
                values.push_back({{"value", item.value}, {"label", item.label}});
            dialog["values"] = values;
            dialog["otherValues"] = labels->otherValues.empty() ? Json() : Json(labels->otherValues);
        }
        field["dialog"] = dialog;
        fields.push_back(field);
    }
    return {{"generator", g.name},        {"summary", g.summary},
            {"version", versionOf(g)},    {"size", g.recordSize},
            {"host", TextureFactory::isHostGenerator(g)}, {"fields", fields}};
}

}  // namespace gritwell::GeneratorGuide
