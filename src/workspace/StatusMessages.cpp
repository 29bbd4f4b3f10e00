#include "workspace/StatusMessages.h"

namespace kova {

namespace {

constexpr Seconds kDuration{4};

} // namespace

void StatusMessages::show(const std::string& text) {
    showResult(text, addedByAction());
}

std::uint64_t StatusMessages::addedByAction() const {
    const std::uint64_t newest = undo_.newestNumber();
    return newestBefore_ && newest > *newestBefore_ ? newest : 0;
}

void StatusMessages::showResult(const std::string& text, std::uint64_t undoNumber) {
    undoNumber_ = undoNumber;
    state_.lastActionMessage.set(text);
    ++serial_;
    if (end_) end_->cancel();
    end_ = queue_.after(kDuration, lifetime_.guard([this] { state_.lastActionMessage.set(std::nullopt); }));
}

} // namespace kova
