// Contract tests of the keyboard: which key presses each monitor and each recorder gets.
#include "tests/contract/ContractDesktop.h"

#include <algorithm>

namespace kova::contract {
namespace {

constexpr std::uint64_t kModifiers = modifierFlag::control | modifierFlag::option;
constexpr KeyCombination kH{4, kModifiers}, kJ{38, kModifiers}, kControlH{4, modifierFlag::control};

/// The reported presses as a text: "h" for `kH`, "j" for `kJ`, "?" for any other.
class KeyLog {
  public:
    void record(const KeyPress& press) {
        const KeyCombination combination{press.keyCode, press.modifierFlags & modifierFlag::ofShortcuts};
        keys += combination == kH ? "h" : combination == kJ ? "j" : "?";
        EXPECT_TRUE(combination != kH || press.charactersIgnoringModifiers == "h") << press.charactersIgnoringModifiers;
        EXPECT_FALSE(press.isRepeat);
    }
    std::string keys;
};

TEST_P(DesktopContract, ClaimedCombinationsAreReportedWhileTheMonitorExists) {
    desktop().open({"Editor", "Plan", makeRect(40, 50, 500, 400)});
    element("Plan");
    auto& keys = desktop().keys();
    KeyLog first, second, once;
    bool isInsideCall = false;
    Subscription monitor = keys.addGlobalMonitor([&](const KeyPress& press) {
        EXPECT_FALSE(isInsideCall) << "the monitor was called inside `claim`";
        first.record(press);
    });
    Subscription other = keys.addGlobalMonitor([&](const KeyPress& press) { second.record(press); });
    Subscription single;
    single = keys.addGlobalMonitor([&](const KeyPress& press) {
        once.record(press);
        single = Subscription();
    });
    int notifications = 0;
    const auto subscription = keys.observeHeldByOthers([&] { ++notifications; });
    isInsideCall = true;
    keys.claim({kH, kJ});
    EXPECT_EQ(notifications, 0) << "the observer was called inside `claim`";
    isInsideCall = false;
    EXPECT_TRUE(until([&] { return notifications > 0; }));
    EXPECT_TRUE(keys.heldByOthers().empty());
    for (const KeyCombination& pressed : {kH, kJ, kH}) desktop().pressKey(pressed);
    EXPECT_TRUE(until([&] { return first.keys == "hjh" && second.keys == "hjh" && once.keys == "h"; }))
        << first.keys << " " << second.keys << " " << once.keys;

    monitor = Subscription();
    if (desktop().can(Ability::grabbingKeys)) {
        // The new claim replaces the former one: H is not reported any more.
        notifications = 0;
        keys.claim({kJ});
        EXPECT_TRUE(until([&] { return notifications > 0; }));
        desktop().pressKey(kH);
    }
    desktop().pressKey(kJ);
    EXPECT_TRUE(until([&] { return second.keys == "hjhj"; })) << second.keys;
    EXPECT_EQ(first.keys, "hjh");
    EXPECT_EQ(once.keys, "h");
    EXPECT_EQ(keys.charactersOf(4), "h");
    EXPECT_EQ(keys.charactersOf(123), "") << "an arrow key has no character";
    EXPECT_EQ(keys.charactersOf(999), "");
}

TEST_P(DesktopContract, CombinationsOfAnotherProgramAreListedAndNotReported) {
    if (!desktop().can(Ability::grabbingKeys)) GTEST_SKIP() << "keys cannot be grabbed here";
    desktop().claimForOther(kJ);
    auto& keys = desktop().keys();
    KeyLog log;
    const auto monitor = keys.addGlobalMonitor([&](const KeyPress& press) { log.record(press); });
    int notifications = 0;
    const auto subscription = keys.observeHeldByOthers([&] { ++notifications; });
    keys.claim({kH, kJ});
    EXPECT_TRUE(until([&] { return notifications > 0 && keys.heldByOthers() == std::vector{kJ}; }));
    desktop().pressKey(kJ);
    desktop().pressKey(kH);
    EXPECT_TRUE(until([&] { return log.keys == "h"; })) << log.keys;
    keys.claim({kH});
    EXPECT_TRUE(until([&] { return keys.heldByOthers().empty(); }));
}

TEST_P(DesktopContract, OnlyTheRecorderGetsPressesWhileRecording) {
    desktop().open({"Editor", "Plan", makeRect(40, 50, 500, 400)});
    element("Plan");
    auto& keys = desktop().keys();
    KeyLog shortcuts;
    std::string replaced, recorded;
    const auto monitor = keys.addGlobalMonitor([&](const KeyPress& press) { shortcuts.record(press); });
    keys.claim({kH});
    desktop().runFor(Seconds(0.1));
    const auto failed = [](const std::string& reason) { ADD_FAILURE() << reason; };
    const auto first = keys.recordKeys(
        [&](const KeyPress&) {
            replaced += "x";
            return false;
        },
        failed);
    const auto second = keys.recordKeys(
        [&](const KeyPress& press) {
            recorded += press.keyCode == kJ.keyCode ? "j" : press.keyCode == kH.keyCode ? "h" : "?";
            return recorded == "hhj";
        },
        failed);
    desktop().runFor(Seconds(0.2));
    for (const KeyCombination& pressed : {kH, kControlH, kJ}) desktop().pressKey(pressed);
    EXPECT_TRUE(until([&] { return recorded == "hhj"; })) << recorded;
    desktop().runFor(Seconds(0.2));
    EXPECT_TRUE(shortcuts.keys.empty() || !desktop().can(Ability::grabbingKeys)) << shortcuts.keys;
    shortcuts.keys.clear();
    // After the end of the recording the monitor gets presses again.
    desktop().pressKey(kH);
    EXPECT_TRUE(until([&] { return shortcuts.keys == "h"; })) << shortcuts.keys;
    EXPECT_EQ(recorded, "hhj");
    EXPECT_EQ(replaced, "") << "a replaced recorder got a press";
}

} // namespace
} // namespace kova::contract
