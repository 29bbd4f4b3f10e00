#include "platform/linux/ScreenSavers.h"

#include <sdbus-c++/sdbus-c++.h>

#include <algorithm>
#include <array>
#include <utility>

namespace kova {

namespace {

/// Each is the name of a service and of its interface.
constexpr std::array<const char*, 5> kNames = {"org.freedesktop.ScreenSaver", "org.gnome.ScreenSaver",
                                               "org.cinnamon.ScreenSaver", "org.mate.ScreenSaver",
                                               "org.xfce.ScreenSaver"};

/// "/org/gnome/ScreenSaver"
std::string pathOf(const std::string& name) {
    std::string path = "/" + name;
    std::replace(path.begin(), path.end(), '.', '/');
    return path;
}

} // namespace

ScreenSavers::ScreenSavers(std::string busAddress, EventLoop& loop, Listener listener) :
    bus_("session bus", std::move(busAddress), loop), listener_(std::move(listener)) {
    bus_.open(
        signals(), [this] { queryAll(); },
        [this] {
            // Queries in progress get no reply any more.
            queried_.clear();
            outdated_.clear();
            for (const char* name : kNames) ownerLost(name);
        });
}

std::string ScreenSavers::description() const {
    if (!bus_.isConnected())
        return "There is no session bus (" + bus_.problem() + "): screen savers cannot be observed.";
    if (running_.empty()) return "No screen saver is running on the session bus.";
    std::string names;
    for (const std::string& name : running_) names += (names.empty() ? "" : ", ") + name;
    return names + " reports when it hides the screen.";
}

std::vector<BusSignal> ScreenSavers::signals() {
    std::vector<BusSignal> all;
    for (const std::string name : kNames) {
        all.push_back({name, "interface='" + name + "',member='ActiveChanged'", [this, name](sdbus::Message& message) {
                           bool isActive = false;
                           message >> isActive;
                           running_.insert(name);
                           listener_(name, isActive);
                           queryUnlessPending(name);
                       }});
        all.push_back(ownerChange(name, [this, name](const std::string& owner) {
            ownerLost(name); // the state of the previous owner does not apply to the new one
            if (!owner.empty()) queryUnlessPending(name);
        }));
    }
    return all;
}

void ScreenSavers::queryAll() {
    for (const std::string name : kNames) {
        // A query of the state would start a screen saver that does not run.
        bus_.queryOwner(name, [this, name](const std::string& owner) {
            if (!owner.empty()) queryUnlessPending(name);
        });
    }
}

/// Sends one query at a time; a signal during a query leads to another query afterwards.
void ScreenSavers::queryUnlessPending(const std::string& name) {
    if (!queried_.insert(name).second) {
        outdated_.insert(name);
        return;
    }
    // The oldest of these services also uses a short path.
    queryState(name, pathOf(name), "/ScreenSaver");
}

void ScreenSavers::queryState(const std::string& name, const std::string& path, const std::string& fallbackPath) {
    bus_.call({name, path, name, "GetActive"}, MessageBus::Words{}, [this, name, fallbackPath](sdbus::Message* reply) {
        const bool isNewest = !outdated_.contains(name) && bus_.hasOwner(name);
        if (reply && isNewest) {
            bool isActive = false;
            *reply >> isActive;
            running_.insert(name);
            listener_(name, isActive);
        } else if (!reply && !fallbackPath.empty()) {
            return queryState(name, fallbackPath, {});
        } else if (!reply && isNewest) {
            // The owner of the name is no screen saver. Its signal must not suspend the agent for good.
            ownerLost(name);
        }
        queried_.erase(name);
        if (outdated_.erase(name) > 0 && bus_.hasOwner(name)) queryUnlessPending(name);
    });
}

void ScreenSavers::ownerLost(const std::string& name) {
    running_.erase(name);
    listener_(name, false);
}

} // namespace kova
