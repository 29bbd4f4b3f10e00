#include "platform/x11/PendingReplies.h"

#include <xcb/xcbext.h>

#include <utility>

namespace kova::x11 {

void PendingReplies::wait(const XConnection& connection) {
    for (; collected_ < asked_.size(); ++collected_) {
        xcb_generic_error_t* error = nullptr;
        asked_[collected_].reply.reset(xcb_wait_for_reply(connection.get(), asked_[collected_].sequence, &error));
        std::free(error);
    }
}

bool PendingReplies::collect(const XConnection& connection) {
    for (; collected_ < asked_.size(); ++collected_) {
        void* reply = nullptr;
        xcb_generic_error_t* error = nullptr;
        if (!xcb_poll_for_reply(connection.get(), asked_[collected_].sequence, &reply, &error)) return false;
        asked_[collected_].reply.reset(reply);
        std::free(error);
    }
    return true;
}

void PendingReplies::take() {
    auto asked = std::exchange(asked_, {});
    collected_ = 0;
    for (const Asked& question : asked) question.taker(question.reply.get());
    if (!asked_.empty()) return;
    // Keeps the memory: the next batch is likely to be as large.
    asked.clear();
    asked_ = std::move(asked);
}

} // namespace kova::x11
