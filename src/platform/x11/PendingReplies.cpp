#include "platform/x11/PendingReplies.h"

#include <xcb/xcbext.h>

#include <utility>

namespace kova::x11 {

void PendingReplies::wait(const XConnection& connection) {
    for (; collected_ < requests_.size(); ++collected_) {
        xcb_generic_error_t* error = nullptr;
        requests_[collected_].reply.reset(xcb_wait_for_reply(connection.get(), requests_[collected_].sequence, &error));
        std::free(error);
    }
}

bool PendingReplies::collect(const XConnection& connection) {
    for (; collected_ < requests_.size(); ++collected_) {
        void* reply = nullptr;
        xcb_generic_error_t* error = nullptr;
        if (!xcb_poll_for_reply(connection.get(), requests_[collected_].sequence, &reply, &error)) return false;
        requests_[collected_].reply.reset(reply);
        std::free(error);
    }
    return true;
}

void PendingReplies::take() {
    auto requests = std::exchange(requests_, {});
    collected_ = 0;
    for (const Request& request : requests) request.handler(request.reply.get());
    if (!requests_.empty()) return;
    // Keeps the memory: the next batch will probably be as large.
    requests.clear();
    requests_ = std::move(requests);
}

} // namespace kova::x11
