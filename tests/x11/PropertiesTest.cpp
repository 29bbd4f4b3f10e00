// Properties that other programs write: which values are used, and which are ignored.
#include "platform/x11/ClientWindow.h"
#include "tests/x11/NumberedAtoms.h"

#include <gtest/gtest.h>

#include <cstring>

namespace kova::x11 {
namespace {

const Atoms kAtoms = numberedAtoms();

/// A window with one property.
ClientWindow withBytes(xcb_atom_t property, xcb_atom_t type, int format, std::span<const std::uint8_t> bytes) {
    ClientWindow window;
    for (const PropertyRule& rule : propertyRules(kAtoms)) {
        if (rule.property == property) rule.take(window, {type, format, bytes}, kAtoms);
    }
    return window;
}

ClientWindow withNumbers(xcb_atom_t property, xcb_atom_t type, const std::vector<std::uint32_t>& numbers) {
    std::vector<std::uint8_t> bytes(numbers.size() * 4);
    if (!numbers.empty()) std::memcpy(bytes.data(), numbers.data(), bytes.size());
    return withBytes(property, type, 32, bytes);
}

ClientWindow withText(xcb_atom_t property, xcb_atom_t type, const std::string& text) {
    return withBytes(property, type, 8, {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
}

TEST(Properties, TitlesAreAlwaysUtf8) {
    const auto newTitle = [](const std::string& bytes) {
        return withText(kAtoms[Atom::netWmName], kAtoms[Atom::utf8String], bytes).title();
    };
    EXPECT_EQ(newTitle("Grüße 🎉"), "Grüße 🎉");
    EXPECT_EQ(newTitle(std::string("cut\0off", 7)), "cut");
    EXPECT_EQ(newTitle("a\xFF"
                       "b"),
              "a\xEF\xBF\xBD"
              "b");
    EXPECT_EQ(newTitle("\xC0\xAF"), "\xEF\xBF\xBD\xEF\xBF\xBD"); // overlong
    EXPECT_EQ(newTitle("\xED\xA0\x80").size(), 9U);              // a surrogate: three wrong bytes
    EXPECT_EQ(newTitle("half \xE2\x82"), "half \xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_EQ(withText(XCB_ATOM_WM_NAME, XCB_ATOM_STRING, "caf\xE9").title(), "café");
    EXPECT_EQ(withText(XCB_ATOM_WM_NAME, kAtoms[Atom::utf8String], "café").title(), "café");
    // A name of the wrong type is ignored.
    EXPECT_EQ(withNumbers(kAtoms[Atom::netWmName], XCB_ATOM_CARDINAL, {0x41414141}).title(), "");
}

TEST(Properties, SizeHintsGiveTheMinimumElseTheBaseSize) {
    const auto minimum = [](std::vector<std::uint32_t> hints, std::size_t length = 18) {
        hints.resize(length);
        return withNumbers(XCB_ATOM_WM_NORMAL_HINTS, XCB_ATOM_WM_SIZE_HINTS, hints).minimumElseBase;
    };
    constexpr std::uint32_t kMinimum = 1U << 4, kIncrement = 1U << 6, kBase = 1U << 8;
    std::vector<std::uint32_t> hints = {kMinimum | kBase, 0, 0, 0, 0, 320, 200, 0, 0, 9, 17, 0, 0, 0, 0, 20, 10, 1};
    EXPECT_EQ(minimum(hints), (PixelRect{0, 0, 320, 200}));
    EXPECT_EQ(minimum(hints, 15), (PixelRect{0, 0, 320, 200}));
    hints[0] = kBase;
    EXPECT_EQ(minimum(hints), (PixelRect{0, 0, 20, 10}));
    hints[0] = kIncrement;
    EXPECT_FALSE(minimum(hints)) << "an increment is no minimum size";
    hints[0] = kMinimum;
    for (const std::uint32_t absurd : {0x80000000U, 0xFFFFFFFFU, 40000U}) {
        hints[5] = absurd;
        EXPECT_FALSE(minimum(hints)) << absurd;
    }
    EXPECT_FALSE(minimum({kMinimum}, 3));
    EXPECT_FALSE(withNumbers(XCB_ATOM_WM_NORMAL_HINTS, XCB_ATOM_CARDINAL, hints).minimumElseBase);
}

TEST(Properties, SizeHintsGiveIncrementsLargestSizesAndAspects) {
    const auto hints = [](std::vector<std::uint32_t> numbers) {
        return withNumbers(XCB_ATOM_WM_NORMAL_HINTS, XCB_ATOM_WM_SIZE_HINTS, numbers).sizeHints;
    };
    constexpr std::uint32_t kMinimum = 1U << 4, kMaximum = 1U << 5, kIncrement = 1U << 6, kAspect = 1U << 7;
    std::vector<std::uint32_t> numbers = {
        kMinimum | kMaximum | kIncrement | kAspect, 0, 0, 0, 0, 20, 30, 800, 10, 6, 13, 16, 9, 16, 9, 4, 4, 1};
    EXPECT_EQ(hints(numbers), (WindowSizeHints{.minimum = {20, 30},
                                               .maximum = {800, 0}, // a largest height below the minimum is ignored
                                               .base = {20, 30},
                                               .increment = {6, 13},
                                               .leastAspect = 16.0 / 9,
                                               .mostAspect = 16.0 / 9}));
    numbers[12] = 0;
    EXPECT_EQ(hints(numbers).leastAspect, 0) << "an aspect ratio with a zero is ignored";
    numbers[0] = 0;
    EXPECT_EQ(hints(numbers), WindowSizeHints{});
}

TEST(Properties, KindIsTheFirstKnownType) {
    const auto kind = [](const std::vector<std::uint32_t>& types) {
        return withNumbers(kAtoms[Atom::netWmWindowType], XCB_ATOM_ATOM, types).kind();
    };
    const std::vector<std::tuple<std::vector<std::uint32_t>, WindowKind, bool>> cases = {
        {{}, WindowKind::standard, true},
        {{kAtoms[Atom::typeNormal], kAtoms[Atom::typeDock]}, WindowKind::standard, true},
        {{77, kAtoms[Atom::typeDialog]}, WindowKind::dialog, true},
        {{kAtoms[Atom::typeDock]}, WindowKind::dock, false},
        {{kAtoms[Atom::typeDesktop]}, WindowKind::desktop, false},
        {{kAtoms[Atom::typeSplash]}, WindowKind::splash, false},
        {{kAtoms[Atom::typeUtility]}, WindowKind::palette, false},
        {{kAtoms[Atom::typePopupMenu]}, WindowKind::menu, false},
        {{kAtoms[Atom::typeDragIcon]}, WindowKind::transient, false},
    };
    for (const auto& [types, expected, isManaged] : cases) {
        EXPECT_EQ(kind(types), expected) << types.size();
        EXPECT_EQ(withNumbers(kAtoms[Atom::netWmWindowType], XCB_ATOM_ATOM, types).isManaged(), isManaged);
    }
    EXPECT_EQ(withNumbers(XCB_ATOM_WM_TRANSIENT_FOR, XCB_ATOM_WINDOW, {5}).kind(), WindowKind::dialog);
    EXPECT_EQ(withNumbers(XCB_ATOM_WM_TRANSIENT_FOR, XCB_ATOM_WINDOW, {0}).kind(), WindowKind::standard);
}

TEST(Properties, NumbersOfTheWrongTypeOrLengthAreIgnored) {
    EXPECT_EQ(withNumbers(kAtoms[Atom::gtkFrameExtents], XCB_ATOM_CARDINAL, {10, 11, 8, 12}).shadow,
              (PixelEdges{10, 11, 8, 12}));
    EXPECT_EQ(withNumbers(kAtoms[Atom::gtkFrameExtents], XCB_ATOM_CARDINAL, {10, 11, 8}).shadow, PixelEdges{});
    EXPECT_EQ(withNumbers(kAtoms[Atom::gtkFrameExtents], XCB_ATOM_CARDINAL, {10, 0x80000000U, 8, 12}).shadow,
              PixelEdges{});
    EXPECT_FALSE(withNumbers(kAtoms[Atom::netWmStrutPartial], XCB_ATOM_CARDINAL, {0, 0, 30, 0, 1}).partialStrut);
    EXPECT_EQ(withNumbers(kAtoms[Atom::netWmPid], XCB_ATOM_CARDINAL, {4001}).claimedProcess, 4001U);
    EXPECT_FALSE(withNumbers(kAtoms[Atom::netWmPid], XCB_ATOM_CARDINAL, {0}).claimedProcess);
    EXPECT_FALSE(withNumbers(kAtoms[Atom::netWmPid], XCB_ATOM_CARDINAL, {0xFFFFFFFFU}).claimedProcess);
    EXPECT_FALSE(withNumbers(kAtoms[Atom::netWmPid], XCB_ATOM_STRING, {4001}).claimedProcess);
    const auto classes = withText(XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, std::string("navigator\0Browser\0", 18));
    EXPECT_EQ(classes.instanceName + "|" + classes.className, "navigator|Browser");
    EXPECT_EQ(withText(XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, "alone").className, "");
}

TEST(Properties, AShortMachineNameMatchesTheFullName) {
    EXPECT_TRUE(isSameMachine("desk", "desk.example.org"));
    EXPECT_TRUE(isSameMachine("desk.example.org", "desk"));
    EXPECT_TRUE(isSameMachine("", "desk"));
    EXPECT_FALSE(isSameMachine("desk.example.net", "desk.example.org"));
    EXPECT_FALSE(isSameMachine("other", "desk"));
}

} // namespace
} // namespace kova::x11
