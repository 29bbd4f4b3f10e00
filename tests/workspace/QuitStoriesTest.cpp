// How KOVA ends one application, or all of them, on request.
#include "tests/harness/Scenario.h"

#include <gtest/gtest.h>

namespace kova {

namespace {

class Quitting : public ::testing::Test {
  protected:
    Quitting() {
        desk.display(2560, 1440).layout("jarvis.dual-split").opens("Mail").opens("Notes").arrange();
        desk.desktop.takeJournal();
    }
    /// The lines of the journal about requests to quit and killed processes.
    std::string terminations() {
        std::string lines;
        std::string journal = desk.desktop.takeJournal();
        for (std::size_t at = 0; at < journal.size();) {
            const auto end = std::min(journal.find('\n', at), journal.size());
            const auto line = journal.substr(at, end - at);
            if (line.find("terminate") != std::string::npos) lines += (lines.empty() ? "" : ", ") + line;
            at = end + 1;
        }
        return lines;
    }

    Scenario desk;
};

TEST_F(Quitting, AnApplicationThatIsRequestedToQuitEndsAndFreesItsTile) {
    EXPECT_TRUE(desk.controller().perform(action::QuitApplication{desk.desktop.windowIDOf("Mail")}));
    desk.expectMessage("Quit requested for Mail");
    EXPECT_EQ(terminations(), "Mail: terminate");
    desk.settle();
    EXPECT_FALSE(desk.desktop.isRunning("Mail"));
    EXPECT_EQ(desk.state().assignedWindowIDs->size(), 1u);
    EXPECT_FALSE(desk.controller().perform(action::QuitApplication{"101:16"})) << "the window has closed";
    EXPECT_FALSE(desk.controller().perform(action::ForceQuitApplication{"unknown"}));
    desk.expectMessage("Quit requested for Mail");
}

TEST_F(Quitting, AnApplicationThatRefusesToQuitStaysManaged) {
    const std::string before = desk.tiles();
    desk.desktop.setQuittingHabit("Mail", QuittingHabit::refuses);
    const auto mail = desk.desktop.windowIDOf("Mail");
    EXPECT_TRUE(desk.controller().perform(action::QuitApplication{mail}));
    desk.settle().expectTiles(before);
    EXPECT_TRUE(desk.controller().perform(action::ForceQuitApplication{mail}));
    desk.expectMessage("Force quit requested for Mail");
    EXPECT_EQ(terminations(), "Mail: terminate, Mail: force terminate");
    desk.settle();
    EXPECT_FALSE(desk.desktop.isRunning("Mail"));
}

TEST_F(Quitting, AnApplicationWhoseProcessIsNotVerifiedIsNotKilled) {
    desk.desktop.launch("Maps", {.isVerified = false});
    desk.opens("Maps").settle();
    EXPECT_FALSE(desk.controller().perform(action::ForceQuitApplication{desk.desktop.windowIDOf("Maps")}));
    desk.expectMessage("Maps was not force quit: its process is not known");
    const auto performed =
        desk.controller().perform(action::ForceQuit{desk.controller().regularApplicationsToForceQuit()});
    const auto& outcome = *performed.details<ForceQuitOutcome>();
    EXPECT_EQ(outcome.ended.size(), 2u);
    EXPECT_EQ(outcome.refusals, std::vector<std::string>{"Maps was not force quit: its process is not known"});
    EXPECT_EQ(terminations(), "Mail: force terminate, Notes: force terminate");
    EXPECT_TRUE(desk.controller().perform(action::QuitApplication{desk.desktop.windowIDOf("Maps")}))
        << "a request to quit cannot harm another process";
}

TEST_F(Quitting, FocusModeEndsBeforeItsApplicationQuits) {
    desk.desktop.userFocuses("Mail");
    const std::string before = desk.tiles();
    desk.desktop.setQuittingHabit("Mail", QuittingHabit::refuses);
    desk.zoom();
    ASSERT_TRUE(*desk.state().focusMode);
    EXPECT_TRUE(desk.controller().perform(action::QuitApplication{desk.desktop.windowIDOf("Mail")}));
    EXPECT_FALSE(*desk.state().focusMode);
    desk.expectMessage("Quit requested for Mail");
    desk.settle().expectTiles(before);
}

TEST_F(Quitting, PartsOfTheDesktopAreNotEnded) {
    desk.desktop.launch("Files", {.isPartOfDesktop = true});
    desk.opens("Files").settle();
    const WindowID files = desk.desktop.windowIDOf("Files");
    for (const WorkspaceAction& end :
         {WorkspaceAction(action::QuitApplication{files}), WorkspaceAction(action::ForceQuitApplication{files})}) {
        EXPECT_FALSE(desk.controller().perform(end));
        desk.expectMessage("Files belongs to the desktop and stays open");
    }
    EXPECT_EQ(terminations(), "");
}

TEST_F(Quitting, EndingAllApplicationsIsConfirmedFirst) {
    desk.desktop.launch("KOVA");
    desk.desktop.launch("Finder", {.bundleIdentifier = "com.apple.finder"});
    desk.desktop.launch("Panel", {.isPartOfDesktop = true});
    desk.desktop.launch("Clock", {.activationPolicy = ApplicationActivationPolicy::accessory});
    desk.desktop.launch("Helper", {.activationPolicy = ApplicationActivationPolicy::prohibited});
    desk.desktop.launch("nameless", {.hasName = false});
    desk.desktop.launch("finder", {.bundleIdentifier = "com.apple.Finder"}); // another identifier, so it is ended
    desk.desktop.launch("Ähre");
    desk.desktop.launch("Leaving");
    desk.desktop.beginTerminating("Leaving");
    desk.settle();

    desk.controller().perform(action::ForceQuitAll{});
    const Alert question{.title = "Force Quit All Open Applications?",
                         .text = "This immediately closes 5 applications. Unsaved changes will be lost. KOVA and "
                                 "Finder will stay open.\n\nÄhre\nfinder\nMail\nNotes\nUnknown Application",
                         .confirmButton = "Force Quit All",
                         .cancelButton = "Cancel"};
    std::vector<Alert> shown = desk.desktop.takeAlerts();
    ASSERT_EQ(shown.size(), 1u);
    shown[0].text = textWithApplications(shown[0]);
    EXPECT_EQ(std::exchange(shown[0].applications, {})[1].bundleIdentifier, "com.apple.Finder");
    EXPECT_EQ(shown[0], question);
    desk.desktop.answerAlert(false);
    desk.settle();
    EXPECT_EQ(terminations(), "");

    // Applications that start or are replaced while the dialog is open are not ended: the user has not confirmed them.
    desk.controller().perform(action::ForceQuitAll{});
    desk.desktop.takeAlerts();
    desk.desktop.quit("Notes");
    desk.opens("Maps");
    desk.desktop.answerAlert(true);
    desk.settle();
    EXPECT_EQ(terminations(), "Ähre: force terminate, finder: force terminate, Mail: force terminate, nameless: force "
                              "terminate");
    EXPECT_TRUE(desk.desktop.isRunning("Maps"));
    EXPECT_TRUE(desk.desktop.isRunning("Finder"));
    desk.expectMessage("");
}

TEST_F(Quitting, ReportsWhenThereIsNothingToEndAndWhenNothingWasEnded) {
    desk.controller().perform(action::ForceQuitAll{});
    desk.desktop.takeAlerts();
    desk.desktop.quit("Mail");
    desk.desktop.quit("Notes");
    desk.desktop.answerAlert(true);
    desk.expectMessage("No open applications were force quit");

    desk.desktop.launch("KOVA");
    desk.desktop.launch("Finder", {.bundleIdentifier = "com.apple.finder"});
    desk.controller().perform(action::ForceQuitAll{});
    const Alert notice{.title = "No Open Applications",
                       .text = "There are no regular applications to close. KOVA and Finder are always kept open.",
                       .confirmButton = "OK",
                       .cancelButton = {}};
    EXPECT_EQ(desk.desktop.takeAlerts(), std::vector{notice});
    EXPECT_EQ(terminations(), "");
}

} // namespace

} // namespace kova
