// Record files, as `record show` reads them: read, and when accepted, shown
// as JSON (which converts other versions). Refusals are CliErrors; nothing
// else may escape.

#include <cstdint>

#include "CliError.h"
#include "FuzzFile.h"
#include "RecordFile.h"
#include "RecordJson.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string path = gritwell::fuzz::writeFuzzFile(data, size, ".rec");
    try {
        const gritwell::LoadedRecord record = gritwell::readRecordFile(path);
        (void)gritwell::recordToJson(record).dump(2);
    } catch (const gritwell::CliError&) {
    }
    std::remove(path.c_str());
    return 0;
}
