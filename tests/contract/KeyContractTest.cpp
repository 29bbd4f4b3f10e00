// The keyboard: which presses are reported to which observer.
#include "tests/contract/ContractDesktop.h"

#include <algorithm>

namespace kova::contract {
namespace {

constexpr std::uint64_t kModifiers = modifierFlag::control | modifierFlag::option;
constexpr KeyCombination kH{4, kModifiers}, kJ{38, kModifiers}, kBareH{4, modifierFlag::control};

/// Reported presses, as "h" and "j", others as "?".
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

TEST_P(DesktopContract, RegisteredKeysAreReportedWhileTheMonitorExists) {
    stage().open({"Editor", "Plan", makeRect(40, 50, 500, 400)});
    element("Plan");
    auto& keys = stage().keys();
    KeyLog first, second, once;
    bool isInOurCall = false;
    Subscription monitor = keys.addGlobalMonitor([&](const KeyPress& press) {
        EXPECT_FALSE(isInOurCall) << "called back inside a call";
        first.record(press);
    });
    Subscription other = keys.addGlobalMonitor([&](const KeyPress& press) { second.record(press); });
    Subscription single;
    single = keys.addGlobalMonitor([&](const KeyPress& press) {
        once.record(press);
        single = Subscription();
    });
    int settled = 0;
    const auto settling = keys.observeHeldByOthers([&] { ++settled; });
    isInOurCall = true;
    keys.claim({kH, kJ});
    EXPECT_EQ(settled, 0) << "notified inside the call";
    isInOurCall = false;
    EXPECT_TRUE(until([&] { return settled > 0; }));
    EXPECT_TRUE(keys.heldByOthers().empty());
    for (const KeyCombination& pressed : {kH, kJ, kH}) stage().pressKey(pressed);
    EXPECT_TRUE(until([&] { return first.keys == "hjh" && second.keys == "hjh" && once.keys == "h"; }))
        << first.keys << " " << second.keys << " " << once.keys;

    monitor = Subscription();
    if (stage().can(Ability::claimingKeys)) {
        // The new claim takes the place of the old one.
        settled = 0;
        keys.claim({kJ});
        EXPECT_TRUE(until([&] { return settled > 0; }));
        stage().pressKey(kH);
    }
    stage().pressKey(kJ);
    EXPECT_TRUE(until([&] { return second.keys == "hjhj"; })) << second.keys;
    EXPECT_EQ(first.keys, "hjh");
    EXPECT_EQ(once.keys, "h");
    EXPECT_EQ(keys.charactersOf(4), "h");
    EXPECT_EQ(keys.charactersOf(123), "") << "an arrow key has no character";
    EXPECT_EQ(keys.charactersOf(999), "");
}

TEST_P(DesktopContract, KeysOfAnotherProgramAreListedAndNotReported) {
    if (!stage().can(Ability::claimingKeys)) GTEST_SKIP() << "keys cannot be grabbed here";
    stage().claimForOther(kJ);
    auto& keys = stage().keys();
    KeyLog ear;
    const auto monitor = keys.addGlobalMonitor([&](const KeyPress& press) { ear.record(press); });
    int settled = 0;
    const auto settling = keys.observeHeldByOthers([&] { ++settled; });
    keys.claim({kH, kJ});
    EXPECT_TRUE(until([&] { return settled > 0 && keys.heldByOthers() == std::vector{kJ}; }));
    stage().pressKey(kJ);
    stage().pressKey(kH);
    EXPECT_TRUE(until([&] { return ear.keys == "h"; })) << ear.keys;
    keys.claim({kH});
    EXPECT_TRUE(until([&] { return keys.heldByOthers().empty(); }));
}

TEST_P(DesktopContract, OnlyTheRecorderGetsPressesWhileRecording) {
    stage().open({"Editor", "Plan", makeRect(40, 50, 500, 400)});
    element("Plan");
    auto& keys = stage().keys();
    KeyLog shortcuts;
    std::string former, recorded;
    const auto monitor = keys.addGlobalMonitor([&](const KeyPress& press) { shortcuts.record(press); });
    keys.claim({kH});
    stage().runFor(Seconds(0.1));
    const auto failed = [](const std::string& reason) { ADD_FAILURE() << reason; };
    const auto first = keys.recordKeys(
        [&](const KeyPress&) {
            former += "x";
            return false;
        },
        failed);
    const auto second = keys.recordKeys(
        [&](const KeyPress& press) {
            recorded += press.keyCode == kJ.keyCode ? "j" : press.keyCode == kH.keyCode ? "h" : "?";
            return recorded == "hhj";
        },
        failed);
    stage().runFor(Seconds(0.2));
    for (const KeyCombination& pressed : {kH, kBareH, kJ}) stage().pressKey(pressed);
    EXPECT_TRUE(until([&] { return recorded == "hhj"; })) << recorded;
    stage().runFor(Seconds(0.2));
    EXPECT_TRUE(shortcuts.keys.empty() || !stage().can(Ability::claimingKeys)) << shortcuts.keys;
    shortcuts.keys.clear();
    // The recording has ended, and shortcuts are reported again.
    stage().pressKey(kH);
    EXPECT_TRUE(until([&] { return shortcuts.keys == "h"; })) << shortcuts.keys;
    EXPECT_EQ(recorded, "hhj");
    EXPECT_EQ(former, "") << "a new recorder ends the former one";
}

} // namespace
} // namespace kova::contract
