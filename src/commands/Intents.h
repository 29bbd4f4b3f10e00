// The intents that KOVA offers to assistants, launchers and automation tools, as values. To run an intent, such a
// program opens the intent's URL. The desktop entry and the Mac's Swift source are generated from these values. This
// header needs no other part of KOVA.
#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace kova {

/// A text with a name in it: the parts before and after the name.
struct TextAroundName {
    std::string_view before;
    std::string_view after;
};

/// A text that the user enters before an intent runs.
struct IntentParameter {
    std::string_view name; // in the generated source code
    std::string_view title;
};

struct Intent {
    std::string_view typeName;
    std::string_view title;
    std::string_view url;  // without the parameter's percent-encoded value, which is appended
    TextAroundName dialog; // spoken when the intent runs; the parameter's value, if any, is put in between
    std::optional<IntentParameter> parameter;
};

/// An intent that is offered without setup.
struct AppShortcut {
    const Intent& intent;
    std::span<const TextAroundName> phrases; // said to the assistant, around the application's name
    std::string_view shortTitle;
    std::string_view symbol; // name of an image in the system's collection
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

/// The URL that the intent opens, with the value of its parameter. The value is ignored for an intent
/// without a parameter.
std::string intentURL(const Intent& intent, std::string_view value = {});
/// The sentence that an assistant speaks when it runs the intent.
std::string intentDialog(const Intent& intent, std::string_view value = {});

} // namespace kova
