// Records in JSON, as `record from-json` reads them. A refusal (CliError) is
// the right answer; any other exception escaping is a fault. A record it
// does build must be one the record reader accepts.

#include <cstdint>
#include <sstream>
#include <string>

#include "CliError.h"
#include "FuzzFile.h"
#include "RecordFile.h"
#include "RecordJson.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::istringstream in(std::string(reinterpret_cast<const char*>(data), size));
    std::vector<unsigned char> record;
    try {
        record = gritwell::recordFromJsonStream(in, "fuzz.json");
    } catch (const gritwell::CliError&) {
        return 0;
    }
    // A size byte of the JSON's choosing may make it a record the reader
    // refuses, but it must still refuse it cleanly.
    const std::string path = gritwell::fuzz::writeFuzzFile(record.data(), record.size(), ".rec");
    try {
        gritwell::readRecordFile(path);
    } catch (const gritwell::CliError&) {
    }
    std::remove(path.c_str());
    return 0;
}
