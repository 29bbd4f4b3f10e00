// The overlay's contents, computed from the real workspace on the simulated desktop.
#include "app/BackdropWindowController.h"
#include "app/LayoutDividerWindowController.h"
#include "app/OverlayBoard.h"
#include "app/TileFooterWindowController.h"
#include "app/WindowDragCoordinator.h"
#include "tests/harness/Scenario.h"

#include <gtest/gtest.h>

namespace kova {
namespace {

class Overlay : public ::testing::Test {
  protected:
    void show() {
        desk.start();
        backdrop.emplace(desk.controller(), board).show();
        dividers.emplace(desk.controller(), desk.desktop, board, desk.desktop.queue());
        footers.emplace(desk.controller(), board, desk.desktop.queue());
        drags.emplace(desk.controller(), desk.desktop, board, desk.desktop.queue());
        drags->installMonitor();
        board.watch([this](OverlaySections sections) { refreshed |= sections; });
    }
    ~Overlay() override {
        drags.reset();
        footers.reset();
        dividers.reset();
        backdrop.reset();
        EXPECT_EQ(contents(), OverlayContents{}) << "closed controllers leave no contents";
    }
    const OverlayContents& contents() {
        board.update(current, kEveryOverlaySection);
        return current;
    }
    /// The contents of all footers: the tile's name, then its windows. "*" marks the front window, "!" the focused
    /// window, "_" a minimized window, "→" a launched application, and "^" a tile that is the drop target.
    std::string strips() {
        std::string text;
        for (const OverlayTile& tile : contents().tiles) {
            text += (text.empty() ? "" : " | ") + tile.name + ":" + (tile.isDropTarget ? "^" : "");
            for (const OverlayWindow& window : tile.windows) {
                text += std::string(" ") + (window.isFront ? "*" : "") + (window.isFocused ? "!" : "") +
                        (window.isMinimized ? "_" : "") + window.application.name;
            }
            if (tile.pendingLaunch) text += " →" + tile.pendingLaunch->name;
        }
        return text;
    }
    std::string footerFrames() {
        std::string text;
        for (const OverlayTile& tile : contents().tiles) {
            text += (text.empty() ? "" : " | ") + (tile.footerFrame ? describeFrame(*tile.footerFrame) : "none");
        }
        return text;
    }
    std::string dividerStates() {
        std::string text;
        for (const OverlayDivider& divider : contents().dividers) {
            text += std::string(text.empty() ? "" : " ") + (divider.isHovered ? "hovered" : "-") +
                    (divider.isDragged ? "+dragged" : "");
        }
        return text;
    }
    std::string drag() {
        const auto& drag = contents().drag;
        if (!drag) return "none";
        return (drag->windowID == desk.desktop.windowIDOf("Mail") ? "Mail over " : "Codex over ") +
               drag->displayID.value_or("no display").text() + " " + (drag->tileID ? drag->tileID->text() : "no tile");
    }
    void advance(double seconds) { desk.advance(Seconds(seconds)); }

    Scenario desk;
    OverlayBoard board;
    std::optional<BackdropWindowController> backdrop;
    std::optional<LayoutDividerWindowController> dividers;
    std::optional<TileFooterWindowController> footers;
    std::optional<WindowDragCoordinator> drags;
    OverlayContents current;
    OverlaySections refreshed = 0;
};

TEST_F(Overlay, FootersNameTheTileAndItsWindowsInStackOrder) {
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Codex").opens("Mail").arrange();
    show();
    EXPECT_EQ(strips(), "Primary: *Codex | Secondary: *!Mail");
    EXPECT_EQ(footerFrames(), "10,1402 1264x28 | 1286,1402 1264x28") << "footers lie directly below the cells";
    EXPECT_EQ(describeFrame(contents().tiles[0].cell), "10,10 1264x1392");
    EXPECT_EQ(describeFrame(contents().tiles[0].windowFrame), "15,15 1254x1382");
    desk.move(WorkspaceDirection::left);
    EXPECT_EQ(strips(), "Primary: *!Mail Codex | Secondary:");
    desk.cycleStack();
    EXPECT_EQ(strips(), "Primary: *!Codex Mail | Secondary:");
    desk.desktop.userMinimizes("Codex");
    desk.settle();
    EXPECT_NE(strips().find("_Codex"), std::string::npos) << strips();
    desk.desktop.setTrusted(false);
    desk.settle();
    EXPECT_EQ(strips(), "") << "without the permission no tiles are shown";
}

TEST_F(Overlay, ATileIsShownAsAWholeEvenIfItsWindowIsSmaller) {
    desk.display(2560, 1440).layout("jarvis.dual-split");
    desk.opens("Calculator", {.maximumSize = {{300, 400}}, .tellsSizeHints = true}).arrange();
    show();
    const OverlayTile& tile = contents().tiles[0];
    ASSERT_EQ(desk.controller().tiles()[0].frameForWindowService.size.width, 300);
    EXPECT_EQ(describeFrame(tile.windowFrame), "15,15 1254x1382");
    EXPECT_EQ(describeFrame(*tile.footerFrame), "10,1402 1264x28");
}

TEST_F(Overlay, ASpanHasOneFooterAlongItsBottomWithTheNoticeForSixSeconds) {
    desk.display(2560, 1440).layout("jarvis.quad-grid").opens("Mail", {.minimumSize = {{2400, 400}}});
    show();
    ASSERT_TRUE(desk.controller().perform(
        command::Place{desk.desktop.windowIDOf("Mail"), desk.target("A", desk.controller().tiles()[0].slot.id)}));
    advance(0.1);
    ASSERT_EQ(contents().tiles.size(), 3U) << strips();
    const OverlayTile& span = contents().tiles[0];
    EXPECT_EQ(span.coveredSlotIDs.size(), 2U);
    EXPECT_EQ(span.coveredSlotIDs[0], span.slotID);
    EXPECT_EQ(span.cell.size.width, 2540);
    EXPECT_EQ(span.footerFrame, makeRect(minX(span.cell), maxY(span.cell), 2540, 28));
    ASSERT_TRUE(span.notice);
    EXPECT_EQ(span.notice->text,
              "Mail did not fit in the selected tile, so KOVA automatically claimed 1 additional tiles");
    EXPECT_EQ(span.notice->application.name, "Mail");
    advance(5.8);
    EXPECT_TRUE(contents().tiles[0].notice);
    refreshed = 0;
    advance(0.2);
    EXPECT_TRUE(holds(refreshed, OverlaySection::tiles)) << "watchers are notified of the notice's end";
    EXPECT_FALSE(contents().tiles[0].notice);
}

TEST_F(Overlay, FocusModeRemovesOnlyTheFootersOfItsDisplay) {
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Codex").opens("Mail").arrange();
    desk.display(1920, 1080, "B").layout("jarvis.dual-split", "B").settle();
    show();
    const std::string before = footerFrames();
    EXPECT_EQ(before.find("none"), std::string::npos);
    desk.zoom();
    EXPECT_TRUE(footerFrames().starts_with("none | none | ")) << footerFrames();
    EXPECT_EQ(contents().dividers.size(), 1U);
    EXPECT_TRUE(contents().displays[0].isFocusMode);
    EXPECT_FALSE(contents().displays[1].isFocusMode);
    desk.zoom();
    EXPECT_EQ(footerFrames(), before);
}

TEST_F(Overlay, ALaunchIsPendingUntilItsWindowIsPlacedOrItFailsOrTimesOut) {
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Mail").arrange();
    show();
    const auto launch = [&](const LaunchableApplication& application) {
        refreshed = 0;
        ASSERT_TRUE(
            desk.controller().perform(action::LaunchApplication{application, desk.displayIDOf("A"), "secondary-1"}));
        EXPECT_TRUE(holds(refreshed, OverlaySection::tiles));
        EXPECT_EQ(strips(), "Primary: *!Mail | Secondary: →" + application.name);
    };
    launch(desk.desktop.install("Broken", {.fails = "It is broken"}));
    advance(0.5);
    EXPECT_EQ(strips(), "Primary: *!Mail | Secondary:");
    launch(desk.desktop.install("Silent", {.startsAfter = Seconds(1), .windowCount = 0}));
    advance(19);
    EXPECT_EQ(strips(), "Primary: *!Mail | Secondary: →Silent");
    advance(2);
    EXPECT_EQ(strips(), "Primary: *!Mail | Secondary:");
    launch(desk.desktop.install("Notes", {.startsAfter = Seconds(1)}));
    advance(3);
    EXPECT_EQ(strips(), "Primary: *Mail | Secondary: *!Notes");
}

TEST_F(Overlay, ADraggedWindowIsShownUntilTheReleaseOrTheEndOfMonitoring) {
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Codex").opens("Mail").arrange();
    show();
    const std::string over = "Mail over " + desk.displayIDOf("A").text();
    const auto dragTo = [&](CGPoint point, ShiftKey shift = ShiftKey::up) {
        desk.desktop.movePointer(point, shift);
        advance(0.02);
        return drag();
    };
    const auto press = [&](CGPoint point, WindowPart grip = WindowPart::titleBar) {
        desk.desktop.pressAt(point, grip);
        advance(0.02);
    };
    press({1400, 30});
    EXPECT_EQ(drag(), "none");
    EXPECT_EQ(dragTo({1500, 300}), over + " no tile") << "the window's own tile is no drop target";
    EXPECT_EQ(dragTo({500, 300}), over + " " + desk.target("A", "focus-main").text());
    EXPECT_EQ(strips(), "Primary:^ *Codex | Secondary: *!Mail");
    EXPECT_EQ(dragTo({510, 300}, ShiftKey::down), "none") << "a window dropped with Shift would float";
    EXPECT_EQ(strips(), "Primary: *Codex | Secondary: *!Mail");
    EXPECT_EQ(dragTo({500, 300}), over + " " + desk.target("A", "focus-main").text());
    desk.desktop.releaseButton();
    advance(0);
    EXPECT_EQ(drag(), "none") << "the drag is hidden at the release, although the window may still move";
    desk.settle();
    EXPECT_EQ(strips(), "Primary: *!Mail Codex | Secondary:");
    press({1268, 700}, WindowPart::rightEdge);
    EXPECT_EQ(dragTo({1468, 700}), "none") << "a resize has no target";
    desk.desktop.releaseButton();
    desk.settle();
    press({100, 30});
    EXPECT_NE(dragTo({1900, 300}), "none");
    drags->removeMonitor(); // as a suspension does
    EXPECT_EQ(drag(), "none");
    EXPECT_EQ(strips().find('^'), std::string::npos);
    desk.desktop.releaseButton();
    desk.settle();
}

TEST_F(Overlay, DividersAreShownAsHoveredOrDragged) {
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Codex").opens("Mail").arrange();
    show();
    EXPECT_EQ(dividerStates(), "-");
    EXPECT_EQ(describeFrame(contents().dividers[0].frame), "1274,10 12x1392");
    const auto moves = [&](CGPoint point) {
        refreshed = 0;
        desk.desktop.movePointer(point);
        advance(0.02);
        return dividerStates();
    };
    EXPECT_EQ(moves({1280, 700}), "hovered");
    EXPECT_EQ(moves({1281, 710}), "hovered");
    EXPECT_EQ(refreshed, 0U) << "motion within the divider changes no section";
    desk.desktop.pressAt({1280, 700});
    advance(0.02);
    EXPECT_EQ(dividerStates(), "hovered+dragged");
    EXPECT_EQ(moves({1480, 700}), "hovered+dragged");
    EXPECT_EQ(describeFrame(contents().dividers[0].frame), "1474,10 12x1392");
    EXPECT_EQ(describeFrame(contents().tiles[0].windowFrame), "15,15 1454x1382");
    EXPECT_EQ(*contents().tiles[0].footerFrame, makeRect(10, 1402, 1464, 28)) << "the footer moves with the window";
    desk.desktop.releaseButton();
    desk.settle();
    EXPECT_EQ(moves({300, 700}), "-");

    desk.desktop.movePointer({1480, 700});
    desk.desktop.pressAt({1480, 700});
    moves({1380, 700});
    EXPECT_EQ(dividerStates(), "hovered+dragged");
    desk.simulate(SystemActivityEvent::screenDidLock);
    EXPECT_EQ(dividerStates(), "-") << "the release of the button may never be reported";
    desk.simulate(SystemActivityEvent::screenDidUnlock);
    EXPECT_EQ(moves({1360, 700}), "-") << "the drag has ended";
    desk.desktop.releaseButton();
    desk.settle();
}

TEST_F(Overlay, UndoIsOfferedBesideTheMessageOfTheNewestStep) {
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Codex").opens("Mail").arrange();
    show();
    const auto after = [&](const WorkspaceAction& action) {
        desk.controller().perform(action);
        const auto message = contents().message;
        return message ? message->undoMethod : "no message";
    };
    EXPECT_EQ(after(action::Arrange{}), "undo");
    EXPECT_EQ(after(action::ShowMessage{"There is nothing to undo"}), "");
    WorkspaceRule rule;
    rule.applicationName = "Mail";
    EXPECT_EQ(after(action::AddRule{rule}), "");
    EXPECT_EQ(after(action::ToggleFocusZoom{}), "undo");
    EXPECT_EQ(after(action::ToggleFocusZoom{}), "") << "undo would revert an earlier arrangement";
    EXPECT_EQ(after(action::CaptureScene{"Work"}), "");
    EXPECT_EQ(after(action::ActivateScene{desk.state().scenes->front().id}), "undo");
    EXPECT_EQ(after(action::Undo{}), "");
    ASSERT_TRUE(*desk.state().canUndo);
    desk.desktop.install("Mail", {.startsAfter = Seconds(2), .opensAfter = Seconds(1)});
    desk.desktop.quit("Mail");
    desk.settle();
    EXPECT_EQ(after(action::ActivateScene{desk.state().scenes->front().id}), "undo");
    advance(5);
    ASSERT_TRUE(contents().message);
    EXPECT_EQ(contents().message->text, "Scene fully restored");
    EXPECT_EQ(contents().message->undoMethod, "undo") << "undo reverts the scene, although its opening ended later";
}

TEST_F(Overlay, TheBackdropHasTheAppearanceAndAMessageStaysOnItsDisplay) {
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Codex").opens("Mail").arrange();
    desk.display(1920, 1080, "B").settle();
    show();
    auto& workspace = desk.controller();
    EXPECT_EQ(contents().appearance.isDark, std::nullopt) << "the native theme follows the desktop";
    ASSERT_TRUE(workspace.perform(action::SelectTheme{"jarvis.neon-cyan"}));
    workspace.perform(action::SelectAccentColor{"reactor-amber"});
    workspace.perform(action::Switch{action::Setting::showBrain, true});
    EXPECT_EQ(contents().appearance.isDark, true);
    EXPECT_EQ(contents().appearance.palette.accent, accentColor("reactor-amber").accent);
    EXPECT_TRUE(contents().appearance.showBrain);
    ASSERT_EQ(contents().displays.size(), 2U);
    EXPECT_EQ(describeFrame(contents().displays[1].frame), "2560,0 1920x1080");
    EXPECT_EQ(contents().displays[0].floatingFrames, std::vector<CGRect>());
    desk.perform(command::Float{desk.desktop.windowIDOf("Mail")});
    ASSERT_EQ(contents().displays[0].floatingFrames.size(), 1U) << "the floating window may cover the decoration";
    EXPECT_EQ(contents().displays[1].floatingFrames, std::vector<CGRect>());
    workspace.perform(action::Switch{action::Setting::showBrain, false});
    EXPECT_EQ(contents().displays[0].floatingFrames, std::vector<CGRect>());

    desk.arrange();
    const auto message = contents().message;
    ASSERT_TRUE(message);
    EXPECT_EQ(message->text, "Windows arranged into zones — Undo is available");
    EXPECT_EQ(message->displayID, desk.displayIDOf("A"));
    EXPECT_EQ(message->undoMethod, "undo");
    desk.desktop.userMoves("Mail", makeRect(2600, 100, 800, 600));
    desk.desktop.userFocuses("Mail");
    advance(1);
    EXPECT_EQ(contents().message, message);
    advance(4);
    EXPECT_EQ(contents().message, std::nullopt);
}

} // namespace
} // namespace kova
