// Shows status messages, each for 4 seconds or until the next one, and records whether undo would revert what the last
// message reports.
#pragma once

#include "support/Lifetime.h"
#include "support/MainQueue.h"
#include "workspace/UndoHistory.h"
#include "workspace/WorkspaceState.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace kova {

class StatusMessages {
  public:
    StatusMessages(MainQueue& queue, WorkspaceState& state, const UndoHistory& undo) :
        queue_(queue), state_(state), undo_(undo) {}

    /// Exists while an action is carried out. Undo reverts what the action's messages report if the action has added an
    /// entry to the history.
    class Action {
      public:
        explicit Action(StatusMessages& messages) : messages_(messages), outer_(messages.newestBefore_) {
            messages_.newestBefore_ = messages_.undo_.newestNumber();
        }
        ~Action() { messages_.newestBefore_ = outer_; }
        Action(const Action&) = delete;
        Action& operator=(const Action&) = delete;

      private:
        StatusMessages& messages_;
        std::optional<std::uint64_t> outer_;
    };

    void show(const std::string& text);
    /// The number of the history's entry that the present action has added; 0 if it has added none.
    std::uint64_t addedByAction() const;
    /// Shows the result of an earlier action. `undoNumber` is the number of the undo entry that the action added.
    void showResult(const std::string& text, std::uint64_t undoNumber);
    /// Whether undo would now revert what the last message reports.
    bool isUndoable() const { return undoNumber_ != 0 && undoNumber_ == undo_.newestNumber(); }
    /// Incremented with every message, even if the same text is shown again.
    std::uint64_t count() const { return serial_; }

  private:
    MainQueue& queue_;
    WorkspaceState& state_;
    const UndoHistory& undo_;
    std::uint64_t serial_ = 0;
    std::optional<std::uint64_t> newestBefore_; // the newest entry of the history before the present action
    std::uint64_t undoNumber_ = 0;       // of the entry that reverts what the last message reports; 0 if there is none
    std::shared_ptr<ScheduledWork> end_; // of the present message
    Lifetime lifetime_;
};

} // namespace kova
