#include "windowing/SystemConflicts.h"

#include <gtest/gtest.h>

#include <string>

namespace kova {
namespace {

TEST(SystemConflicts, EachActiveConflictIsReportedOnce) {
    const auto subjects = [](const SystemConflicts& conflicts) {
        std::string names;
        for (const auto& line : diagnosticLines(conflicts)) {
            names += line.subject + (line.verdict == DiagnosticVerdict::wrong ? "! " : " ");
        }
        return names;
    };
    EXPECT_EQ(subjects({}), "");
    EXPECT_EQ(subjects({.isSecureInputOn = true}), "secure input! ");
    EXPECT_EQ(subjects({.tilesWindowsAtEdges = true, .tilesWindowsAtMenuBar = true}), "window tiling of macOS ");
    EXPECT_EQ(subjects({.tilesWindowsAtMenuBar = true}), "window tiling of macOS ");
    EXPECT_EQ(subjects({.isStageManagerOn = true, .isVoiceOverOn = true}), "Stage Manager VoiceOver ");
}

TEST(SystemConflicts, TheRemedyResetsThePermissionOfKovaOnly) {
    EXPECT_NE(stalePermissionRemedy("org.example.kova").find("“tccutil reset Accessibility org.example.kova”"),
              std::string::npos);
    EXPECT_EQ(stalePermissionRemedy("").find("tccutil"), std::string::npos);
}

TEST(SystemConflicts, OnlyAnEnabledSystemShortcutWithTheSameKeyAndModifiersHoldsACombination) {
    const KeyCombination left{123, modifierFlag::control | modifierFlag::option};
    const struct {
        SystemHotKey key;
        bool isHeld;
    } cases[] = {
        {{123, 0x1800, true}, true},  {{123, 0x1800, false}, false}, {{123, 0x1000, true}, false},
        {{123, 0x1900, true}, false}, {{124, 0x1800, true}, false},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(heldBySystem({{left}}, {{each.key}}).size(), each.isHeld ? 1u : 0u) << each.key.carbonModifiers;
    }
    const KeyCombination all{3, modifierFlag::ofShortcuts};
    EXPECT_EQ(heldBySystem({{left, all}}, {{SystemHotKey{3, 0x1B00, true}}}), std::vector{all});
}

} // namespace
} // namespace kova
