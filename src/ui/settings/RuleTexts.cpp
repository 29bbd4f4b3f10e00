#include "ui/settings/RuleTexts.h"

#include "ui/windows/JsonText.h"

#include <QStringList>

#include <nlohmann/json.hpp>

#include <algorithm>

namespace kova::ui {

using nlohmann::json;

QString RuleTexts::action(const json& rule) {
    const QString disposition = memberText(rule, "disposition");
    if (disposition == QLatin1String("tile"))
        return tr("Tile %1").arg(memberText(rule, rule.contains("slotName") ? "slotName" : "slot"));
    return disposition == QLatin1String("float") ? tr("Float") : tr("Ignore");
}

QString RuleTexts::criterion(const json& rule) {
    QStringList parts;
    for (const char* key : {"applicationName", "bundleIdentifier"}) {
        if (const QString text = memberText(rule, key); !text.isEmpty()) parts << text;
    }
    if (const QString title = memberText(rule, "title"); !title.isEmpty()) parts << tr("“%1” in the title").arg(title);
    return parts.join(QStringLiteral(", "));
}

QString RuleTexts::window(const json& window) {
    const QString application = memberText(window, "application"), title = memberText(window, "title");
    return title.isEmpty() || title == application ? application : tr("%1 – %2").arg(application, title);
}

QString RuleTexts::windows(const json& rule) {
    const json windows = rule.value("windows", json());
    if (!windows.is_array()) return tr("Not known: there are too many rules.");
    if (windows.empty()) return tr("No open window matches now.");
    QStringList lines;
    for (const json& each : windows) {
        const QString text = window(each);
        lines << (each.value("decides", true) ? text : tr("%1 (an earlier rule decides)").arg(text));
    }
    return lines.join(u'\n');
}

QString RuleTexts::windowCount(const json& rule) {
    const json windows = rule.value("windows", json());
    if (!windows.is_array()) return QStringLiteral("–");
    return QString::number(
        std::ranges::count_if(windows, [](const json& each) { return each.value("decides", true); }));
}

} // namespace kova::ui
