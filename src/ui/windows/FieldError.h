// Sends requests for the controls of windows, and shows the errors. Main thread only.
#pragma once

#include "ui/client/AgentSession.h"

#include <QLabel>

#include <functional>
#include <string>

namespace kova::ui {

/// The line below a control that shows why the agent refused the control's request. Hidden while empty.
class FieldError : public QLabel {
    Q_OBJECT

  public:
    explicit FieldError(QWidget* parent = nullptr);
    void showReason(const QString& reason);
    void clear() { showReason({}); }
};

struct Reactions {
    std::function<void(const nlohmann::json& result)> done{};
    std::function<void()> refused{}; // called after the reason was shown, to reset the control
};

/// Sends the request and shows its error in `error`, or clears `error` on success. The response is ignored if `error`
/// has been destroyed by then.
void callFor(FieldError& error, AgentSession& agent, const std::string& method,
             nlohmann::json parameters = nlohmann::json::object(), Reactions reactions = {});

} // namespace kova::ui
