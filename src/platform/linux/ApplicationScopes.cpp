#include "platform/linux/ApplicationScopes.h"

#include "support/Log.h"

#include <sdbus-c++/sdbus-c++.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <utility>

namespace kova {

namespace {

constexpr const char* kSystemd = "org.freedesktop.systemd1";
/// A launch that waited longer for the bus gets no scope: its process number may belong to another process by then.
constexpr Seconds kLongestWait{5};

std::string escaped(const std::string& text) {
    constexpr std::string_view kPlain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_.";
    std::string out;
    for (const char c : text) {
        if (kPlain.find(c) != std::string_view::npos) {
            out += c;
            continue;
        }
        std::array<char, 5> code{};
        std::snprintf(code.data(), code.size(), "\\x%02x", static_cast<unsigned>(static_cast<unsigned char>(c)));
        out += code.data();
    }
    return out;
}

} // namespace

std::string scopeName(const std::string& applicationIdentifier, pid_t process) {
    constexpr std::size_t kLongestIdentifier = 160; // the whole name may have 255 characters
    const std::string identifier = escaped(applicationIdentifier).substr(0, kLongestIdentifier);
    return "app-kova-" + identifier + "-" + std::to_string(process) + ".scope";
}

ApplicationScopes::ApplicationScopes(std::string busAddress, EventLoop& loop) :
    loop_(loop), bus_("session bus", std::move(busAddress), loop) {}

void ApplicationScopes::moveToOwnScope(pid_t process, const std::string& applicationIdentifier,
                                       const std::string& applicationName) {
    const Launched launched{process, applicationIdentifier, applicationName, loop_.uptime()};
    if (bus_.isConnected()) return requestScope(launched);
    pending_.push_back(launched);
    if (!std::exchange(isOpen_, true))
        bus_.open(
            {}, [this] { connected(); }, [] {});
}

void ApplicationScopes::connected() {
    for (const Launched& launched : std::exchange(pending_, {})) {
        if (loop_.uptime() - launched.launchedAt < kLongestWait) requestScope(launched);
    }
}

void ApplicationScopes::requestScope(const Launched& launched) {
    using Property = sdbus::Struct<std::string, sdbus::Variant>;
    using AuxiliaryUnit = sdbus::Struct<std::string, std::vector<Property>>;
    const std::vector<Property> properties = {
        {"PIDs", sdbus::Variant(std::vector<std::uint32_t>{static_cast<std::uint32_t>(launched.process)})},
        {"Description", sdbus::Variant(launched.name + ", launched by KOVA")},
        {"Slice", sdbus::Variant(std::string("app.slice"))},
        // systemd removes the unit even if it has failed.
        {"CollectMode", sdbus::Variant(std::string("inactive-or-failed"))}};
    const std::string name = scopeName(launched.identifier, launched.process);
    bus_.send(
        {kSystemd, "/org/freedesktop/systemd1", "org.freedesktop.systemd1.Manager", "StartTransientUnit"},
        [&](sdbus::MethodCall& call) {
            call << name << std::string("fail") << properties << std::vector<AuxiliaryUnit>{};
        },
        [name](sdbus::Message* reply) {
            if (!reply) log(LogLevel::detail, "no systemd scope was made: " + name);
        });
}

} // namespace kova
