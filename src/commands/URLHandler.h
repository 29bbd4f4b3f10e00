// Carries out URLs, which any program can open in any number.
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
    /// Both outlive the handler.
    URLHandler(WorkspaceController& workspace, MainQueue& queue) : workspace_(workspace), queue_(queue) {}

    enum class Verdict { done, refused, notUnderstood, dropped };
    struct Answer {
        Verdict verdict = Verdict::done;
        std::string message; // the result, or why it was refused; may be empty
    };
    /// Carries out the URL's action; an unknown URL is ignored. URLs beyond 20 within a second are dropped, with a line
    /// in the log.
    Answer handle(std::string_view url);

  private:
    bool isOneTooMany();
    Outcome run(const URLAction& action);

    WorkspaceController& workspace_;
    MainQueue& queue_;
    std::deque<Seconds> handledAt_; // uptimes within the last second
    std::size_t dropped_ = 0;       // since the last line in the log
    Lifetime lifetime_;
};

} // namespace kova
