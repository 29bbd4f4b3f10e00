#include "ui/client/AgentTexts.h"

#include <QCoreApplication>
#include <QStringList>

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

namespace kova::ui {

namespace {

/// The agent's texts, as it writes them. A text is translated by the first one that it fits.
constexpr std::array kPatterns{
    // Titles of the menu
    QT_TRANSLATE_NOOP("AgentTexts", "Allow Accessibility Access…"),
    QT_TRANSLATE_NOOP("AgentTexts", "Arrange Windows into Zones"),
    QT_TRANSLATE_NOOP("AgentTexts", "Undo Window Action"),
    QT_TRANSLATE_NOOP("AgentTexts", "Focus Mode"),
    QT_TRANSLATE_NOOP("AgentTexts", "Next Window in Current Zone"),
    QT_TRANSLATE_NOOP("AgentTexts", "Previous Window in Current Zone"),
    QT_TRANSLATE_NOOP("AgentTexts", "Float Window"),
    QT_TRANSLATE_NOOP("AgentTexts", "Focus"),
    QT_TRANSLATE_NOOP("AgentTexts", "Focus Left"),
    QT_TRANSLATE_NOOP("AgentTexts", "Focus Right"),
    QT_TRANSLATE_NOOP("AgentTexts", "Focus Up"),
    QT_TRANSLATE_NOOP("AgentTexts", "Focus Down"),
    QT_TRANSLATE_NOOP("AgentTexts", "Focus Next Display"),
    QT_TRANSLATE_NOOP("AgentTexts", "Focus Previous Display"),
    QT_TRANSLATE_NOOP("AgentTexts", "Move"),
    QT_TRANSLATE_NOOP("AgentTexts", "Move Window Left"),
    QT_TRANSLATE_NOOP("AgentTexts", "Move Window Right"),
    QT_TRANSLATE_NOOP("AgentTexts", "Move Window Up"),
    QT_TRANSLATE_NOOP("AgentTexts", "Move Window Down"),
    QT_TRANSLATE_NOOP("AgentTexts", "Move Window to Next Display"),
    QT_TRANSLATE_NOOP("AgentTexts", "Move Window to Previous Display"),
    QT_TRANSLATE_NOOP("AgentTexts", "Swap"),
    QT_TRANSLATE_NOOP("AgentTexts", "Swap with Window Left"),
    QT_TRANSLATE_NOOP("AgentTexts", "Swap with Window Right"),
    QT_TRANSLATE_NOOP("AgentTexts", "Swap with Window Above"),
    QT_TRANSLATE_NOOP("AgentTexts", "Swap with Window Below"),
    QT_TRANSLATE_NOOP("AgentTexts", "Place Window in Zone"),
    QT_TRANSLATE_NOOP("AgentTexts", "Layout on Current Display"),
    QT_TRANSLATE_NOOP("AgentTexts", "Layout on %1"),
    QT_TRANSLATE_NOOP("AgentTexts", "Next Layout on Current Display"),
    QT_TRANSLATE_NOOP("AgentTexts", "Previous Layout on Current Display"),
    QT_TRANSLATE_NOOP("AgentTexts", "Reset Layout Sizes on Current Display"),
    QT_TRANSLATE_NOOP("AgentTexts", "Scenes"),
    QT_TRANSLATE_NOOP("AgentTexts", "Capture Workspace as Scene"),
    QT_TRANSLATE_NOOP("AgentTexts", "Continuously apply window rules"),
    QT_TRANSLATE_NOOP("AgentTexts", "Rules are explainable and run only when continuous management is enabled."),
    QT_TRANSLATE_NOOP("AgentTexts", "Use Theme Background"),
    QT_TRANSLATE_NOOP("AgentTexts", "Settings"),
    QT_TRANSLATE_NOOP("AgentTexts", "Introduction to KOVA"),
    QT_TRANSLATE_NOOP("AgentTexts", "Quick Settings"),
    QT_TRANSLATE_NOOP("AgentTexts", "Automatically arrange after launch"),
    QT_TRANSLATE_NOOP("AgentTexts", "Show Tile Backgrounds"),
    QT_TRANSLATE_NOOP("AgentTexts", "Bring Next Window Forward"),
    QT_TRANSLATE_NOOP("AgentTexts", "Start at Login"),
    QT_TRANSLATE_NOOP("AgentTexts", "Hide the Dock Automatically"),
    QT_TRANSLATE_NOOP("AgentTexts", "Check for Updates Automatically"),
    QT_TRANSLATE_NOOP("AgentTexts", "Download Updates Automatically"),
    QT_TRANSLATE_NOOP("AgentTexts", "Export Scenes and Rules…"),
    QT_TRANSLATE_NOOP("AgentTexts", "Import Scenes and Rules…"),
    QT_TRANSLATE_NOOP("AgentTexts", "Portable JSON · local-first"),
    QT_TRANSLATE_NOOP("AgentTexts", "Pause KOVA"),
    QT_TRANSLATE_NOOP("AgentTexts", "Force Quit All Open Applications…"),
    QT_TRANSLATE_NOOP("AgentTexts", "Recheck Accessibility"),
    QT_TRANSLATE_NOOP("AgentTexts", "Check for Updates…"),
    QT_TRANSLATE_NOOP("AgentTexts", "Quit KOVA"),
    // Messages
    QT_TRANSLATE_NOOP("AgentTexts", "Windows arranged into zones — Undo is available"),
    QT_TRANSLATE_NOOP("AgentTexts", "There is no window to arrange"),
    QT_TRANSLATE_NOOP("AgentTexts", "Last window action undone"),
    QT_TRANSLATE_NOOP("AgentTexts", "There is nothing to undo"),
    QT_TRANSLATE_NOOP("AgentTexts", "Accessibility permission is required"),
    QT_TRANSLATE_NOOP("AgentTexts", "No managed window has the focus"),
    QT_TRANSLATE_NOOP("AgentTexts", "No display is connected"),
    QT_TRANSLATE_NOOP("AgentTexts", "KOVA is paused; “kova resume” goes on"),
    QT_TRANSLATE_NOOP("AgentTexts", "Focus Mode closed — workspace restored"),
    QT_TRANSLATE_NOOP("AgentTexts", "Focus Mode closed because its window is no longer available"),
    QT_TRANSLATE_NOOP("AgentTexts", "Focus Mode — %1 owns this display"),
    QT_TRANSLATE_NOOP("AgentTexts", "This display already uses a single-pane layout"),
    QT_TRANSLATE_NOOP("AgentTexts", "No occupied zone left of the focused window"),
    QT_TRANSLATE_NOOP("AgentTexts", "No occupied zone right of the focused window"),
    QT_TRANSLATE_NOOP("AgentTexts", "No occupied zone up of the focused window"),
    QT_TRANSLATE_NOOP("AgentTexts", "No occupied zone down of the focused window"),
    QT_TRANSLATE_NOOP("AgentTexts", "No zone left of the focused window"),
    QT_TRANSLATE_NOOP("AgentTexts", "No zone right of the focused window"),
    QT_TRANSLATE_NOOP("AgentTexts", "No zone up of the focused window"),
    QT_TRANSLATE_NOOP("AgentTexts", "No zone down of the focused window"),
    QT_TRANSLATE_NOOP("AgentTexts", "Moved %1 to the left zone"),
    QT_TRANSLATE_NOOP("AgentTexts", "Moved %1 to the right zone"),
    QT_TRANSLATE_NOOP("AgentTexts", "Moved %1 to the up zone"),
    QT_TRANSLATE_NOOP("AgentTexts", "Moved %1 to the down zone"),
    QT_TRANSLATE_NOOP("AgentTexts", "Moved %1 to %2"),
    QT_TRANSLATE_NOOP("AgentTexts", "Swapped %1 and %2"),
    QT_TRANSLATE_NOOP("AgentTexts", "Focused %1"),
    QT_TRANSLATE_NOOP("AgentTexts", "%1 is now active"),
    QT_TRANSLATE_NOOP("AgentTexts", "%1 floats until the next arrangement"),
    QT_TRANSLATE_NOOP("AgentTexts", "%1 floats until it is put into a tile"),
    QT_TRANSLATE_NOOP("AgentTexts", "%1 floats already"),
    QT_TRANSLATE_NOOP("AgentTexts", "Rule added for %1"),
    QT_TRANSLATE_NOOP("AgentTexts", "Rule “%1” placed %2"),
    QT_TRANSLATE_NOOP("AgentTexts", "Scene “%1” captured"),
    QT_TRANSLATE_NOOP("AgentTexts", "Scene “%1” deleted"),
    QT_TRANSLATE_NOOP("AgentTexts", "Scene “%1” restored to the list"),
    QT_TRANSLATE_NOOP("AgentTexts", "Scene “%1” restored"),
    QT_TRANSLATE_NOOP("AgentTexts", "Scene “%1” renamed to “%2”"),
    QT_TRANSLATE_NOOP("AgentTexts", "Scene fully restored"),
    QT_TRANSLATE_NOOP("AgentTexts", "Restoring Scene “%1” — waiting for %2 app window"),
    QT_TRANSLATE_NOOP("AgentTexts", "Restoring Scene “%1” — waiting for %2 app windows"),
    QT_TRANSLATE_NOOP("AgentTexts", "Scene restored — %1 app window was unavailable"),
    QT_TRANSLATE_NOOP("AgentTexts", "Scene restored — %1 app windows were unavailable"),
    QT_TRANSLATE_NOOP("AgentTexts", "Layout sizes reset on %1"),
    QT_TRANSLATE_NOOP("AgentTexts", "Imported %1 scenes and %2 rules"),
    QT_TRANSLATE_NOOP("AgentTexts", "Quit requested for %1"),
    QT_TRANSLATE_NOOP("AgentTexts", "Force quit requested for %1"),
    QT_TRANSLATE_NOOP("AgentTexts", "No open applications were force quit"),
    QT_TRANSLATE_NOOP("AgentTexts",
                      "%1 did not fit in the selected tile, so KOVA automatically claimed %2 additional tiles"),
    // Alerts
    QT_TRANSLATE_NOOP("AgentTexts", "No Open Applications"),
    QT_TRANSLATE_NOOP("AgentTexts",
                      "There are no regular applications to close. KOVA and Finder are always kept open."),
    QT_TRANSLATE_NOOP("AgentTexts", "Force Quit All Open Applications?"),
    QT_TRANSLATE_NOOP("AgentTexts", "This immediately closes %1 applications. Unsaved changes will be lost. KOVA and "
                                    "Finder will stay open."),
    QT_TRANSLATE_NOOP("AgentTexts", "Force Quit All"),
    QT_TRANSLATE_NOOP("AgentTexts", "Cancel"),
};

/// What stands in the text for %1 and %2 of the pattern, empty if it has none. Absent if the text does not fit, or fits
/// in several ways.
std::optional<QStringList> namesIn(const QString& text, const QString& pattern) {
    const auto first = pattern.indexOf(QStringLiteral("%1")), second = pattern.indexOf(QStringLiteral("%2"));
    if (first < 0) return text == pattern ? std::optional(QStringList()) : std::nullopt;
    const QString head = pattern.left(first), tail = pattern.mid(std::max(first, second) + 2);
    if (text.size() <= head.size() + tail.size() || !text.startsWith(head) || !text.endsWith(tail)) return std::nullopt;
    const QString names = text.mid(head.size(), text.size() - head.size() - tail.size());
    if (second < 0) return QStringList{names};
    const QString between = pattern.mid(first + 2, second - first - 2);
    const auto at = names.indexOf(between);
    if (at <= 0 || at != names.lastIndexOf(between) || at + between.size() == names.size()) return std::nullopt;
    return QStringList{names.left(at), names.mid(at + between.size())};
}

/// By its id: the titles of these entries are names.
bool isNamedByUser(const MenuItem& item) {
    const auto isOf = [&](std::string_view prefix) { return item.id.starts_with(prefix); };
    return isOf("scene.") || isOf("layout.") || isOf("place.");
}

} // namespace

QString inUsersLanguage(const std::string& text) {
    const QString english = QString::fromStdString(text);
    for (const char* pattern : kPatterns) {
        const auto names = namesIn(english, QString::fromUtf8(pattern));
        if (!names) continue;
        const QString translated = QCoreApplication::translate("AgentTexts", pattern);
        if (names->isEmpty()) return translated;
        return names->size() == 1 ? translated.arg(names->at(0)) : translated.arg(names->at(0), names->at(1));
    }
    return english;
}

QString titleInUsersLanguage(const MenuItem& item) {
    return isNamedByUser(item) ? QString::fromStdString(item.title) : inUsersLanguage(item.title);
}

} // namespace kova::ui
