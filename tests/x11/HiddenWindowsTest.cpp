#include "platform/x11/HiddenWindows.h"

#include "tests/linux/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace kova::x11 {
namespace {

TEST(HiddenWindows, EachOfManyIsFoundReplacedAndRemoved) {
    constexpr xcb_window_t kWindows = 100'000;
    const Atoms atoms;
    const WindowModel model(atoms, 1);
    HiddenWindows hidden("");
    const auto processOf = [](xcb_window_t window) { return static_cast<pid_t>(window % 1000 + 1); };
    for (xcb_window_t window = 1; window <= kWindows; ++window) {
        HiddenWindow entry;
        entry.window = window;
        entry.processIdentifier = processOf(window);
        hidden.add({entry});
    }
    for (xcb_window_t window = 1; window <= kWindows; ++window) {
        ASSERT_TRUE(hidden.isHiddenWithApplication(window) && hidden.isApplicationHidden(processOf(window), model))
            << window;
    }
    hidden.add({{.window = 5, .processIdentifier = 7777}}); // a newer entry replaces the older one
    EXPECT_EQ(hidden.all().size(), kWindows);
    EXPECT_EQ(hidden.markApplicationReturning(7777, Seconds(1)), std::vector<xcb_window_t>{5});
    EXPECT_FALSE(hidden.isHiddenWithApplication(5) || hidden.isApplicationHidden(7777, model))
        << "the window is returning";
    for (xcb_window_t window = 1; window <= kWindows; ++window) hidden.remove(window);
    EXPECT_TRUE(hidden.all().empty());
    EXPECT_FALSE(hidden.isApplicationHidden(processOf(1), model));
}

TEST(HiddenWindows, AFailedWriteIsReportedUntilOneSucceeds) {
    const TemporaryFolder temporary;
    const auto folder = temporary.path() / "runtime";
    HiddenWindows hidden((folder / "hidden.json").string());
    hidden.add({{.window = 5, .processIdentifier = 7}});
    hidden.writeFile();
    EXPECT_EQ(hidden.problem(), "cannot write " + (folder / "hidden.json").string() + ": No such file or directory");
    EXPECT_TRUE(hidden.isHiddenWithApplication(5));
    std::filesystem::create_directory(folder);
    hidden.add({{.window = 6, .processIdentifier = 7}});
    hidden.writeFile();
    EXPECT_EQ(hidden.problem(), "");
    EXPECT_EQ(hidden.readFile().size(), 2U);
}

} // namespace
} // namespace kova::x11
