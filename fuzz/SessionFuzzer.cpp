// The host boundary: sessions opened from an arbitrary 256-byte record block
// (unterminated names, wrong sizes, any version), batches of arbitrary
// counts and points, single points, and endSession at any moment; at every
// instruction-set level, with batches long enough to be split into blocks,
// and with blocks at addresses no float may start at.
//
// Input: a 256-byte record block, then operations until the bytes run out.

#include <cstdint>
#include <cstring>
#include <memory>
#include <vector>

#include "FuzzInput.h"
#include "core/SimdLevel.h"
#include "plugin/HostInterface.h"

using gritwell::fuzz::FuzzInput;

namespace {

constexpr std::size_t kRecordBlock = 256;    // the host's state-record buffer
constexpr std::size_t kTransformBlock = 44;  // the host's transform record
constexpr int kMaxBatch = 64;
constexpr int kMaxOperations = 64;

// A batch block as the host builds it: the count, then the points it
// allocated. A count above what was allocated would be the host's own
// overrun, so the harness never passes one; negative counts pass through.
void continueWith(FuzzInput& in) {
    const int allocated = in.byte() % (kMaxBatch + 1);
    int count = in.value<std::int32_t>();
    if (count > allocated) count = allocated;
    std::vector<char> block(sizeof(int) + sizeof(float) * 3 * static_cast<std::size_t>(allocated));
    std::memcpy(block.data(), &count, sizeof count);
    for (int i = 0; i < 3 * allocated; ++i) {
        const float c = in.coordinate();
        std::memcpy(block.data() + sizeof(int) + sizeof(float) * static_cast<std::size_t>(i), &c,
                    sizeof c);
    }
    // Exactly as many floats as the count asks for (none when it is not positive).
    const std::size_t outFloats = count > 0 ? static_cast<std::size_t>(count) : 0;
    const auto out = std::make_unique<float[]>(outFloats);
    continueSession(nullptr, 0.0, reinterpret_cast<char*>(out.get()), in.value<std::int32_t>(),
                    block.data(), in.value<std::int32_t>(), nullptr);
}

// A long batch, past the batch loop's 256-point blocks and the entry
// point's 1024-point copies: a few points of the input repeated along a
// step, in a block shifted off float alignment by 0 to 3 bytes.
void continueLongWith(FuzzInput& in) {
    const int count = kMaxBatch + in.value<std::uint16_t>() % 2048;
    const std::size_t shift = in.byte() % 4;
    float pattern[3 * 4], step[3];
    for (float& c : pattern) c = in.coordinate();
    for (float& c : step) c = in.coordinate();
    std::vector<char> block(shift + sizeof(int) + sizeof(float) * 3 * static_cast<std::size_t>(count));
    std::memcpy(block.data() + shift, &count, sizeof count);
    for (int i = 0; i < count; ++i)
        for (int k = 0; k < 3; ++k) {
            const float c = pattern[3 * (i % 4) + k] + step[k] * static_cast<float>(i / 4);
            std::memcpy(block.data() + shift + sizeof(int) + sizeof(float) * (3 * static_cast<std::size_t>(i) + k),
                        &c, sizeof c);
        }
    std::vector<char> out(shift + sizeof(float) * static_cast<std::size_t>(count));
    continueSession(nullptr, 0.0, out.data() + shift, 0, block.data() + shift, 0, nullptr);
}

void continueOneWith(FuzzInput& in) {
    float p[3];
    for (float& c : p) c = in.coordinate();
    continueSessionOne(reinterpret_cast<char*>(p), 0.0, nullptr, 0, nullptr, 0, nullptr);
}

void beginWith(FuzzInput& in, char* record) {
    // The host pairs begin with end; opening twice abandons a generator.
    endSession(nullptr, 0.0, nullptr, 0, nullptr, 0, nullptr);
    const std::uint8_t how = in.byte();
    char transforms[kTransformBlock] = {};
    in.bytes(transforms, sizeof transforms);
    beginSession(nullptr, 0.0, (how & 1) != 0 ? nullptr : record, in.value<std::int32_t>(),
                 (how & 2) != 0 ? nullptr : transforms, in.value<std::int32_t>(), nullptr);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzInput in(data, size);
    // Heap blocks of exactly the host's sizes, so reading past them is caught.
    const auto record = std::make_unique<char[]>(kRecordBlock);
    in.bytes(record.get(), kRecordBlock);
    beginWith(in, record.get());
    for (int op = 0; op < kMaxOperations && in.remaining() != 0; ++op) {
        switch (in.byte() % 8) {
            case 0:
            case 1: continueWith(in); break;
            case 2: continueOneWith(in); break;
            case 3: endSession(nullptr, 0.0, nullptr, 0, nullptr, 0, nullptr); break;
            case 4: beginWith(in, record.get()); break;
            case 5: {
                // The host may rewrite its record between sessions.
                const std::size_t at = in.byte();
                record[at] = static_cast<char>(in.byte());
                break;
            }
            case 6: continueLongWith(in); break;
            case 7:
                // Held to a lower level where the processor runs a higher one.
                gritwell::setSimdLevel(static_cast<gritwell::SimdLevel>(in.byte() % 3));
                break;
        }
    }
    // continueSession with no block at all, inside and outside a session.
    continueSession(nullptr, 0.0, nullptr, 0, nullptr, 0, nullptr);
    endSession(nullptr, 0.0, nullptr, 0, nullptr, 0, nullptr);
    continueSession(nullptr, 0.0, nullptr, 0, nullptr, 0, nullptr);
    continueSessionOne(nullptr, 0.0, nullptr, 0, nullptr, 0, nullptr);
    return 0;
}
