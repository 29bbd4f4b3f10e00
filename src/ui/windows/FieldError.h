// Sends requests of a window's controls to the agent and shows refusals. Main thread only.
#pragma once

#include "ui/client/AgentSession.h"

#include <QLabel>

#include <functional>
#include <string>

namespace kova::ui {

/// The line below a control with the agent's reason for refusing its request. It takes no room while there is nothing
/// to say.
class FieldError : public QLabel {
    Q_OBJECT

  public:
    explicit FieldError(QWidget* parent = nullptr);
    void say(const QString& reason);
    void clear() { say({}); }
};

struct Reactions {
    std::function<void(const nlohmann::json& result)> done{};
    std::function<void()> refused{}; // after the reason was shown: to put the control back
};

/// Calls the method. `error` is cleared when it is carried out; nothing happens any more once `error` is destroyed.
void callFor(FieldError& error, AgentSession& agent, const std::string& method,
             nlohmann::json parameters = nlohmann::json::object(), Reactions reactions = {});

} // namespace kova::ui
