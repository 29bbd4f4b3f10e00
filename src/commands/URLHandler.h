// Performs the actions of `kova://` URLs. The number of URLs in a second is limited, since any program can open any
// number of them.
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
    /// Performs the URL's action. The verdict is `notUnderstood` if the URL names no action, and `dropped` if 20 URLs
    /// were handled within the last second. The log gets one line for several dropped URLs.
    Response handle(std::string_view url);

  private:
    bool exceedsRateLimit(); // counts the URL
    Outcome run(const URLAction& action);

    WorkspaceController& workspace_;
    MainQueue& queue_;
    std::deque<Seconds> handledAt_; // uptimes within the last second
    std::size_t dropped_ = 0;       // since the last line in the log
    Lifetime lifetime_;
};

} // namespace kova
