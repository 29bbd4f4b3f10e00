// A message bus for one test, with simulated services: logind, a screen saver and systemd's user manager.
#pragma once

#include "tests/desktop/ChildProcess.h"
#include "tests/linux/TemporaryFolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sdbus-c++/sdbus-c++.h>
#include <unistd.h>

#include <array>
#include <map>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace kova {

class PrivateBus {
  public:
    static constexpr const char* kManager = "org.freedesktop.login1.Manager";
    static constexpr const char* kSession = "org.freedesktop.login1.Session";

    std::string address() const { return "unix:path=" + (folder_.path() / "bus").string(); }

    void start() {
        std::filesystem::remove(folder_.path() / "bus");
        // The daemon prints its address when clients can connect. `start` waits for the address, since the library
        // leaks memory at each failed attempt to connect.
        std::array<int, 2> ends{};
        ASSERT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
        daemon_ = testing::ChildProcess({"/usr/bin/dbus-daemon", "--session", "--nofork", "--address=" + address(),
                                         "--print-address=" + std::to_string(ends[1])},
                                        {"PATH=/usr/bin:/bin"}, ends[1]);
        close(ends[1]);
        char byte = 0;
        EXPECT_EQ(read(ends[0], &byte, 1), 1) << "the bus does not start";
        close(ends[0]);
        ASSERT_TRUE(connection_ = connect());
    }
    void stop() {
        connection_.reset();
        logind_.end();
        userManager_.end();
        daemon_.end();
    }
    void startLogind(const std::string& parameters = "{}") {
        logind_ = startMock("logind", parameters);
        waitForOwner("org.freedesktop.login1", true);
    }
    void stopLogind() {
        logind_.end();
        waitForOwner("org.freedesktop.login1", false);
    }
    void startScreenSaver() {
        screenSaver_ = startMock("gnome_screensaver", "{}");
        waitForOwner("org.gnome.ScreenSaver", true);
    }
    /// Starts a user manager that accepts every request for a scope.
    void startUserManager() {
        userManager_ = testing::ChildProcess({"/usr/bin/python3", "-m", "dbusmock", "org.freedesktop.systemd1",
                                              "/org/freedesktop/systemd1", "org.freedesktop.systemd1.Manager"},
                                             {"PATH=/usr/bin:/bin", "DBUS_SESSION_BUS_ADDRESS=" + address()});
        waitForOwner("org.freedesktop.systemd1", true);
        userManager()
            ->callMethod("AddMethod")
            .onInterface("org.freedesktop.DBus.Mock")
            .withArguments(std::string("org.freedesktop.systemd1.Manager"), std::string("StartTransientUnit"),
                           std::string("ssa(sv)a(sa(sv))"), std::string("o"),
                           std::string("ret = dbus.ObjectPath('/org/freedesktop/systemd1/job/1')"));
    }
    /// The arguments of each request for a scope that the user manager has got.
    std::vector<std::vector<sdbus::Variant>> scopes() {
        std::vector<sdbus::Struct<std::uint64_t, std::vector<sdbus::Variant>>> calls;
        userManager()
            ->callMethod("GetMethodCalls")
            .onInterface("org.freedesktop.DBus.Mock")
            .withArguments(std::string("StartTransientUnit"))
            .storeResultsTo(calls);
        std::vector<std::vector<sdbus::Variant>> scopes;
        for (const auto& call : calls) scopes.push_back(std::get<1>(call));
        return scopes;
    }
    void stopScreenSaver() { screenSaver_.end(); }
    void setScreenSaver(bool isActive) {
        sdbus::createProxy(*connection_, "org.gnome.ScreenSaver", "/org/gnome/ScreenSaver")
            ->callMethod("SetActive")
            .onInterface("org.gnome.ScreenSaver")
            .withArguments(isActive);
    }
    /// Starts a service that owns the name of a screen saver and signals that the screen saver is active. The service
    /// has no method for reading the state.
    void startScreenSaverWithoutState(const std::string& name) {
        screenSaver_ = testing::ChildProcess({"/usr/bin/python3", "-m", "dbusmock", name, "/", name},
                                             {"PATH=/usr/bin:/bin", "DBUS_SESSION_BUS_ADDRESS=" + address()});
        waitForOwner(name, true);
        sdbus::createProxy(*connection_, name, "/")
            ->callMethod("EmitSignal")
            .onInterface("org.freedesktop.DBus.Mock")
            .withArguments(name, std::string("ActiveChanged"), std::string("b"),
                           std::vector<sdbus::Variant>{sdbus::Variant(true)});
    }
    /// Sends a forged signal of the screen saver.
    void forgeScreenSaver(bool isActive) {
        forge("/org/gnome/ScreenSaver", "org.gnome.ScreenSaver", "ActiveChanged", isActive);
    }
    /// The unique bus name of the connection that sends the forged signals.
    std::string forgerName() const { return connection_->getUniqueName(); }
    /// Sends a forged signal of the bus, which says that the name has a new owner, or none if `owner` is empty.
    void forgeOwner(const std::string& name, const std::string& owner) {
        forge("/org/freedesktop/DBus", "org.freedesktop.DBus", "NameOwnerChanged", name, std::string(), owner);
    }
    /// Sends a forged signal from a connection that owns no service's name: first to all connections at once, then to
    /// each connection alone.
    template <class... Arguments>
    void forge(const std::string& path, const char* interface, const char* member, const Arguments&... arguments) {
        const auto object = sdbus::createObject(*connection_, path);
        const auto send = [&](const std::string& receiver) {
            auto signal = object->createSignal(interface, member);
            ((signal << arguments), ...);
            if (!receiver.empty()) signal.setDestination(receiver);
            signal.send();
        };
        send("");
        std::vector<std::string> names;
        sdbus::createProxy(*connection_, "org.freedesktop.DBus", "/org/freedesktop/DBus")
            ->callMethod("ListNames")
            .onInterface("org.freedesktop.DBus")
            .storeResultsTo(names);
        for (const std::string& name : names) {
            if (name.starts_with(':')) send(name);
        }
    }

    void addSession(const std::string& id, std::uint32_t user, const std::string& type) {
        std::string path;
        logind("")
            ->callMethod("AddSession")
            .onInterface("org.freedesktop.DBus.Mock")
            .withArguments(id, std::string("seat0"), user, std::string("user"), true)
            .storeResultsTo(path);
        set(id, "Type", sdbus::Variant(type));
    }
    void set(const std::string& session, const std::string& property, const sdbus::Variant& value) {
        logind("/session/" + session)
            ->callMethod("UpdateProperties")
            .onInterface("org.freedesktop.DBus.Mock")
            .withArguments(std::string(kSession), std::map<std::string, sdbus::Variant>{{property, value}});
    }
    void call(const std::string& session, const std::string& method) {
        logind("/session/" + session)->callMethod(method).onInterface(kSession);
    }
    void emit(const std::string& signal, const std::string& types, const std::vector<sdbus::Variant>& values) {
        logind("")
            ->callMethod("EmitSignal")
            .onInterface("org.freedesktop.DBus.Mock")
            .withArguments(std::string(kManager), signal, types, values);
    }

  private:
    template <class Condition>
    void waitFor(Condition condition) {
        for (int i = 0; i < 2000 && !condition(); ++i) std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    std::unique_ptr<sdbus::IConnection> connect() const {
        try {
            return sdbus::createSessionBusConnectionWithAddress(address());
        } catch (const sdbus::Error&) {
            return nullptr;
        }
    }
    testing::ChildProcess startMock(const std::string& service, const std::string& parameters) const {
        return testing::ChildProcess(
            {"/usr/bin/python3", "-m", "dbusmock", "-t", service, "-p", parameters},
            {"PATH=/usr/bin:/bin", "DBUS_SYSTEM_BUS_ADDRESS=" + address(), "DBUS_SESSION_BUS_ADDRESS=" + address()});
    }
    void waitForOwner(const std::string& name, bool expected) {
        const auto bus = sdbus::createProxy(*connection_, "org.freedesktop.DBus", "/org/freedesktop/DBus");
        waitFor([&] {
            bool isOwned = false;
            bus->callMethod("NameHasOwner")
                .onInterface("org.freedesktop.DBus")
                .withArguments(name)
                .storeResultsTo(isOwned);
            return isOwned == expected;
        });
    }
    std::unique_ptr<sdbus::IProxy> logind(const std::string& path) {
        return sdbus::createProxy(*connection_, "org.freedesktop.login1", "/org/freedesktop/login1" + path);
    }

    std::unique_ptr<sdbus::IProxy> userManager() {
        return sdbus::createProxy(*connection_, "org.freedesktop.systemd1", "/org/freedesktop/systemd1");
    }

    TemporaryFolder folder_;
    testing::ChildProcess daemon_, logind_, screenSaver_, userManager_;
    std::unique_ptr<sdbus::IConnection> connection_;
};

} // namespace kova
