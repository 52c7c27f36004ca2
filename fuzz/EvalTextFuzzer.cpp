// eval's standard input, a line at a time as eval reads it. A refusal
// (CliError) ends the input, as it ends eval.

#include <cstdint>
#include <sstream>
#include <string>

#include "CliError.h"
#include "RecordJson.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::istringstream in(std::string(reinterpret_cast<const char*>(data), size));
    std::string line;
    try {
        for (long number = 1; std::getline(in, line); ++number) {
            float xyz[3];
            gritwell::readPointLine(line, number, xyz);
        }
    } catch (const gritwell::CliError&) {
    }
    return 0;
}
