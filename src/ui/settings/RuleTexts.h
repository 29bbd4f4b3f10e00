// The texts by which the settings describe rules.
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
    /// The windows to which the rule applies.
    static QString criterion(const nlohmann::json& rule);
    /// Application and title of an open window.
    static QString window(const nlohmann::json& window);
    /// The open windows that match the rule, one per line; those for which an earlier rule decides are marked.
    static QString windows(const nlohmann::json& rule);
    /// The number of windows for which the rule decides; a dash if unknown.
    static QString windowCount(const nlohmann::json& rule);
};

} // namespace kova::ui
