// The controls of the panes of the settings. Main thread only.
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

/// Calls `show` with the current state, if any, and after each change of one of the sections, as long as `context`
/// lives. If `show` throws on a state, that is reported and the update is dropped.
void followSections(AgentSession& agent, QObject* context, std::set<std::string> sections,
                    std::function<void(const nlohmann::json& state)> show);

/// The member of the state, null when it is not there.
const nlohmann::json& sectionOf(const nlohmann::json& state, const char* name);

/// Text that explains a control: smaller room, muted by the palette, wrapped.
QLabel* explanation(const QString& text, QWidget* parent = nullptr);

struct AgentRequest {
    std::string method;
    nlohmann::json parameters = nlohmann::json::object();
};

/// A check box with a text that explains it and, below, what the agent refused.
class SettingSwitch final : public QWidget {
    Q_OBJECT

  public:
    /// `request` builds the request to send when the user switches.
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
