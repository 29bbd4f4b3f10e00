// The keyboard: which presses are reported to which observer.
#include "tests/contract/ContractDesktop.h"

#include <algorithm>

namespace kova::contract {
namespace {

constexpr std::uint64_t kModifiers = modifierFlag::control | modifierFlag::option;
constexpr KeyCombination kH{4, kModifiers}, kJ{38, kModifiers}, kBareH{4, modifierFlag::control};

/// Reported presses, as "h" and "j", others as "?".
class Ear {
  public:
    void hear(const KeyPress& press) {
        const KeyCombination combination{press.keyCode, press.modifierFlags & modifierFlag::ofShortcuts};
        heard += combination == kH ? "h" : combination == kJ ? "j" : "?";
        EXPECT_TRUE(combination != kH || press.charactersIgnoringModifiers == "h") << press.charactersIgnoringModifiers;
        EXPECT_FALSE(press.isRepeat);
    }
    std::string heard;
};

TEST_P(DesktopContract, RegisteredKeysAreReportedWhileTheMonitorExists) {
    stage().open({"Editor", "Plan", makeRect(40, 50, 500, 400)});
    element("Plan");
    auto& keys = stage().keys();
    Ear first, second, once;
    bool isInOurCall = false;
    Subscription monitor = keys.addGlobalMonitor([&](const KeyPress& press) {
        EXPECT_FALSE(isInOurCall) << "called back inside a call";
        first.hear(press);
    });
    Subscription other = keys.addGlobalMonitor([&](const KeyPress& press) { second.hear(press); });
    Subscription single;
    single = keys.addGlobalMonitor([&](const KeyPress& press) {
        once.hear(press);
        single = Subscription();
    });
    int settled = 0;
    const auto settling = keys.observeHeldByOthers([&] { ++settled; });
    isInOurCall = true;
    keys.claim({kH, kJ});
    EXPECT_EQ(settled, 0) << "told inside the call";
    isInOurCall = false;
    EXPECT_TRUE(until([&] { return settled > 0; }));
    EXPECT_TRUE(keys.heldByOthers().empty());
    for (const KeyCombination& pressed : {kH, kJ, kH}) stage().pressKey(pressed);
    EXPECT_TRUE(until([&] { return first.heard == "hjh" && second.heard == "hjh" && once.heard == "h"; }))
        << first.heard << " " << second.heard << " " << once.heard;

    monitor = Subscription();
    if (stage().can(Ability::claimingKeys)) {
        // The new claim takes the place of the old one.
        settled = 0;
        keys.claim({kJ});
        EXPECT_TRUE(until([&] { return settled > 0; }));
        stage().pressKey(kH);
    }
    stage().pressKey(kJ);
    EXPECT_TRUE(until([&] { return second.heard == "hjhj"; })) << second.heard;
    EXPECT_EQ(first.heard, "hjh");
    EXPECT_EQ(once.heard, "h");
    EXPECT_EQ(keys.charactersOf(4), "h");
    EXPECT_EQ(keys.charactersOf(123), "") << "an arrow is no character";
    EXPECT_EQ(keys.charactersOf(999), "");
}

TEST_P(DesktopContract, KeysOfAnotherProgramAreListedAndNotReported) {
    if (!stage().can(Ability::claimingKeys)) GTEST_SKIP() << "keys cannot be grabbed here";
    stage().claimForOther(kJ);
    auto& keys = stage().keys();
    Ear ear;
    const auto monitor = keys.addGlobalMonitor([&](const KeyPress& press) { ear.hear(press); });
    int settled = 0;
    const auto settling = keys.observeHeldByOthers([&] { ++settled; });
    keys.claim({kH, kJ});
    EXPECT_TRUE(until([&] { return settled > 0 && keys.heldByOthers() == std::vector{kJ}; }));
    stage().pressKey(kJ);
    stage().pressKey(kH);
    EXPECT_TRUE(until([&] { return ear.heard == "h"; })) << ear.heard;
    keys.claim({kH});
    EXPECT_TRUE(until([&] { return keys.heldByOthers().empty(); }));
}

TEST_P(DesktopContract, OnlyTheRecorderGetsPressesWhileRecording) {
    stage().open({"Editor", "Plan", makeRect(40, 50, 500, 400)});
    element("Plan");
    auto& keys = stage().keys();
    Ear shortcuts;
    std::string former, recorded;
    const auto monitor = keys.addGlobalMonitor([&](const KeyPress& press) { shortcuts.hear(press); });
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
    EXPECT_TRUE(shortcuts.heard.empty() || !stage().can(Ability::claimingKeys)) << shortcuts.heard;
    shortcuts.heard.clear();
    // It has ended, and the shortcuts are back.
    stage().pressKey(kH);
    EXPECT_TRUE(until([&] { return shortcuts.heard == "h"; })) << shortcuts.heard;
    EXPECT_EQ(recorded, "hhj");
    EXPECT_EQ(former, "") << "a later recorder ends the former";
}

} // namespace
} // namespace kova::contract
