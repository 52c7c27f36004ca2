// A long host session life: thousands of begin/continue/end cycles over every
// generator, through the session entry points (linked in, so the sanitizer
// build's LeakSanitizer sees every generator the session allocates); the
// generators sessions never open go through the same life by hand. The
// process's peak memory must not move once every generator has run once.

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "core/Texture3D.h"
#include "core/TransformData.h"
#include "plugin/HostInterface.h"
#include "textures/TextureFactory.h"

using namespace gritwell;

namespace {

// AddressSanitizer holds freed blocks in quarantine, so peak memory grows
// there by design; its LeakSanitizer checks for leaks instead.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool kPeakMemoryMeaningful = false;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr bool kPeakMemoryMeaningful = false;
#else
constexpr bool kPeakMemoryMeaningful = true;
#endif
#else
constexpr bool kPeakMemoryMeaningful = true;
#endif

constexpr int kCycles = 10000;
// Well under one generator per cycle (every record is over 40 bytes, plus the
// allocator's own), so a leak per cycle shows; room for allocator noise.
constexpr long kPeakGrowthBoundKiB = 256;

// The process's peak resident size (VmHWM), in KiB; -1 when unreadable.
long peakResidentKiB() {
    std::ifstream status("/proc/self/status");
    std::string key;
    while (status >> key) {
        if (key == "VmHWM:") {
            long kib = -1;
            status >> kib;
            return kib;
        }
        status.ignore(std::numeric_limits<std::streamsize>::max(), '\n');
    }
    return -1;
}

class SessionSoak : public testing::Test {
protected:
    SessionSoak() {
        for (const GeneratorInfo* info : TextureFactory::allGenerators()) {
            TexturePtr t(info->create());
            std::vector<char> record(256, 0);
            t->getDescription(record.data());
            records_.push_back(record);
            generators_.push_back(info);
        }
        const float inf = std::numeric_limits<float>::infinity();
        const float nan = std::numeric_limits<float>::quiet_NaN();
        const float points[] = {0.25f, 0.5f, 0.75f,  -1.0f, -2.0f, -3.0f,  1e30f, -1e30f, 1e-40f,
                                nan,   inf,  -inf,   3.5f,  -7.25f, 100.0f, 0.0f,  -0.0f,  0.5f};
        const int count = static_cast<int>(std::size(points) / 3);
        pointsBlock_.resize(sizeof count + sizeof points);
        std::memcpy(pointsBlock_.data(), &count, sizeof count);
        std::memcpy(pointsBlock_.data() + sizeof count, points, sizeof points);
        out_.resize(static_cast<std::size_t>(count));
    }

    // One cycle on the i-th generator, in 3-D and planar mode by turns: open
    // it, evaluate a batch and a point, close it. Returns whether every value
    // came back (any float, NaN included, but the call must have written it).
    bool cycle(int i) {
        const std::size_t k = static_cast<std::size_t>(i) % records_.size();
        std::vector<char>& record = records_[k];
        TransformData t;
        t.flags = (i / static_cast<int>(records_.size())) % 2 == 0 ? 2 : 4;
        std::fill(out_.begin(), out_.end(), -9.0f);
        float p[3] = {0.5f, -1.5f, 2.5f};
        if (TextureFactory::isHostGenerator(*generators_[k])) {
            char transforms[44];
            t.toBytes(transforms);
            beginSession(nullptr, 0.0, record.data(), 256, transforms, 44, nullptr);
            continueSession(nullptr, 0.0, reinterpret_cast<char*>(out_.data()), 0, pointsBlock_.data(), 0,
                            nullptr);
            continueSessionOne(reinterpret_cast<char*>(p), 0.0, nullptr, 0, nullptr, 0, nullptr);
            endSession(nullptr, 0.0, nullptr, 0, nullptr, 0, nullptr);
        } else {
            Texture3D* texture = generators_[k]->create();
            texture->setStateFromDescription(record.data());
            texture->setFlags(t.flags);
            (*texture)(reinterpret_cast<const float*>(pointsBlock_.data() + sizeof(int)),
                       static_cast<int>(out_.size()), out_.data());
            (*texture)(p);
            Texture3D::release(texture);
        }
        for (float v : out_)
            if (v == -9.0f) return false;
        return true;
    }

    std::vector<std::vector<char>> records_;
    std::vector<const GeneratorInfo*> generators_;
    std::vector<char> pointsBlock_;
    std::vector<float> out_;
};

}  // namespace

TEST_F(SessionSoak, TenThousandCyclesOverEveryGeneratorKeepPeakMemoryFlat) {
    // Two passes first, in both flag modes, so tables built once are built.
    const int generators = static_cast<int>(records_.size());
    for (int i = 0; i < 2 * generators; ++i) ASSERT_TRUE(cycle(i)) << i;
    const long before = peakResidentKiB();
    ASSERT_GT(before, 0);
    int failed = 0;
    for (int i = 0; i < kCycles; ++i)
        if (!cycle(i)) ++failed;
    const long after = peakResidentKiB();
    EXPECT_EQ(failed, 0);
    if (kPeakMemoryMeaningful) {
        EXPECT_LE(after - before, kPeakGrowthBoundKiB) << "VmHWM " << before << " KiB -> " << after << " KiB";
    }
    RecordProperty("cycles", kCycles);
    RecordProperty("vmhwm_before_kib", static_cast<int>(before));
    RecordProperty("vmhwm_after_kib", static_cast<int>(after));
    std::printf("soak: %d cycles over %d generators, VmHWM %ld KiB -> %ld KiB\n", kCycles, generators,
                before, after);
}
