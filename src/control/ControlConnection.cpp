#include "control/ControlConnection.h"

#include "control/client/ControlCodes.h"

#include <asio/post.hpp>
#include <sys/socket.h>

#include <cerrno>
#include <utility>

namespace kova {

namespace {

#if defined(MSG_NOSIGNAL)
constexpr int kSendFlags = MSG_DONTWAIT | MSG_NOSIGNAL;
#else
constexpr int kSendFlags = MSG_DONTWAIT;
#endif

bool wouldWait(int error) {
    return error == EAGAIN || error == EWOULDBLOCK || error == EINTR;
}

jsonrpc::Message invalidLine(std::string reason) {
    ControlFailure failure{controlCode::parseError, "Parse error: " + std::move(reason), nullptr};
    return {false, {jsonrpc::Invalid{nullptr, std::move(failure)}}};
}

} // namespace

ControlConnection::ControlConnection(std::shared_ptr<asio::io_context> context, Socket socket,
                                     const ControlServerLimits& limits, std::span<char> readBuffer, Received received,
                                     Closed closed) :
    context_(std::move(context)),
    socket_(std::move(socket)), descriptor_(socket_.native_handle()), limits_(limits), readBuffer_(readBuffer),
    received_(std::move(received)), closed_(std::move(closed)), lines_(kLongestControlLine) {}

void ControlConnection::start() {
    readWhatHasCome(); // most clients ask as they connect
}

void ControlConnection::close() {
    {
        const std::lock_guard guard(lock_);
        if (!std::exchange(isOpen_, false)) return;
        unsent_ = {};
        asio::error_code ignored;
        socket_.close(ignored);
    }
    closed_(shared_from_this());
}

bool ControlConnection::isConnected() const {
    const std::lock_guard guard(lock_);
    return isOpen_;
}

void ControlConnection::waitForInput() {
    socket_.async_wait(Socket::wait_read, [self = shared_from_this()](const asio::error_code& error) {
        if (!error) self->readWhatHasCome();
    });
}

void ControlConnection::readWhatHasCome() {
    try {
        readInput();
    } catch (const std::exception&) {
        close(); // out of memory, most likely for this very line
    }
}

void ControlConnection::readInput() {
    const auto length = ::recv(descriptor_, readBuffer_.data(), readBuffer_.size(), MSG_DONTWAIT);
    if (length < 0) return wouldWait(errno) ? waitForInput() : close();
    if (length == 0) return endInput();
    take({readBuffer_.data(), static_cast<std::size_t>(length)});

    const std::lock_guard guard(lock_);
    if (!isOpen_) return;
    isInputPaused_ = !hasRoomForInput(limits_.unansweredRequests - 1);
    if (!isInputPaused_) waitForInput();
}

void ControlConnection::take(std::string_view bytes) {
    lines_.feed(
        bytes, [this](std::string_view line) { takeMessage(jsonrpc::readMessage(line)); },
        [this] { takeMessage(invalidLine("a line holds at most " + std::to_string(kLongestControlLine) + " bytes")); });
}

void ControlConnection::takeMessage(jsonrpc::Message message) {
    {
        const std::lock_guard guard(lock_);
        if (!isOpen_) return;
        ++unanswered_;
    }
    received_(shared_from_this(), std::move(message));
}

void ControlConnection::endInput() {
    if (lines_.isInsideLine()) takeMessage(invalidLine("the request ends in mid-line"));
    bool isDone = false;
    {
        const std::lock_guard guard(lock_);
        hasInputEnded_ = true;
        isDone = hasNothingLeftToSay();
    }
    if (isDone) close();
}

void ControlConnection::finishMessage(const std::string& reply) {
    const std::lock_guard guard(lock_);
    --unanswered_;
    if (!isOpen_) return;
    if (!reply.empty()) enqueue(reply);
    if (hasNothingLeftToSay()) {
        asio::post(*context_, [self = shared_from_this()] { self->close(); });
    } else if (isInputPaused_ && hasRoomForInput(limits_.unansweredRequests / 2)) {
        asio::post(*context_, [self = shared_from_this()] { self->resumeInput(); });
    }
}

void ControlConnection::resumeInput() {
    const std::lock_guard guard(lock_);
    if (!isOpen_ || !isInputPaused_ || !hasRoomForInput(limits_.unansweredRequests / 2)) return;
    isInputPaused_ = false;
    waitForInput();
}

bool ControlConnection::hasRoomForInput(std::size_t unansweredAllowed) const {
    return unanswered_ <= unansweredAllowed && unsent_.empty();
}

bool ControlConnection::hasNothingLeftToSay() const {
    return hasInputEnded_ && unanswered_ == 0 && unsent_.empty();
}

void ControlConnection::send(const std::string& line) {
    const std::lock_guard guard(lock_);
    if (!isOpen_) return;
    if (!unsent_.empty() && unsent_.size() + line.size() > limits_.unsentBytes) {
        asio::post(*context_, [self = shared_from_this()] { self->close(); });
        return;
    }
    enqueue(line);
}

void ControlConnection::enqueue(const std::string& line) {
    const bool wasWaiting = !unsent_.empty();
    unsent_.append(line).push_back('\n');
    if (wasWaiting) return;
    if (!sendWhatFits()) {
        asio::post(*context_, [self = shared_from_this()] { self->close(); });
    } else if (!unsent_.empty()) {
        asio::post(*context_, [self = shared_from_this()] { self->waitForRoom(); });
    }
}

void ControlConnection::waitForRoom() {
    if (!isConnected()) return;
    socket_.async_wait(Socket::wait_write, [self = shared_from_this()](const asio::error_code& error) {
        if (!error) self->sendQueued();
    });
}

void ControlConnection::sendQueued() {
    bool isDone = false;
    bool isEmpty = false;
    {
        const std::lock_guard guard(lock_);
        if (!isOpen_) return;
        isDone = !sendWhatFits() || hasNothingLeftToSay();
        isEmpty = unsent_.empty();
    }
    if (isDone) return close();
    if (!isEmpty) return waitForRoom();
    resumeInput();
}

bool ControlConnection::sendWhatFits() {
    const auto sent = ::send(descriptor_, unsent_.data(), unsent_.size(), kSendFlags);
    if (sent < 0) return wouldWait(errno);
    unsent_.erase(0, static_cast<std::size_t>(sent));
    if (unsent_.empty()) unsent_ = {}; // a client that is silent from now on keeps no memory
    return true;
}

} // namespace kova
