// Platform interface to dialogs: messages, and questions that need a confirmation.
#pragma once

#include "support/Identifiers.h"

#include <functional>
#include <string>
#include <vector>

namespace kova {

/// An application that an alert is about.
struct AlertApplication {
    std::string name;          // one line
    BundleID bundleIdentifier; // empty when it is not known
    bool operator==(const AlertApplication&) const = default;
};

struct Alert {
    std::string title; // one line
    std::string text;  // may have several lines
    std::string confirmButton;
    std::string cancelButton;                     // empty for an alert that only informs
    std::vector<AlertApplication> applications{}; // listed below the text
    bool operator==(const Alert&) const = default;
};

/// The text, followed by an empty line and the applications' names, for dialogs that show text only.
inline std::string textWithApplications(const Alert& alert) {
    std::string text = alert.text;
    if (!alert.applications.empty()) text += '\n';
    for (const AlertApplication& each : alert.applications) text += '\n' + each.name;
    return text;
}

class AlertServicing {
  public:
    virtual ~AlertServicing() = default;
    /// Shows the user a message. Main thread; never waits.
    virtual void inform(const Alert& alert) = 0;
    /// Shows a warning with a question. `answer` is called at most once, on the main thread and after
    /// `confirm` has returned: true only if the user has confirmed, false where no question can be shown. Main thread;
    /// never waits.
    virtual void confirm(const Alert& alert, std::function<void(bool isConfirmed)> answer) = 0;
};

} // namespace kova
