// The seam to dialogs: what the user has to read, and what has to be confirmed before it is done.
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
    /// Asks with a warning. The answer comes on the main thread, once, after this has returned, and maybe never: true
    /// only when the user has confirmed. Where the user cannot be asked the answer is no. Main thread; never waits.
    virtual void confirm(const Alert& alert, std::function<void(bool isConfirmed)> answer) = 0;
};

/// For sessions in which the user cannot be asked.
class NullAlerts final : public AlertServicing {
  public:
    void inform(const Alert&) override {}
    /// Never confirmed, so there is nothing to call back for.
    void confirm(const Alert&, std::function<void(bool)>) override {}
};

} // namespace kova
