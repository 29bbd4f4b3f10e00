#include "platform/linux/MessageBus.h"

#include "support/Log.h"
#include "support/Mutex.h"

#include <sdbus-c++/sdbus-c++.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <limits>
#include <optional>
#include <set>
#include <string_view>
#include <thread>
#include <utility>

namespace kova {

namespace {

constexpr Seconds kFirstPause{1};
constexpr Seconds kLongestPause{600};
constexpr std::chrono::seconds kCallTimeout{5}; // for a method call
/// Other work of the event loop runs after this many messages, so that a flood does not block it.
constexpr int kMessagesPerCall = 64;

constexpr const char* kBusService = "org.freedesktop.DBus";

/// Why no process listens at the socket's path; empty if a process listens.
std::string whyNotListening(const std::string& path) {
    sockaddr_un place{};
    place.sun_family = AF_UNIX;
    if (path.size() >= sizeof place.sun_path) return path + ": " + std::strerror(ENAMETOOLONG);
    path.copy(place.sun_path, path.size());
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (socket < 0) return std::strerror(errno);
    const bool isListening = ::connect(socket, reinterpret_cast<const sockaddr*>(&place), sizeof place) == 0;
    const std::string problem = isListening ? "" : path + ": " + std::strerror(errno);
    ::close(socket);
    return problem;
}

/// Why no bus listens at any of the addresses; empty if a bus listens, or if only the library understands an address.
/// This is checked before the library connects, since the library leaks memory at each failed attempt, and a bus may be
/// missing for days.
std::string whyUnreachable(std::string_view addresses) {
    constexpr std::string_view kPlain = "unix:path=";
    std::string problem;
    while (!addresses.empty()) {
        const auto end = std::min(addresses.find(';'), addresses.size());
        const std::string_view address = addresses.substr(0, end);
        addresses.remove_prefix(std::min(end + 1, addresses.size()));
        if (!address.starts_with(kPlain) || address.find_first_of(",%") != address.npos) return {};
        problem = whyNotListening(std::string(address.substr(kPlain.size())));
        if (problem.empty()) return {};
    }
    return problem;
}

/// Null on failure, with the reason in `problem`.
std::shared_ptr<sdbus::IConnection> connectionTo(const std::string& address, const std::vector<BusSignal>& signals,
                                                 std::string& problem) {
    try {
        std::shared_ptr<sdbus::IConnection> connection = sdbus::createSessionBusConnectionWithAddress(address);
        connection->setMethodCallTimeout(kCallTimeout);
        for (const BusSignal& signal : signals) {
            const auto received = [receive = signal.received](sdbus::Message& message) {
                try {
                    receive(message);
                } catch (const sdbus::Error&) {
                    // A message of an unexpected type is ignored.
                }
            };
            connection->addMatch("type='signal',sender='" + signal.sender + "'," + signal.rule, received,
                                 sdbus::floating_slot);
        }
        return connection;
    } catch (const sdbus::Error& error) {
        problem = error.getMessage();
        return nullptr;
    }
}

} // namespace

BusSignal ownerChange(const std::string& service, std::function<void(const std::string&)> received) {
    return {kBusService,
            std::string("interface='") + kBusService + "',member='NameOwnerChanged',arg0='" + service + "'",
            [received = std::move(received)](sdbus::Message& message) {
                std::string name, before, after;
                message >> name >> before >> after;
                received(after);
            }};
}

/// Shared with the thread that connects, which outlives the MessageBus if the bus does not respond.
struct MessageBus::Attempt {
    Mutex mutex;
    MessageBus* bus; // null once the connection is not needed any more; set and read on the main thread only
    MainQueue* queue KOVA_GUARDED_BY(mutex); // null once the connection is not needed any more

    Attempt(MessageBus& owner, MainQueue& ownerQueue) : bus(&owner), queue(&ownerQueue) {}
};

MessageBus::MessageBus(std::string name, std::string address, EventLoop& loop) :
    name_(std::move(name)), address_(std::move(address)), loop_(loop), pause_(kFirstPause) {}

MessageBus::~MessageBus() {
    if (deadline_) deadline_->cancel();
    if (retry_) retry_->cancel();
    if (!attempt_) return;
    attempt_->bus = nullptr;
    const MutexLock lock(attempt_->mutex);
    attempt_->queue = nullptr;
}

void MessageBus::open(std::vector<BusSignal> signals, std::function<void()> connected, std::function<void()> lost) {
    std::set<std::string> services;
    for (const BusSignal& signal : signals) services.insert(signal.sender);
    services.erase(kBusService);
    for (const std::string& service : services) {
        signals_.push_back(
            ownerChange(service, [this, service](const std::string& owner) { setOwner(service, owner); }));
    }
    std::ranges::move(signals, std::back_inserter(signals_));
    for (BusSignal& signal : signals_) {
        signal.received = [this, sender = signal.sender,
                           received = std::move(signal.received)](sdbus::Message& message) {
            if (isGenuine(message, sender)) received(message);
        };
    }
    connected_ = std::move(connected);
    lost_ = std::move(lost);
    connect();
}

void MessageBus::connect() {
    if (address_.empty()) {
        problem_ = "its address is not known";
        return; // a retry would not help
    }
    attempt_ = std::make_shared<Attempt>(*this, loop_);
    // The handshake and each subscription wait for the bus, which may be slow.
    std::thread([attempt = attempt_, address = address_, signals = signals_] {
        std::string problem = whyUnreachable(address);
        auto connection = problem.empty() ? connectionTo(address, signals, problem) : nullptr;
        const MutexLock lock(attempt->mutex);
        if (!attempt->queue) return;
        attempt->queue->post([attempt, connection, problem]() mutable {
            if (attempt->bus) attempt->bus->finishConnecting(std::move(connection), problem);
        });
    }).detach();
}

void MessageBus::finishConnecting(std::shared_ptr<sdbus::IConnection> connection, const std::string& problem) {
    attempt_.reset();
    connection_ = std::move(connection);
    if (!connection_) return disconnect(problem);
    pause_ = kFirstPause;
    problem_.clear();
    log(LogLevel::detail, "connected to the " + name_);
    connected_();
    process(); // signals that have arrived before the descriptor is watched
    if (!connection_) return;
    watch_ = loop_.watchReadable(connection_->getEventLoopPollData().fd, [this] { process(); });
}

void MessageBus::send(const BusMethod& method, const std::function<void(sdbus::MethodCall&)>& fill,
                      ReplyHandler handler) {
    if (!connection_) return;
    try {
        auto& proxy = proxies_[method.service + method.path];
        if (!proxy) proxy = sdbus::createProxy(*connection_, method.service, method.path);
        auto call = proxy->createMethodCall(method.interface, method.method);
        fill(call);
        proxy->callMethod(call, [handler = std::move(handler)](sdbus::MethodReply& reply, const sdbus::Error* refusal) {
            try {
                handler(refusal ? nullptr : &reply);
            } catch (const sdbus::Error&) {
                handler(nullptr); // the reply has other types than `handler` reads
            }
        });
    } catch (const sdbus::Error& error) {
        // The connection is broken; the next `process` reports that.
        log(LogLevel::detail, "a call on the " + name_ + " failed: " + error.getMessage());
    }
    waitForDeadline();
}

void MessageBus::call(const BusMethod& method, const Words& words, ReplyHandler handler) {
    send(
        method,
        [&](sdbus::MethodCall& call) {
            for (const std::string& word : words) call << word;
        },
        std::move(handler));
}

void MessageBus::call(const BusMethod& method, std::uint32_t number, ReplyHandler handler) {
    send(
        method, [&](sdbus::MethodCall& call) { call << number; }, std::move(handler));
}

void MessageBus::queryOwner(const std::string& service, std::function<void(const std::string&)> handler) {
    call({kBusService, "/org/freedesktop/DBus", kBusService, "GetNameOwner"}, {service},
         [this, service, handler = std::move(handler)](sdbus::Message* reply) {
             std::string owner;
             if (reply) *reply >> owner;
             // An empty reply does not remove a known owner: if the owner leaves, the bus announces that.
             if (!owner.empty()) setOwner(service, owner);
             handler(owner);
         });
}

void MessageBus::setOwner(const std::string& service, const std::string& owner) {
    if (owner.empty()) {
        owners_.erase(service);
    } else {
        owners_[service] = owner;
    }
}

/// Match rules do not exclude forged signals: a signal that is addressed to this connection alone is delivered whatever
/// the rules are. But the bus itself writes the true sender into each message.
bool MessageBus::isGenuine(const sdbus::Message& signal, const std::string& sender) const {
    if (sender == kBusService) return signal.getSender() == kBusService;
    const auto owner = owners_.find(sender);
    return owner != owners_.end() && signal.getSender() == owner->second;
}

void MessageBus::process() {
    try {
        int handled = 0;
        while (connection_ && connection_->processPendingRequest()) {
            if (++handled < kMessagesPerCall) continue;
            // The library may have read further messages already. The descriptor does not become readable for these, so
            // this function is called again.
            if (!std::exchange(isProcessDue_, true)) {
                loop_.post(lifetime_.guard([this] {
                    isProcessDue_ = false;
                    process();
                }));
            }
            break;
        }
    } catch (const sdbus::Error& error) {
        return disconnect(error.getMessage());
    }
    waitForDeadline();
}

/// Calls `process` when the next pending call times out, since the descriptor does not become readable then.
void MessageBus::waitForDeadline() {
    if (deadline_) std::exchange(deadline_, nullptr)->cancel();
    if (!connection_) return;
    const auto remaining = connection_->getEventLoopPollData().getRelativeTimeout();
    if (!remaining || *remaining == std::chrono::microseconds::max()) return;
    deadline_ = loop_.after(*remaining, lifetime_.guard([this] { process(); }));
}

void MessageBus::disconnect(const std::string& problem) {
    const bool wasConnected = problem_.empty();
    problem_ = problem;
    watch_ = {};
    owners_.clear();
    proxies_.clear();
    // The descriptor stays open until the watch has ended, since this may run in the watch's callback.
    loop_.post([last = std::exchange(connection_, nullptr)] {});
    waitForDeadline();
    if (wasConnected) {
        log(LogLevel::warning, "the " + name_ + " is gone: " + problem);
        lost_();
    }
    retry_ = loop_.after(pause_, lifetime_.guard([this] { connect(); }));
    pause_ = std::min(pause_ * 2, kLongestPause);
}

} // namespace kova
