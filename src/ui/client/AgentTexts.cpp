#include "ui/client/AgentTexts.h"

#include "ui/client/AgentTextPatterns.h"

#include <QCoreApplication>

#include <string_view>

namespace kova::ui {

namespace {

/// Whether the title of the menu entry is the name of a scene, a layout or a tile.
bool hasNameAsTitle(const MenuItem& item) {
    const auto idStartsWith = [&](std::string_view prefix) { return item.id.starts_with(prefix); };
    return idStartsWith("scene.") || idStartsWith("layout.") || idStartsWith("place.");
}

} // namespace

QString inUsersLanguage(const std::string& text) {
    for (const char* pattern : kAgentTexts) {
        const auto names = namesIn(text, pattern);
        if (!names) continue;
        const QString translated = QCoreApplication::translate("AgentTexts", pattern);
        const auto name = [&](std::size_t index) { return QString::fromStdString(names->at(index)); };
        if (names->empty()) return translated;
        return names->size() == 1 ? translated.arg(name(0)) : translated.arg(name(0), name(1));
    }
    return QString::fromStdString(text);
}

QString titleInUsersLanguage(const MenuItem& item) {
    return hasNameAsTitle(item) ? QString::fromStdString(item.title) : inUsersLanguage(item.title);
}

} // namespace kova::ui
