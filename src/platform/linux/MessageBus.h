// A connection to a message bus that may start late and restart. The main thread never waits for the bus: a short-lived
// thread connects and subscribes to signals; from then on everything happens on the event loop.
#pragma once

#include "platform/linux/EventLoop.h"
#include "support/Lifetime.h"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace sdbus {
class IConnection;
class IProxy;
class Message;
class MethodCall;
} // namespace sdbus

namespace kova {

/// A signal to subscribe to. `received` is called on the main thread, and only for signals from the current owner of
/// the name `sender`.
struct BusSignal {
    std::string sender;
    std::string rule; // further conditions of the bus's match rule: "interface='...',member='...'"
    std::function<void(sdbus::Message&)> received;
};

/// The bus's signal that the owner of the name `service` has changed; `owner` is empty if the name has no owner now.
BusSignal ownerChange(const std::string& service, std::function<void(const std::string& owner)> received);

/// A method call.
struct BusMethod {
    std::string service;
    std::string path;
    std::string interface;
    std::string method;
};

/// Main thread only.
class MessageBus {
  public:
    using Words = std::vector<std::string>;
    /// Null if the call failed or timed out.
    using ReplyHandler = std::function<void(sdbus::Message*)>;

    /// `name` is for messages: "system bus". Nothing happens before `open`.
    MessageBus(std::string name, std::string address, EventLoop& loop);
    ~MessageBus();
    MessageBus(const MessageBus&) = delete;
    MessageBus& operator=(const MessageBus&) = delete;

    /// Connects now; after a failure or a lost connection, retries after growing pauses of at most ten minutes.
    /// Call once. `connected` is called after each connection, `lost` after each loss of one.
    void open(std::vector<BusSignal> signals, std::function<void()> connected, std::function<void()> lost);
    bool isConnected() const { return connection_ != nullptr; }
    /// Why there is no connection; empty while there is one.
    const std::string& problem() const { return problem_; }
    const std::string& name() const { return name_; }

    /// Calls a method with texts as its arguments, without waiting. `handler` is called with the reply, or never if the
    /// connection is lost first.
    void call(const BusMethod& method, const Words& words, ReplyHandler handler);
    /// Calls a method with a number as its argument.
    void call(const BusMethod& method, std::uint32_t number, ReplyHandler handler);
    /// Calls a method with arguments of any types, which `fill` writes before this function returns.
    void send(const BusMethod& method, const std::function<void(sdbus::MethodCall&)>& fill, ReplyHandler handler);
    /// Queries the owner of the name; empty if there is none. Does not start the service. On each connection,
    /// signals of a service are passed on only after this query has found its owner, or after the service has appeared.
    void queryOwner(const std::string& service, std::function<void(const std::string& owner)> handler);
    /// Whether the name is known to have an owner.
    bool hasOwner(const std::string& service) const { return owners_.contains(service); }

  private:
    struct Attempt;
    void connect();
    void finishConnecting(std::shared_ptr<sdbus::IConnection> connection, const std::string& problem);
    void process();
    void waitForDeadline();
    void disconnect(const std::string& problem);
    void setOwner(const std::string& service, const std::string& owner);
    bool isGenuine(const sdbus::Message& signal, const std::string& sender) const;

    std::string name_;
    std::string address_;
    EventLoop& loop_;
    std::vector<BusSignal> signals_;
    std::map<std::string, std::string> owners_; // unique connection name by service; empty without a connection
    std::function<void()> connected_;
    std::function<void()> lost_;
    std::string problem_ = "not connected yet";
    std::shared_ptr<Attempt> attempt_;
    Seconds pause_;
    // Destroyed in the reverse order: the watch ends before the connection closes its descriptor, and the proxies are
    // destroyed before the connection that they use.
    std::shared_ptr<sdbus::IConnection> connection_;
    std::map<std::string, std::unique_ptr<sdbus::IProxy>> proxies_; // by service and path
    Subscription watch_;
    std::shared_ptr<ScheduledWork> deadline_; // of calls without a reply
    std::shared_ptr<ScheduledWork> retry_;
    bool isProcessDue_ = false;
    Lifetime lifetime_;
};

} // namespace kova
