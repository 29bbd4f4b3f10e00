// Platform interface to dialogs: messages, and questions that need a confirmation.
#pragma once

#include <functional>
#include <string>

namespace kova {

struct Alert {
    std::string title; // one line
    std::string text;  // may have several lines
    std::string confirmButton;
    std::string cancelButton; // empty for an alert that only informs
    bool operator==(const Alert&) const = default;
};

class AlertServicing {
  public:
    virtual ~AlertServicing() = default;
    /// Shows the user a message. Main thread; never waits.
    virtual void inform(const Alert& alert) = 0;
    /// Shows a warning with a question. `answer` is called at most once, on the main thread and after this has
    /// returned: true only if the user has confirmed, false where no question can be shown. Main thread; never waits.
    virtual void confirm(const Alert& alert, std::function<void(bool isConfirmed)> answer) = 0;
};

/// For sessions without dialogs.
class NullAlerts final : public AlertServicing {
  public:
    void inform(const Alert&) override {}
    /// Never confirmed, so `answer` is never called.
    void confirm(const Alert&, std::function<void(bool)>) override {}
};

} // namespace kova
