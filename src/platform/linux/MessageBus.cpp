#include "platform/linux/MessageBus.h"

#include "support/Log.h"

#include <sdbus-c++/sdbus-c++.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

namespace kova {

namespace {

constexpr Seconds kFirstPause{1};
constexpr Seconds kLongestPause{600};
constexpr std::chrono::seconds kPatience{5}; // with a question

constexpr const char* kBusService = "org.freedesktop.DBus";

} // namespace

/// Shared with the thread that connects. It may outlive the bus when nobody answers at the other end.
struct MessageBus::Attempt {
    std::mutex mutex;
    MessageBus* bus;  // null once nobody wants the connection any more; set and read on the main thread only
    MainQueue* queue; // the same, under the mutex

    Attempt(MessageBus& wanting, MainQueue& wantingQueue) : bus(&wanting), queue(&wantingQueue) {}
};

MessageBus::MessageBus(std::string name, std::string address, EventLoop& loop) :
    name_(std::move(name)), address_(std::move(address)), loop_(loop), pause_(kFirstPause) {}

MessageBus::~MessageBus() {
    if (deadline_) deadline_->cancel();
    if (retry_) retry_->cancel();
    if (!attempt_) return;
    attempt_->bus = nullptr;
    const std::lock_guard lock(attempt_->mutex);
    attempt_->queue = nullptr;
}

void MessageBus::open(std::vector<BusSignal> signals, std::function<void()> connected, std::function<void()> lost) {
    signals_ = std::move(signals);
    connected_ = std::move(connected);
    lost_ = std::move(lost);
    connect();
}

void MessageBus::connect() {
    if (address_.empty()) {
        problem_ = "its address is not known";
        return; // and will not be
    }
    attempt_ = std::make_shared<Attempt>(*this, loop_);
    // The handshake and each request for signals wait for the bus, which may be as slow as it likes.
    std::thread([attempt = attempt_, address = address_, signals = signals_] {
        std::shared_ptr<sdbus::IConnection> connection;
        std::string problem;
        try {
            connection = sdbus::createSessionBusConnectionWithAddress(address);
            connection->setMethodCallTimeout(kPatience);
            for (const BusSignal& signal : signals) {
                const auto heard = [hear = signal.heard](sdbus::Message& message) {
                    try {
                        hear(message);
                    } catch (const sdbus::Error&) {
                        // Somebody speaks another dialect; what cannot be read was not said.
                    }
                };
                connection->addMatch(signal.rule, heard, sdbus::floating_slot);
            }
        } catch (const sdbus::Error& error) {
            connection.reset();
            problem = error.getMessage();
        }
        const std::lock_guard lock(attempt->mutex);
        if (!attempt->queue) return;
        attempt->queue->post([attempt, connection, problem]() mutable {
            if (attempt->bus) attempt->bus->arrived(std::move(connection), problem);
        });
    }).detach();
}

void MessageBus::arrived(std::shared_ptr<sdbus::IConnection> connection, const std::string& problem) {
    attempt_.reset();
    connection_ = std::move(connection);
    if (!connection_) return lose(problem);
    pause_ = kFirstPause;
    problem_.clear();
    log(LogLevel::detail, "connected to the " + name_);
    connected_();
    process(); // signals may have come meanwhile
    if (!connection_) return;
    watch_ = loop_.watchReadable(connection_->getEventLoopPollData().fd, [this] { process(); });
}

void MessageBus::send(const BusQuestion& question, const std::function<void(sdbus::MethodCall&)>& fill, Answer answer) {
    if (!connection_) return;
    try {
        auto& proxy = proxies_[question.service + question.path];
        if (!proxy) proxy = sdbus::createProxy(*connection_, question.service, question.path);
        auto call = proxy->createMethodCall(question.interface, question.method);
        fill(call);
        proxy->callMethod(call, [answer = std::move(answer)](sdbus::MethodReply& reply, const sdbus::Error* refusal) {
            try {
                answer(refusal ? nullptr : &reply);
            } catch (const sdbus::Error&) {
                answer(nullptr); // an answer to another question
            }
        });
    } catch (const sdbus::Error& error) {
        // The connection is going; reading will find out.
        log(LogLevel::detail, "the " + name_ + " takes no question: " + error.getMessage());
    }
    waitForDeadline();
}

void MessageBus::ask(const BusQuestion& question, const Words& words, Answer answer) {
    send(
        question,
        [&](sdbus::MethodCall& call) {
            for (const std::string& word : words) call << word;
        },
        std::move(answer));
}

void MessageBus::ask(const BusQuestion& question, std::uint32_t number, Answer answer) {
    send(
        question, [&](sdbus::MethodCall& call) { call << number; }, std::move(answer));
}

void MessageBus::askForOwner(const std::string& service, std::function<void(const std::string&)> answer) {
    ask({kBusService, "/org/freedesktop/DBus", kBusService, "GetNameOwner"}, {service},
        [answer = std::move(answer)](sdbus::Message* reply) {
            std::string owner;
            if (reply) *reply >> owner;
            answer(owner);
        });
}

void MessageBus::process() {
    try {
        while (connection_ && connection_->processPendingRequest()) {
        }
    } catch (const sdbus::Error& error) {
        return lose(error.getMessage());
    }
    waitForDeadline();
}

/// A question that stays unanswered is refused in time, though nothing comes to be read.
void MessageBus::waitForDeadline() {
    if (deadline_) std::exchange(deadline_, nullptr)->cancel();
    if (!connection_) return;
    const auto remaining = connection_->getEventLoopPollData().getRelativeTimeout();
    if (!remaining || *remaining == std::chrono::microseconds::max()) return;
    deadline_ = loop_.after(*remaining, lifetime_.guard([this] { process(); }));
}

void MessageBus::lose(const std::string& problem) {
    const bool wasConnected = problem_.empty();
    problem_ = problem;
    watch_ = {};
    proxies_.clear();
    // Its descriptor stays open until the watch, in whose call this may be, has let go of it.
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
