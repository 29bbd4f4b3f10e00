#include "platform/x11/HiddenWindows.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>

namespace kova::x11 {

namespace {

/// How long a window manager may take to iconify a window; one that has not by then will not.
constexpr Seconds kPatience{1.0};
/// How long a window may be missing, or on its way back, until it is given up.
constexpr Seconds kPatienceForReturn{2.5};

/// It can have been away and be back between two looks.
bool hasLeft(const ClientWindow& client, const WindowModel& model) {
    return client.hasLeft || (!model.isShown(client) && !client.isMapAsked);
}

constexpr const char* word(TakenAway how) {
    return how == TakenAway::byHiding ? "hidden" : "unmapped";
}

} // namespace

std::vector<HiddenWindow> HiddenWindows::readFile() const {
    std::ifstream file(path_);
    if (path_.empty() || !file) return {};
    const auto document = nlohmann::json::parse(file, nullptr, false);
    const auto list = document.is_object() ? document.find("windows") : document.end();
    if (!document.is_object() || list == document.end() || !list->is_array()) return {};
    std::vector<HiddenWindow> windows;
    for (const auto& entry : *list) {
        if (!entry.is_object()) continue;
        const auto window = entry.find("window"), process = entry.find("process"), how = entry.find("how");
        if (window == entry.end() || process == entry.end() || !window->is_number_unsigned() ||
            !process->is_number_integer()) {
            continue;
        }
        HiddenWindow hidden;
        hidden.window = window->get<xcb_window_t>();
        hidden.processIdentifier = process->get<pid_t>();
        if (how != entry.end() && *how == word(TakenAway::byUnmapping)) hidden.how = TakenAway::byUnmapping;
        windows.push_back(hidden);
    }
    return windows;
}

void HiddenWindows::add(const std::vector<HiddenWindow>& windows) {
    if (windows.empty()) return;
    for (const HiddenWindow& added : windows) {
        std::erase_if(windows_, [&](const HiddenWindow& known) { return known.window == added.window; });
        windows_.push_back(added);
    }
    writeFile();
}

template <class Condition>
void HiddenWindows::removeWhere(Condition condition) {
    if (std::erase_if(windows_, condition) > 0) writeFile();
}

std::vector<xcb_window_t> HiddenWindows::takeHidden(pid_t processIdentifier, Seconds now) {
    std::vector<xcb_window_t> taken;
    for (HiddenWindow& hidden : windows_) {
        if (hidden.processIdentifier != processIdentifier || !holds(hidden.window)) continue;
        hidden.isReturning = true;
        hidden.since = now;
        taken.push_back(hidden.window);
    }
    return taken;
}

void HiddenWindows::markReturning(xcb_window_t window, Seconds now) {
    for (HiddenWindow& hidden : windows_) {
        if (hidden.window != window) continue;
        hidden.isReturning = true;
        hidden.since = now;
    }
}

void HiddenWindows::remove(xcb_window_t window) {
    removeWhere([&](const HiddenWindow& hidden) { return hidden.window == window; });
}

std::vector<xcb_window_t> HiddenWindows::takeAll(Seconds now) {
    std::vector<xcb_window_t> taken;
    for (HiddenWindow& hidden : windows_) {
        hidden.isReturning = true;
        hidden.since = now;
        taken.push_back(hidden.window);
    }
    return taken;
}

bool HiddenWindows::holds(xcb_window_t window) const {
    return std::ranges::any_of(windows_, [&](const HiddenWindow& hidden) {
        return hidden.window == window && !hidden.isReturning && hidden.how == TakenAway::byHiding;
    });
}

bool HiddenWindows::isApplicationHidden(pid_t processIdentifier, const WindowModel& model) const {
    const bool tookAny = std::ranges::any_of(windows_, [&](const HiddenWindow& hidden) {
        return hidden.processIdentifier == processIdentifier && !hidden.isReturning &&
               hidden.how == TakenAway::byHiding;
    });
    if (!tookAny) return false;
    return std::ranges::none_of(model.clientOrder(), [&](xcb_window_t window) {
        const ClientWindow* client = model.client(window);
        return client && client->processIdentifier == processIdentifier && client->isManaged() &&
               model.isShown(*client) && !holds(window);
    });
}

bool HiddenWindows::isBehind(const WindowModel& model, Seconds now) const {
    return std::ranges::any_of(windows_, [&](const HiddenWindow& hidden) {
        const ClientWindow* client = model.client(hidden.window);
        if (!client || hidden.isReturning) return true;
        const bool isShown = model.isShown(*client);
        const bool isGone = hidden.hasLeftScreen || hasLeft(*client, model);
        return isGone != hidden.hasLeftScreen || (isShown && (isGone || now - hidden.since > kPatience));
    });
}

void HiddenWindows::followModel(const WindowModel& model, Seconds now) {
    if (!isBehind(model, now)) return;
    const auto isShown = [&](const HiddenWindow& hidden) {
        const ClientWindow* client = model.client(hidden.window);
        return client && model.isShown(*client);
    };
    for (HiddenWindow& hidden : windows_) {
        const ClientWindow* client = model.client(hidden.window);
        hidden.hasLeftScreen |= !client || hasLeft(*client, model);
        if (client) {
            hidden.missingSince.reset();
        } else if (!hidden.missingSince) {
            hidden.missingSince = now;
        }
    }
    // What is on the screen between two managers may be put away again by the one that comes.
    if (model.isSettling()) return;
    removeWhere([&](const HiddenWindow& hidden) {
        if (hidden.missingSince) return now - *hidden.missingSince > kPatienceForReturn;
        const ClientWindow* client = model.client(hidden.window);
        const bool isLeavingFirst = client->returnsOnceGone && now - hidden.since < kPatience;
        if (hidden.isReturning) {
            return (isShown(hidden) && !isLeavingFirst) || now - hidden.since > kPatienceForReturn;
        }
        return isShown(hidden) && (hidden.hasLeftScreen || now - hidden.since > kPatience);
    });
}

void HiddenWindows::writeFile() const {
    if (path_.empty()) return;
    if (windows_.empty()) {
        std::remove(path_.c_str());
        return;
    }
    auto list = nlohmann::json::array();
    for (const HiddenWindow& hidden : windows_) {
        list.push_back({{"window", hidden.window}, {"process", hidden.processIdentifier}, {"how", word(hidden.how)}});
    }
    const std::string aside = path_ + ".new";
    {
        std::ofstream file(aside, std::ios::trunc);
        file << nlohmann::json{{"windows", list}}.dump(2) << '\n';
        if (!file.flush()) return;
    }
    std::rename(aside.c_str(), path_.c_str());
}

} // namespace kova::x11
