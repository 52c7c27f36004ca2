#include "api/Generators.h"

#include "textures/TextureFactory.h"

namespace gritwell {

namespace {

ValueType publicType(FieldType type) {
    switch (type) {
        case FieldType::Int32: return ValueType::Int32;
        case FieldType::Float: return ValueType::Float;
        case FieldType::Bool: return ValueType::Bool;
    }
    return ValueType::Float;
}

}  // namespace

GeneratorDesc describeGenerator(const GeneratorInfo& info) {
    GeneratorDesc desc{std::string(info.name), std::string(info.summary), info.majorVersion,
                       info.minorVersion,      info.recordSize,           {},
                       {}};
    for (const FieldInfo& f : info.fields)
        desc.fields.push_back({std::string(f.name), publicType(f.type), static_cast<int>(f.offset)});
    desc.convertedMajorVersions.assign(info.olderMajorVersions.begin(), info.olderMajorVersions.end());
    return desc;
}

std::string fieldNameList(const GeneratorInfo& info) {
    std::string list;
    for (const FieldInfo& f : info.fields) {
        if (!list.empty()) list += ", ";
        list += f.name;
    }
    return list;
}

std::vector<GeneratorDesc> generators() {
    std::vector<GeneratorDesc> all;
    for (const GeneratorInfo* info : TextureFactory::hostGenerators()) all.push_back(describeGenerator(*info));
    return all;
}

std::string_view valueTypeName(ValueType type) {
    switch (type) {
        case ValueType::Int32: return fieldTypeName(FieldType::Int32);
        case ValueType::Float: return fieldTypeName(FieldType::Float);
        case ValueType::Bool: return fieldTypeName(FieldType::Bool);
    }
    return "?";
}

}  // namespace gritwell
