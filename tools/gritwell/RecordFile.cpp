#include "RecordFile.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "AtomicOutput.h"
#include "CliError.h"
#include "Nearest.h"
#include "core/Texture3D.h"
#include "textures/TextureFactory.h"

namespace gritwell {

std::vector<unsigned char> defaultRecord(const GeneratorInfo& generator) {
    TexturePtr texture(generator.create());
    std::vector<unsigned char> bytes(generator.recordSize);
    texture->getDescription(reinterpret_cast<char*>(bytes.data()));
    return bytes;
}

std::vector<unsigned char> adoptedRecord(const LoadedRecord& record) {
    // The host's block is 256 bytes; past the file's bytes it reads zeros.
    char block[256] = {};
    std::memcpy(block, record.bytes.data(), record.bytes.size());
    TexturePtr texture(record.generator->create());
    texture->setStateFromDescription(block);
    std::vector<unsigned char> adopted(record.generator->recordSize);
    texture->getDescription(reinterpret_cast<char*>(adopted.data()));
    return adopted;
}

std::string versionNote(const LoadedRecord& record) {
    const GeneratorInfo& g = *record.generator;
    const char* raw = reinterpret_cast<const char*>(record.bytes.data());
    const int major = Texture3D::majorVersion(raw);
    const std::string current = std::to_string(g.majorVersion) + "." + std::to_string(g.minorVersion);
    const std::string note =
        "version " + std::to_string(major) + "." + std::to_string(Texture3D::minorVersion(raw)) + " of " +
        std::string(g.name) + (TextureFactory::isHostGenerator(g) ? "; the plug-in " : "; the library ");
    if (g.convertsMajorVersion(major)) return note + "converts it to the current version " + current;
    return note + "ignores it and evaluates the defaults of the current version " + current;
}

LoadedRecord readRecordFile(const std::string& path) {
    // A folder opens as a stream that reads nothing: say so, not "0 bytes".
    if (std::error_code ec; std::filesystem::is_directory(path, ec))
        throw CliError("cannot read '" + path + "': it is a folder");
    std::ifstream in(path, std::ios::binary);
    if (!in) throw CliError("cannot read '" + path + "': " + std::strerror(errno));
    std::vector<unsigned char> bytes;
    char c;
    while (bytes.size() <= 256 && in.get(c)) bytes.push_back(static_cast<unsigned char>(c));
    if (bytes.size() < sizeof(BaseData) || bytes.size() > 255)
        throw CliError("'" + path + "' is not a state record: " +
                       (bytes.size() > 255 ? std::string("more than 255") : std::to_string(bytes.size())) +
                       " bytes, a record holds 36 to 255");

    const char* raw = reinterpret_cast<const char*>(bytes.data());
    const std::string name = Texture3D::recordName(raw);
    if (name.size() == sizeof(BaseData::name))
        throw CliError("'" + path + "' is damaged: its generator name is not terminated");
    const GeneratorInfo* generator = TextureFactory::find(name);
    if (generator == nullptr)
        throw CliError("'" + path + "' is a record of an unknown generator '" + name +
                       "' (see 'gritwell list')");

    const bool current = Texture3D::majorVersion(raw) == generator->majorVersion &&
                         Texture3D::minorVersion(raw) == generator->minorVersion;
    if (current && bytes.size() < static_cast<std::size_t>(generator->recordSize))
        throw CliError("'" + path + "' is damaged: " + std::to_string(bytes.size()) + " bytes, a " +
                       name + " record holds " + std::to_string(generator->recordSize));
    return {std::move(bytes), generator, current};
}

LoadedRecord resolveRecord(const std::string& nameOrFile) {
    if (const GeneratorInfo* generator = TextureFactory::find(nameOrFile))
        return {defaultRecord(*generator), generator, true};
    std::error_code ec;
    if (!std::filesystem::exists(nameOrFile, ec))
        throw CliError("'" + nameOrFile + "' is neither a generator name nor a record file" +
                       nearestGeneratorHint(nameOrFile) + " (see 'gritwell list')");
    return readRecordFile(nameOrFile);
}

std::string nearestGeneratorHint(const std::string& name) {
    std::vector<std::string_view> names;
    for (const GeneratorInfo* g : TextureFactory::allGenerators()) names.push_back(g->name);
    return didYouMean(name, names);
}

void writeFileAtomically(const std::string& path, const void* data, std::size_t size) {
    AtomicOutput out(path);
    if (std::fwrite(data, 1, size, out.file()) != size) throw CliError("cannot write '" + path + "'");
    out.commit();
}

}  // namespace gritwell
