// Command-line arguments that macOS adds, and activations that follow when the user opens KOVA or one of its URLs.
#include "app/ActivationReturn.h"
#include "app/SystemArguments.h"

#include <gtest/gtest.h>

#include <string>

namespace kova {
namespace {

TEST(SystemArguments, ProcessSerialNumbersAndPairsOfUserDefaultsAreRemoved) {
    const struct {
        std::vector<std::string> given;
        std::vector<std::string> kept;
    } cases[] = {
        {{"--verbose"}, {"--verbose"}},
        {{"-psn_0_12345", "--verbose"}, {"--verbose"}},
        {{"-NSDocumentRevisionsDebugMode", "YES", "--foreground"}, {"--foreground"}},
        {{"--foreground", "-AppleLanguages", "(de)"}, {"--foreground"}},
        {{"-NSQuitAlwaysKeepsWindows", "--verbose"}, {"--verbose"}},
        {{"-ApplePersistenceIgnoreState", "-1", "help"}, {"help"}},
        {{"-X"}, {}},
    };
    for (auto each : cases) {
        std::vector<char*> arguments;
        for (auto& argument : each.given) arguments.push_back(argument.data());
        const auto kept = withoutSystemArguments(arguments);
        EXPECT_EQ(std::vector<std::string>(kept.begin(), kept.end()), each.kept);
    }
}

TEST(ActivationReturn, GivesBackOrPassesOnActivationsSoonAfterKovaWasOpenedUnlessADialogIsShown) {
    ActivationReturn activation;
    EXPECT_EQ(activation.use(Seconds(10), OwnDialog::none), ActivationUse::keep) << "the user clicked on KOVA";
    activation.noteOpened(Seconds(10), OpenedWindow::none);
    EXPECT_EQ(activation.use(Seconds(10.07), OwnDialog::none), ActivationUse::giveBack);
    EXPECT_EQ(activation.use(Seconds(10.07), OwnDialog::shown), ActivationUse::keep);
    EXPECT_EQ(activation.use(Seconds(11), OwnDialog::none), ActivationUse::keep);
    activation.noteOpened(Seconds(20), OpenedWindow::ofUserInterface);
    EXPECT_EQ(activation.use(Seconds(20), OwnDialog::none), ActivationUse::passToUserInterface);
    EXPECT_EQ(activation.use(Seconds(20), OwnDialog::shown), ActivationUse::keep);
}

} // namespace
} // namespace kova
