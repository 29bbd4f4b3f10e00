#include "tests/ui/Sample.h"
#include "ui/overlay/Drawing.h"

#include <QtTest/qtest.h>
#include <QtTest/qtestmouse.h>

#include <QWheelEvent>

#include <gtest/gtest.h>

namespace kova::ui::testing {

namespace {

using Strings = std::vector<std::string>;

struct Stage {
    explicit Stage(nlohmann::json shown = sampleState()) : state(std::move(shown)) {
        overlay.setDesktopStyle(desktopStyleOf(ThemeVariant::dark));
        show();
    }
    void show() { overlay.show(contentsOf(state)); }
    FooterWindow& footer(const std::string& slot) { return *overlay.footers().at("d1::" + slot); }
    QPoint entryCenter(const std::string& slot, std::size_t index) {
        return footer(slot).layoutInWindow().entries.at(index).area.center();
    }
    OverlayWindow* windowOf(Layer layer) {
        for (const auto& [window, shown] : platform.windows()) {
            if (window->layer() == layer) return window;
        }
        return nullptr;
    }

    nlohmann::json state;
    PicturePlatform platform;
    RecordedActions actions;
    Overlay overlay{platform, actions};
};

} // namespace

TEST(Overlay, ClicksOnAFooterCallTheMatchingMethod) {
    Stage stage;
    FooterWindow& footer = stage.footer("primary");
    QTest::mouseClick(&footer, Qt::LeftButton, {}, stage.entryCenter("primary", 1));
    QTest::mouseClick(&footer, Qt::RightButton, {}, stage.entryCenter("primary", 2));
    QTest::mouseClick(&footer, Qt::LeftButton, {}, footer.layoutInWindow().name.center());
    QTest::mouseClick(&footer, Qt::LeftButton, {}, footer.layoutInWindow().launch.center());
    QTest::mouseClick(&footer, Qt::LeftButton, {}, footer.layoutInWindow().remark.center());
    EXPECT_EQ(stage.actions.recorded,
              (Strings{"bringForward 1", "menu d1::primary 2", "bringForward 0", "choose d1::primary"}));
}

TEST(Overlay, WheelStepsThroughAStackByWholeNotches) {
    Stage stage;
    const auto turn = [&](const std::string& slot, int angle) {
        QWheelEvent event(QPointF(20, 10), QPointF(20, 10), {}, {0, angle}, {}, {}, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&stage.footer(slot), &event);
    };
    turn("primary", -120);
    turn("primary", 60);
    turn("primary", 60);
    turn("utility", -120); // this tile has no windows
    EXPECT_EQ(stage.actions.recorded, (Strings{"next d1::primary", "previous d1::primary"}));
    stage.actions.recorded.clear();
    turn("primary", -300); // a fast turn is reported as one event
    turn("primary", -60);
    EXPECT_EQ(stage.actions.recorded, Strings(3, "next d1::primary"));
}

TEST(Overlay, AnEntryIsDraggedOntoAnotherTile) {
    Stage stage;
    FooterWindow& footer = stage.footer("primary");
    const QPoint start = stage.entryCenter("primary", 1);
    const auto dragTo = [&](QPoint onScreen) {
        QTest::mousePress(&footer, Qt::LeftButton, {}, start);
        QTest::mouseMove(&footer, start + QPoint(3, 0));
        EXPECT_EQ(stage.platform.windowCountOf(Layer::highlight), 0) << "a movement of a few pixels starts no drag";
        QTest::mouseMove(&footer, onScreen - footer.position());
    };
    dragTo(QPoint(600, 300)); // over the tile "secondary"
    EXPECT_EQ(stage.platform.windowCountOf(Layer::highlight), 1);
    QTest::mouseRelease(&footer, Qt::LeftButton, {}, QPoint(600, 300) - footer.position());
    EXPECT_EQ(stage.platform.windowCountOf(Layer::highlight), 0);
    dragTo(stage.footer("utility").geometry().center());
    QTest::mouseRelease(&footer, Qt::LeftButton, {}, stage.footer("utility").geometry().center() - footer.position());
    dragTo(QPoint(100, 100)); // its own tile
    QTest::mouseRelease(&footer, Qt::LeftButton, {}, QPoint(100, 100) - footer.position());
    EXPECT_EQ(stage.actions.recorded, (Strings{"place 1 d1::secondary", "place 1 d1::utility"}));
}

TEST(Overlay, OutlinesAreShownUntilTheDragOfAnEntryEnds) {
    struct Case {
        const char* what;
        std::function<void(Stage&)> act;
        bool endsDrag = true;
    };
    const auto change = [](auto&& edit) {
        return [edit](Stage& stage) {
            edit(stage.state);
            stage.show();
        };
    };
    const std::vector<Case> cases{
        {"another tile is renamed", change([](auto& state) { state["tiles"][3]["name"] = "Other"; }), false},
        {"focus mode removes the footer", change([](auto& state) { state["tiles"][0]["footerFrame"] = nullptr; })},
        {"another layout", change([](auto& state) { state["tiles"].erase(0); })},
        {"the window leaves its tile", change([](auto& state) { state["tiles"][0]["applications"].erase(1); })},
        {"suspension", change([](auto& state) { state["isSuspended"] = true; })},
        {"the agent ends", [](Stage& stage) { stage.overlay.show(std::nullopt); }},
        {"a compositor starts", [](Stage& stage) { stage.overlay.compositingChanged(); }},
        {"the right button is pressed",
         [](Stage& stage) { QTest::mousePress(&stage.footer("primary"), Qt::RightButton, {}, QPoint(200, 10)); }}};
    for (const Case& each : cases) {
        Stage stage;
        FooterWindow& footer = stage.footer("primary");
        const QPoint start = stage.entryCenter("primary", 1), target = QPoint(600, 300) - footer.position();
        QTest::mousePress(&footer, Qt::LeftButton, {}, start);
        QTest::mouseMove(&footer, target);
        QTest::mouseMove(&footer, QPoint(496, 300) - footer.position());
        EXPECT_EQ(stage.platform.windowCountOf(Layer::highlight), 1)
            << each.what << ": the pointer is between two tiles";
        const nlohmann::json before = stage.state;
        each.act(stage);
        EXPECT_EQ(stage.platform.windowCountOf(Layer::highlight), each.endsDrag ? 0 : 1) << each.what;
        stage.state = before;
        stage.show();
        EXPECT_EQ(stage.platform.windowCountOf(Layer::highlight), each.endsDrag ? 0 : 1)
            << each.what << ", then the former contents are shown again";
        QTest::mouseMove(&stage.footer("primary"), target);
        QTest::mouseRelease(&stage.footer("primary"), Qt::LeftButton, {}, target);
        EXPECT_EQ(stage.platform.windowCountOf(Layer::highlight), 0) << each.what;
        EXPECT_EQ(stage.actions.recorded, each.endsDrag ? Strings() : Strings{"place 1 d1::secondary"}) << each.what;
    }
}

TEST(Overlay, MessageAndEmptyTileReceiveClicksOnlyOnTheirButtons) {
    Stage stage;
    for (const Layer layer : {Layer::message, Layer::emptyTile}) {
        OverlayWindow* window = stage.windowOf(layer);
        ASSERT_TRUE(window);
        const QRegion clickable = stage.platform.windows().at(window).clickable;
        EXPECT_LT(clickable.boundingRect().width(), window->width() / 2);
        QTest::mouseClick(window, Qt::LeftButton, {}, clickable.boundingRect().center());
    }
    EXPECT_EQ(stage.actions.recorded, (Strings{"undo", "choose d1::utility"}));
    for (const auto& [window, shown] : stage.platform.windows()) {
        EXPECT_EQ(shown.clickable.isEmpty(), window->layer() == Layer::backdrop);
    }
}

TEST(Overlay, TheMessageCoversNeitherFootersNorTheButtonsOfEmptyTiles) {
    struct Case {
        const char* what;
        int bottom; // y of the message's lower edge; the display's lower edge is at 500
        std::function<void(nlohmann::json&)> change;
    };
    const std::vector<Case> cases{
        {"above the button of a short tile", 384, [](auto&) {}},
        {"above the footers", 450, [](auto& state) { state["tiles"][1]["isEmpty"] = false; }},
        {"no buttons", 450, [](auto& state) { state["appearance"]["showTileBackgrounds"] = false; }},
        {"neither footers nor buttons", 488,
         [](auto& state) {
             for (auto& tile : state["tiles"]) tile["footerFrame"] = nullptr;
             state["displays"][0]["isFocusMode"] = true;
         }},
        {"no room above the button", 488, [](auto& state) {
             state["displays"][0]["visibleFrame"] = {{"x", 0}, {"y", 420}, {"width", 800}, {"height", 80}};
         }}};
    for (const Case& each : cases) {
        Stage stage;
        each.change(stage.state);
        stage.show();
        EXPECT_NEAR(stage.windowOf(Layer::message)->geometry().bottom() + 1, each.bottom, 2) << each.what;
    }
}

TEST(Overlay, OnlyWindowsWhosePictureHasChangedAreDrawn) {
    Stage stage;
    const int before = stage.platform.drawings();
    stage.show();
    EXPECT_EQ(stage.platform.drawings(), before);
    stage.state["tiles"][0]["applications"][0]["isFocused"] = false;
    stage.show();
    EXPECT_EQ(stage.platform.drawings(), before + 1);
    for (const char* part : {"frame", "footerFrame"}) stage.state["tiles"][2][part]["y"] = 40.0;
    stage.show();
    EXPECT_EQ(stage.platform.drawings(), before + 1) << "a footer that only moves keeps its picture";
}

TEST(Overlay, TheWindowOfARemovedTileIsReused) {
    Stage stage;
    const auto windows = stage.platform.windows().size();
    const QImage before = stage.platform.screen(QSize(800, 500));
    auto other = stage.state["tiles"];
    for (auto& tile : other) tile["id"] = "d1::other-" + tile["slot"].get<std::string>();
    other.erase(0);
    const auto tiles = std::exchange(stage.state["tiles"], other);
    QTest::mouseMove(&stage.footer("primary"), stage.footer("primary").layoutInWindow().launch.center());
    stage.show();
    EXPECT_EQ(stage.platform.windowCountOf(Layer::footer), 3);
    stage.state["tiles"] = tiles;
    stage.show();
    EXPECT_EQ(stage.platform.windows().size(), windows) << "no window is created";
    EXPECT_EQ(stage.platform.screen(QSize(800, 500)), before) << "a reused window shows nothing of its former tile";
}

TEST(Overlay, ShowsOnlyTheContentsThatTheAgentPublishes) {
    Stage stage;
    stage.state["displays"][0]["isFocusMode"] = true;
    for (auto& tile : stage.state["tiles"]) tile["footerFrame"] = nullptr;
    stage.state["message"] = nullptr;
    stage.show();
    EXPECT_EQ(stage.platform.windowCountOf(Layer::footer), 0);
    EXPECT_EQ(stage.platform.windowCountOf(Layer::emptyTile), 0);
    EXPECT_EQ(stage.platform.windowCountOf(Layer::message), 0);
    EXPECT_EQ(stage.platform.windowCountOf(Layer::backdrop), 1);
    stage.overlay.show(std::nullopt);
    EXPECT_TRUE(stage.platform.windows().empty()) << "nothing is shown without an agent";
}

TEST(Overlay, HighlightVanishesDuringASuspensionAndAfterTheDrag) {
    Stage stage(sampleState({.isDragging = true}));
    ASSERT_EQ(stage.platform.windowCountOf(Layer::highlight), 1);
    EXPECT_TRUE(stage.platform.windows().at(stage.windowOf(Layer::highlight)).clickable.isEmpty());
    stage.state["isSuspended"] = true;
    stage.show();
    EXPECT_EQ(stage.platform.windowCountOf(Layer::highlight), 0);
    stage.state["isSuspended"] = false;
    stage.show();
    EXPECT_EQ(stage.platform.windowCountOf(Layer::highlight), 1);
    stage.state["drag"] = nullptr;
    stage.show();
    EXPECT_EQ(stage.platform.windowCountOf(Layer::highlight), 0);
}

TEST(Overlay, MessageHighlightAndDividerFadeInWithAnimationsAndACompositor) {
    auto state = sampleState({.isDragging = true});
    state["dividers"] = {{{"id", "v"},
                          {"display", "d1"},
                          {"axis", "horizontal"},
                          {"frame", {{"x", 490}, {"y", 10}, {"width", 12}, {"height", 450}}},
                          {"isHovered", true},
                          {"isDragged", false}}};
    for (const auto& [areAnimationsEnabled, isComposited] : {std::pair(true, true), {true, false}, {false, true}}) {
        PicturePlatform platform(isComposited);
        RecordedActions actions;
        Overlay overlay(platform, actions);
        DesktopStyle style = desktopStyleOf(ThemeVariant::dark);
        style.areAnimationsEnabled = areAnimationsEnabled;
        overlay.setDesktopStyle(style);
        overlay.show(contentsOf(state));
        const bool isGradual = areAnimationsEnabled && isComposited;
        for (const auto& [window, shown] : platform.windows()) {
            const bool isTransient = !isBelowApplications(window->layer()) || window->layer() == Layer::divider;
            EXPECT_EQ(window->opacity() < 1, isGradual && isTransient) << window->title().toStdString();
        }
        EXPECT_TRUE(QTest::qWaitFor([&] {
            return std::ranges::all_of(platform.windows(),
                                       [](const auto& shown) { return shown.first->opacity() == 1; });
        }));
    }
}

TEST(Footer, LongNoticeIsSplitIntoPartsInNarrowFooters) {
    auto contents = contentsOf(sampleState());
    TileContents& tile = contents.tiles.front();
    const QString text =
        QStringLiteral("Terminal did not fit in the selected tile, so KOVA automatically claimed 1 additional tiles");
    tile.notice = PlacementNotice{text.toStdString(), {"", "Terminal"}};
    for (const double scale : {1.0, 2.0}) {
        const Style style{.scale = scale, .fontFamily = QStringLiteral("DejaVu Sans")};
        for (int width = 300; width < 1000; width += 60) {
            const auto layout = layOutFooter(tile, QSize(style.px(width), style.px(26)), style);
            EXPECT_EQ(layout.notice.parts.join(u' '), text) << width;
            EXPECT_EQ(layout.name.isEmpty(), width < 650) << width;
            for (const QString& part : layout.notice.parts) {
                EXPECT_LE(widthOf(part, style.font(points::smallText)), layout.notice.area.width() - style.px(26))
                    << width;
            }
            EXPECT_FALSE(layout.notice.area.intersects(layout.launch));
        }
    }
}

TEST(Footer, SecondPartOfALongNoticeFollowsTheFirst) {
    Stage stage(sampleState({.hasNotice = true}));
    FooterWindow& footer = stage.footer("primary");
    const auto picture = [&] { return stage.platform.windows().at(&footer).picture; };
    ASSERT_EQ(footer.layoutInWindow().notice.parts.size(), 2);
    const QImage first = picture();
    EXPECT_TRUE(QTest::qWaitFor([&] { return picture() != first; }, 30'000));
    stage.state["tiles"][0]["notice"] = nullptr;
    stage.show();
    stage.state = sampleState({.hasNotice = true});
    stage.show();
    EXPECT_EQ(picture(), first) << "a new notice begins with its first part";
}

TEST(Footer, PartsDoNotOverlapAtAnyWidth) {
    for (const double scale : {1.0, 2.0}) {
        for (int width = 60; width < 900; width += 37) {
            const auto contents = contentsOf(sampleState({.windows = 12, .scale = scale}));
            TileContents tile = contents.tiles.front();
            tile.applications[0].application.name = "日本語の長い名前のアプリケーション";
            tile.applications[1].application.name = "متصفح الويب السريع والآمن";
            for (const bool isPending : {false, true}) {
                if (isPending) tile.pending = ApplicationName{"", "Maps"};
                const Style style{.scale = scale, .fontFamily = QStringLiteral("DejaVu Sans")};
                const auto layout = layOutFooter(tile, QSize(style.px(width), style.px(26)), style);
                std::vector<QRect> parts{layout.name, layout.launch};
                for (const auto& entry : layout.entries) parts.push_back(entry.area);
                for (const QRect& part : {layout.more, layout.pending}) {
                    if (!part.isEmpty()) parts.push_back(part);
                }
                for (std::size_t i = 0; i < parts.size(); ++i) {
                    EXPECT_TRUE(i == 0 || layout.panel.contains(parts[i])) << width << " part " << i;
                    for (std::size_t j = 0; j < i; ++j)
                        EXPECT_FALSE(parts[i].intersects(parts[j])) << width << ": " << i << ", " << j;
                }
                EXPECT_TRUE(width < 200 || layout.entries.size() + layout.hiddenEntries == tile.applications.size())
                    << width;
            }
        }
    }
}

TEST(Footer, TheFrontWindowTakesPrecedenceOverALaunchAndStackedWindows) {
    TileContents tile = contentsOf(sampleState({.windows = 12})).tiles.front();
    for (const double scale : {1.0, 2.0}) {
        const Style style{.scale = scale, .fontFamily = QStringLiteral("DejaVu Sans")};
        for (const bool isPending : {false, true}) {
            tile.pending = isPending ? std::optional(ApplicationName{"", "Photographs"}) : std::nullopt;
            for (int width = 200; width < 900; width += 20) {
                const auto layout = layOutFooter(tile, QSize(style.px(width), style.px(26)), style);
                ASSERT_FALSE(layout.entries.empty()) << width;
                EXPECT_TRUE(width < 240 || !layout.entries[0].label.isEmpty()) << width;
                EXPECT_EQ(!layout.pending.isEmpty(), isPending) << width;
                const auto named = [](const FooterLayout::Entry& entry) { return !entry.label.isEmpty(); };
                EXPECT_TRUE(std::ranges::is_partitioned(layout.entries, named))
                    << "the last entries lose their texts first";
            }
        }
    }
}

TEST(Footer, TheNameOfTheIconUnderThePointerIsShown) {
    const TileContents tile = contentsOf(sampleState({.windows = 12})).tiles.front();
    const Style style{.fontFamily = QStringLiteral("DejaVu Sans")};
    const auto nameAt = [&](int width, std::size_t entry) {
        const auto layout = layOutFooter(tile, QSize(width, 26), style);
        const auto name = hoveredName(tile, layout, {FooterHit::Part::entry, entry}, style);
        if (!name) return QString();
        EXPECT_TRUE(layout.panel.contains(name->area)) << width;
        EXPECT_GE(name->area.width(), 40) << width;
        for (const auto& shown : layout.entries) EXPECT_FALSE(name->area.intersects(shown.area)) << width;
        return name->name;
    };
    EXPECT_EQ(nameAt(470, 0), QString()) << "the entry shows the whole name";
    EXPECT_EQ(nameAt(470, 4), QStringLiteral("Запись"));
    EXPECT_EQ(nameAt(300, 1), QStringLiteral("Terminal"))
        << "the name is shown in place of the tile's name, since no other space is free";
    EXPECT_EQ(nameAt(300, 7), QString()) << "the entry is not shown";
}

TEST(Footer, WindowsOfOneApplicationAreDistinguishedByTheirTitles) {
    auto contents = contentsOf(sampleState());
    TileContents& tile = contents.tiles.front();
    tile.applications[1].application.name = tile.applications[0].application.name;
    tile.applications[1].title = "second.txt";
    const auto layout = layOutFooter(tile, QSize(470, 26), Style{.fontFamily = QStringLiteral("DejaVu Sans")});
    EXPECT_EQ(layout.entries[1].label, QStringLiteral("second.txt"));
    EXPECT_EQ(layout.entries[2].label, QStringLiteral("Notes"));
}

} // namespace kova::ui::testing
