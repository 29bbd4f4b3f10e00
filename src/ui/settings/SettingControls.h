// Controls that the panes of the settings share. Main thread only.
#pragma once

#include "ui/windows/FieldError.h"

#include <QCheckBox>
#include <QLabel>
#include <QVBoxLayout>
#include <QWidget>

#include <functional>
#include <set>
#include <string>

namespace kova::ui {

/// Calls `show` with the current state, if it has arrived, and after each change of one of the sections, as long as
/// `context` exists. If `show` throws a JSON exception, a warning is printed and the update is ignored.
void followSections(AgentSession& agent, QObject* context, std::set<std::string> sections,
                    std::function<void(const nlohmann::json& state)> show);

/// The member of the state; null if absent.
const nlohmann::json& sectionOf(const nlohmann::json& state, const char* name);

/// A label that explains a control, in the muted text color, wrapped.
QLabel* explanation(const QString& text, QWidget* parent = nullptr);

struct AgentRequest {
    std::string method;
    nlohmann::json parameters = nlohmann::json::object();
};

/// A check box for a setting, with an explanation and the agent's last error below it.
class SettingSwitch final : public QWidget {
    Q_OBJECT

  public:
    /// `request` builds the request to send when the user switches the setting.
    SettingSwitch(AgentSession& agent, const QString& title, const QString& text,
                  std::function<AgentRequest(bool isOn)> request, QWidget* parent = nullptr);

    /// Shows the state without sending a request.
    void showState(bool isOn);
    void setText(const QString& text);
    QCheckBox& box() { return *box_; }
    FieldError& error() { return *error_; }

  private:
    AgentSession& agent_;
    std::function<AgentRequest(bool isOn)> request_;
    QCheckBox* box_;
    QLabel* text_;
    FieldError* error_;
    bool isOn_ = false;
};

} // namespace kova::ui
