// Performs the actions of `kova://` URLs. Their rate is limited, since any program can open any number of them.
#pragma once

#include "commands/URLActions.h"
#include "support/Lifetime.h"
#include "support/MainQueue.h"
#include "workspace/Outcome.h"

#include <deque>
#include <string>

namespace kova {

class WorkspaceController;

/// Main thread only.
class URLHandler {
  public:
    /// Both arguments outlive the handler.
    URLHandler(WorkspaceController& workspace, MainQueue& queue) : workspace_(workspace), queue_(queue) {}

    enum class Verdict { done, refused, notUnderstood, dropped };
    struct Response {
        Verdict verdict = Verdict::done;
        std::string message; // the result, or why the action was refused; may be empty
    };
    /// Performs the URL's action. A URL that names no action is `notUnderstood`. URLs beyond 20 within a second are
    /// `dropped`, with one line in the log for all of them.
    Response handle(std::string_view url);

  private:
    bool exceedsRateLimit(); // if false, the URL has been counted
    Outcome run(const URLAction& action);

    WorkspaceController& workspace_;
    MainQueue& queue_;
    std::deque<Seconds> handledAt_; // uptimes within the last second
    std::size_t dropped_ = 0;       // since the last line in the log
    Lifetime lifetime_;
};

} // namespace kova
