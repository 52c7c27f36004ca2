#include <cstring>

#include <gtest/gtest.h>

#include "core/TransformData.h"

using namespace gritwell;

TEST(TransformData, DefaultsAndByteLayout) {
    const TransformData t;
    char bytes[44];
    t.toBytes(bytes);
    std::int32_t flags;
    float words[10];
    std::memcpy(&flags, bytes, 4);
    std::memcpy(words, bytes + 4, 40);
    EXPECT_EQ(flags, 2);
    const float expected[10] = {1, 0, 0, 0, 1, 1, 1, 0, 0, 0};
    for (int i = 0; i < 10; ++i) EXPECT_EQ(words[i], expected[i]) << "word " << i + 1;
}

TEST(TransformData, CarriesEveryWordUnchanged) {
    char in[44];
    for (int i = 0; i < 44; ++i) in[i] = static_cast<char>(i * 7 + 3);
    char out[44];
    TransformData::fromBytes(in).toBytes(out);
    EXPECT_EQ(std::memcmp(in, out, 44), 0);
}
