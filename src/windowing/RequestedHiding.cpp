#include "windowing/RequestedHiding.h"

namespace kova {

bool RequestedHiding::isHidden(pid_t process, bool isReportedHidden, Seconds now) const {
    const auto found = requests_.find(process);
    const bool isRecent = found != requests_.end() && now - found->second.time < kReportingTime;
    return isRecent ? found->second.isHidden : isReportedHidden;
}

void RequestedHiding::note(pid_t process, Request request) {
    std::erase_if(requests_, [&](const auto& entry) { return request.time - entry.second.time >= kReportingTime; });
    requests_[process] = request;
}

} // namespace kova
