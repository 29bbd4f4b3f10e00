// Carries out what URLs ask for. They come from any program, in any number at a time.
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
        std::string message; // of what was done, or why it was refused; empty when there is nothing to say
    };
    /// Runs what the URL asks for, and says nothing about one that asks for nothing. More than 20 within a second are
    /// too many; what comes above that is dropped, which the log tells.
    Answer handle(std::string_view url);

  private:
    bool isOneTooMany();
    Outcome run(const URLAction& action);

    WorkspaceController& workspace_;
    MainQueue& queue_;
    std::deque<Seconds> handledAt_; // uptimes within the last second
    std::size_t dropped_ = 0;       // since the log was told
    Lifetime lifetime_;
};

} // namespace kova
