// The progress line: what it says. (That only a terminal sees it, the
// command-line tests check through `script`.)

#include <string>

#include <gtest/gtest.h>

#include "ProgressMeter.h"

using namespace gritwell;

TEST(ProgressMeter, LinesSayShareRateAndTimeLeft) {
    EXPECT_EQ(ProgressMeter::line("paint", 0, 1000000, 0.0), "paint: 0% of 1000000 points");
    EXPECT_EQ(ProgressMeter::line("paint", 250000, 1000000, 0.5),
              "paint: 25% of 1000000 points, 500.0 k points/s, 1.5 s left");
    EXPECT_EQ(ProgressMeter::line("paint", 999999, 1000000, 2.0),
              "paint: 99% of 1000000 points, 500.0 k points/s, 0.0 s left");  // 100% only at the end
    EXPECT_EQ(ProgressMeter::line("paint", 3000000, 6000000, 1.0),
              "paint: 50% of 6000000 points, 3.0 M points/s, 1.0 s left");
    EXPECT_EQ(ProgressMeter::line("paint", 10, 100000, 1.0), "paint: 0% of 100000 points, 10 points/s, 2 h 46 min left");
    EXPECT_EQ(ProgressMeter::finalLine("paint", 100, 75.0), "paint: 100 points in 1 min 15 s, 1 points/s");
}
