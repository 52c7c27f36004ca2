// Transform record files, as --transform reads them: read, checked, and
// when accepted applied to a few points. Refusals are CliErrors.

#include <cstdint>

#include "CliError.h"
#include "FuzzFile.h"
#include "HostTransform.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string path = gritwell::fuzz::writeFuzzFile(data, size, ".xform");
    try {
        const gritwell::HostTransform transform(gritwell::HostTransform::readFile(path));
        float points[] = {0, 0, 0, 1, -2, 3, 1e30f, -1e30f, 0.5f};
        transform.apply(points, points, 3);
    } catch (const gritwell::CliError&) {
    }
    std::remove(path.c_str());
    return 0;
}
