// What the system's assistants, launchers and automation tools are offered, as values. Each intent stands for one URL,
// so that a program that offers it only needs a way to open that URL. The desktop entry and the Mac's shim
// are made from these values; neither has words of its own. The values need nothing but the language.
#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace kova {

/// A text in which something is named: what stands before the name and what stands after it.
struct TextAroundName {
    std::string_view before;
    std::string_view after;
};

/// What a person is asked for before an intent runs: always a text.
struct IntentParameter {
    std::string_view name; // as it is called in a program
    std::string_view title;
};

struct Intent {
    std::string_view typeName;
    std::string_view title;
    std::string_view url;  // with a parameter, its percent-encoded value follows
    TextAroundName dialog; // said once it runs, around the parameter's value; without a parameter `before` is all of it
    std::optional<IntentParameter> parameter;
};

/// An intent that is offered without being set up.
struct AppShortcut {
    const Intent& intent;
    std::span<const TextAroundName> phrases; // said to the assistant, around the application's name
    std::string_view shortTitle;
    std::string_view symbol; // of the system's collection
};

inline constexpr std::string_view kAppShortcutsTypeName = "KOVAAppShortcuts";

inline constexpr Intent kArrangeIntent{
    .typeName = "KOVAArrangeIntent",
    .title = "Arrange Windows with KOVA",
    .url = "kova://action/arrange",
    .dialog = {"KOVA is arranging the workspace.", ""},
    .parameter = {},
};
inline constexpr Intent kUndoIntent{
    .typeName = "KOVAUndoIntent",
    .title = "Undo KOVA Window Action",
    .url = "kova://action/undo",
    .dialog = {"KOVA restored the previous workspace state.", ""},
    .parameter = {},
};
inline constexpr Intent kFocusZoomIntent{
    .typeName = "KOVAFocusZoomIntent",
    .title = "Enter or Exit KOVA Focus Mode",
    .url = "kova://action/zoom",
    .dialog = {"KOVA entered or exited Focus Mode.", ""},
    .parameter = {},
};
inline constexpr Intent kOpenSceneIntent{
    .typeName = "KOVAOpenSceneIntent",
    .title = "Open KOVA Scene",
    .url = "kova://scene/",
    .dialog = {"KOVA is restoring “", "”"},
    .parameter = IntentParameter{.name = "sceneName", .title = "Scene Name"},
};

inline constexpr std::array<const Intent*, 4> kIntents{&kArrangeIntent, &kUndoIntent, &kFocusZoomIntent,
                                                       &kOpenSceneIntent};

inline constexpr std::array<TextAroundName, 2> kArrangePhrases{
    {{"Arrange my windows with ", ""}, {"Place my windows into zones with ", ""}}};
inline constexpr std::array<TextAroundName, 1> kFocusZoomPhrases{{{"Focus my window with ", ""}}};
inline constexpr std::array<TextAroundName, 1> kUndoPhrases{{{"Undo ", " window action"}}};

inline constexpr std::array<AppShortcut, 3> kAppShortcuts{{
    {kArrangeIntent, kArrangePhrases, "Arrange into Zones", "rectangle.3.group"},
    {kFocusZoomIntent, kFocusZoomPhrases, "Focus Mode", "arrow.up.left.and.arrow.down.right"},
    {kUndoIntent, kUndoPhrases, "Undo Window Action", "arrow.uturn.backward"},
}};

/// The URL that the intent opens; the value is that of its parameter, and ignored where it has none.
std::string intentURL(const Intent& intent, std::string_view value = {});
/// What is said once the intent runs.
std::string intentDialog(const Intent& intent, std::string_view value = {});

} // namespace kova
