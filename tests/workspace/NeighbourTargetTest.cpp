#include "workspace/NeighbourTarget.h"

#include <gtest/gtest.h>

using namespace kova;

namespace {

using enum WorkspaceDirection;

/// Two columns of two tiles, y up, and the window in the middle of the lower left one.
std::map<std::string, CGRect> quad() {
    return {{kDirectionalSourceKey, makeRect(10, 10, 80, 80)},
            {"lower-left", makeRect(0, 0, 100, 100)},
            {"lower-right", makeRect(100, 0, 100, 100)},
            {"upper-left", makeRect(0, 100, 100, 100)},
            {"upper-right", makeRect(100, 100, 100, 100)}};
}

TEST(NeighbourTarget, GoesStraightRatherThanAside) {
    const std::string source = kDirectionalSourceKey;
    EXPECT_EQ(neighbourTarget(source, right, quad()), "lower-right");
    EXPECT_EQ(neighbourTarget(source, up, quad()), "upper-left");
    EXPECT_EQ(neighbourTarget(source, left, quad()), std::nullopt);
    EXPECT_EQ(neighbourTarget(source, down, quad()), std::nullopt);
    EXPECT_EQ(neighbourTarget("upper-right", left, quad()), "upper-left");
    EXPECT_EQ(neighbourTarget("nobody", left, quad()), std::nullopt);
}

TEST(NeighbourTarget, WeighsWhatLiesAsideTwoAndAQuarterTimes) {
    const auto frames = [](double aside) {
        return std::map<std::string, CGRect>{
            {"from", makeRect(0, 0, 0, 0)}, {"ahead", makeRect(325, 0, 0, 0)}, {"aside", makeRect(100, aside, 0, 0)}};
    };
    EXPECT_EQ(neighbourTarget("from", right, frames(99)), "aside");
    EXPECT_EQ(neighbourTarget("from", right, frames(-99)), "aside");
    EXPECT_EQ(neighbourTarget("from", right, frames(101)), "ahead");
    EXPECT_EQ(neighbourTarget("from", right, frames(100)), "ahead") << "a tie goes to the smaller key";
}

TEST(NeighbourTarget, OnePointIsStillTheSameLine) {
    const std::map<std::string, CGRect> one{{"from", makeRect(0, 0, 0, 0)}, {"near", makeRect(1, 0, 0, 0)}};
    EXPECT_EQ(neighbourTarget("from", right, one), std::nullopt);
    const std::map<std::string, CGRect> more{{"from", makeRect(0, 0, 0, 0)}, {"near", makeRect(1.5, 0, 0, 0)}};
    EXPECT_EQ(neighbourTarget("from", right, more), "near");
}

} // namespace
