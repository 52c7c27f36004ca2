// Damaged state records: every generator adopts a record whose header is
// valid and whose body is arbitrary, is evaluated at hard points in 3-D and
// planar mode, and writes its record back. Older Brick and Weave layouts go
// through their conversions. Each batch runs past the 256-point block, at
// every instruction-set level.
//
// Input: generator selector, mode byte, up to 256 record bytes after the
// header, then points (see FuzzInput::coordinate).

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

#include "FuzzInput.h"
#include "core/SimdLevel.h"
#include "core/Texture3D.h"
#include "textures/TextureFactory.h"

using gritwell::BaseData;
using gritwell::GeneratorInfo;
using gritwell::SimdLevel;
using gritwell::TexturePtr;
using gritwell::fuzz::FuzzInput;

namespace {

constexpr std::size_t kHostRecordBuffer = 256;  // the host's state-record buffer
constexpr std::size_t kMaxPoints = 16;
constexpr std::size_t kBatchPoints = 300;
constexpr int kFlagModes[] = {2, 4};  // 3-D, then the x/y plane

// The layouts the library still converts.
int olderMajorVersion(std::string_view name) {
    if (name == "Brick") return 3;
    if (name == "Weave") return 2;
    return -1;
}

const float kFixedPoints[][3] = {
    {0.0f, 0.0f, 0.0f},
    {-1.0f, -2.0f, -3.0f},
    {__builtin_nanf(""), __builtin_nanf(""), __builtin_nanf("")},
    {__builtin_inff(), -__builtin_inff(), 1e30f},
    {-1e30f, 1e-40f, -1e-45f},
};

[[noreturn]] void fail() { std::abort(); }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzInput in(data, size);
    const auto generators = gritwell::TextureFactory::allGenerators();
    const GeneratorInfo& info = *generators[in.byte() % generators.size()];
    const std::uint8_t mode = in.byte();

    TexturePtr texture(info.create());
    // The record as the host holds it: a valid header (the generator's own)
    // followed by whatever the file held.
    const auto record = std::make_unique<char[]>(kHostRecordBuffer);
    texture->getDescription(record.get());
    in.bytes(record.get() + sizeof(BaseData), kHostRecordBuffer - sizeof(BaseData));
    record[offsetof(BaseData, interactiveUpdate)] = static_cast<char>(mode >> 4);
    const bool older = (mode & 1) != 0;
    if (older) {
        const int major = olderMajorVersion(info.name);
        record[offsetof(BaseData, majorVersion)] =
            static_cast<char>(major >= 0 ? major : static_cast<int>(mode >> 1));
    }
    texture->setStateFromDescription(record.get());

    float points[kMaxPoints][3];
    std::size_t n = 0;
    while (n < kMaxPoints && in.remaining() != 0) {
        for (float& c : points[n]) c = in.coordinate();
        ++n;
    }
    const std::size_t fixed = sizeof kFixedPoints / sizeof kFixedPoints[0];
    std::vector<float> given(3 * (n + fixed));
    std::memcpy(given.data(), points, sizeof(float) * 3 * n);
    std::memcpy(given.data() + 3 * n, kFixedPoints, sizeof kFixedPoints);
    // Repeated past the batch loop's 256-point block, so the split and the
    // part block after it are evaluated too.
    std::vector<float> batch(3 * kBatchPoints);
    for (std::size_t i = 0; i < batch.size(); ++i) batch[i] = given[i % given.size()];
    const int count = static_cast<int>(kBatchPoints);

    // Any NaN matches any NaN, as the vector paths may keep the other
    // operand's NaN where two meet.
    auto same = [](float a, float b) { return std::isnan(a) ? std::isnan(b) : std::memcmp(&a, &b, sizeof a) == 0; };
    for (const int flags : kFlagModes) {
        texture->setFlags(flags);
        std::vector<float> first;
        for (const SimdLevel level : {SimdLevel::kScalar, SimdLevel::kAvx2, SimdLevel::kAvx512}) {
            gritwell::setSimdLevel(level);
            std::vector<float> out(static_cast<std::size_t>(count));
            (*texture)(batch.data(), count, out.data());
            // The batch and the single point agree bit for bit, at every
            // level, and every level agrees with the scalar one.
            for (int i = 0; i < count; ++i) {
                const float many = out[static_cast<std::size_t>(i)];
                if (!same((*texture)(batch.data() + 3 * i), many)) fail();
                if (!first.empty() && !same(first[static_cast<std::size_t>(i)], many)) fail();
            }
            if (first.empty()) first = std::move(out);
        }
    }

    // Written back into a buffer of exactly the record's size, so a write
    // past it is caught; a record of our version comes back as it went in,
    // whatever evaluation did.
    const auto written = std::make_unique<char[]>(static_cast<std::size_t>(info.recordSize));
    texture->getDescription(written.get());
    if (static_cast<std::uint8_t>(written[0]) != info.recordSize) fail();
    if (!older && std::memcmp(written.get(), record.get(), static_cast<std::size_t>(info.recordSize)) != 0)
        fail();
    return 0;
}
