#pragma once
// State records as files: exactly the record's bytes, as the host stores them.

#include <string>
#include <vector>

#include "core/GeneratorInfo.h"

namespace gritwell {

struct LoadedRecord {
    std::vector<unsigned char> bytes;  // as read: 36 to 255 bytes
    const GeneratorInfo* generator;    // the generator its name selects
    bool currentVersion;               // its version is the generator's own
};

// The defaults of a generator, as its description writes them.
std::vector<unsigned char> defaultRecord(const GeneratorInfo& generator);

// The record the plug-in evaluates for this one, read through its generator:
// the current version as it is, an older version the generator converts
// converted, any other version ignored for the defaults.
std::vector<unsigned char> adoptedRecord(const LoadedRecord& record);

// For a record of another version, what the plug-in does with it:
// "version 3.0 of Brick; the plug-in converts it to the current version 4.0".
std::string versionNote(const LoadedRecord& record);

// Reads and checks a record file; a damaged or foreign file is a CliError
// that says what is wrong with it.
LoadedRecord readRecordFile(const std::string& path);

// A generator name (its defaults) or a record file.
LoadedRecord resolveRecord(const std::string& nameOrFile);

// "; did you mean 'Brick'?" when `name` is close to a generator's name.
std::string nearestGeneratorHint(const std::string& name);

// Writes through a temporary file renamed into place (AtomicOutput), so an
// interrupted or failed write never leaves a half-written file at `path`.
void writeFileAtomically(const std::string& path, const void* data, std::size_t size);

}  // namespace gritwell
