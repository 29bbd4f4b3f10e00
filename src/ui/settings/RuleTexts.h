// Rules as the settings show them.
#pragma once

#include <QCoreApplication>
#include <QString>

#include <nlohmann/json_fwd.hpp>

namespace kova::ui {

class RuleTexts {
    Q_DECLARE_TR_FUNCTIONS(kova::ui::RuleTexts)

  public:
    /// The action of a rule, from its member `disposition` and, for “tile”, `slot`.
    static QString action(const nlohmann::json& rule);
    /// Which windows it is for.
    static QString criterion(const nlohmann::json& rule);
    /// Application and title of an open window.
    static QString window(const nlohmann::json& window);
    /// The open windows for which the rule decides, and those that an earlier rule takes from it, a line each.
    static QString windows(const nlohmann::json& rule);
    /// How many windows it decides for; a dash where that is not known.
    static QString windowCount(const nlohmann::json& rule);
};

} // namespace kova::ui
