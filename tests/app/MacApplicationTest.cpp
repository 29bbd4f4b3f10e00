// Arguments that a Mac adds, and activations by URLs.
#include "app/ActivationReturn.h"
#include "app/SystemArguments.h"

#include <gtest/gtest.h>

#include <string>

namespace kova {
namespace {

TEST(SystemArguments, PairsOfDefaultsAndSerialNumbersAreLeftOut) {
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

TEST(ActivationReturn, OnlyAnActivationSoonAfterAURLIsReturned) {
    ActivationReturn activation;
    EXPECT_FALSE(activation.isDue(Seconds(10), OwnDialog::none)) << "the user clicked on KOVA";
    activation.noteAddresses(Seconds(10));
    EXPECT_TRUE(activation.isDue(Seconds(10.07), OwnDialog::none));
    EXPECT_FALSE(activation.isDue(Seconds(10.07), OwnDialog::shown));
    EXPECT_FALSE(activation.isDue(Seconds(11), OwnDialog::none));
}

} // namespace
} // namespace kova
