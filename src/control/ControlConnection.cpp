#include "control/ControlConnection.h"

#include "control/client/ControlCodes.h"

#include <asio/post.hpp>

#include <cerrno>
#include <optional>
#include <utility>

namespace kova {

namespace {

bool wouldBlock(int error) {
    return error == EAGAIN || error == EWOULDBLOCK || error == EINTR;
}

jsonrpc::Message invalidLine(std::string reason) {
    ControlFailure failure{controlCode::parseError, "Parse error: " + std::move(reason), nullptr};
    return {false, {jsonrpc::Invalid{nullptr, std::move(failure)}}};
}

} // namespace

ControlConnection::ControlConnection(std::shared_ptr<asio::io_context> context, Socket socket,
                                     const ControlServerLimits& limits, std::shared_ptr<UnsentBudget> budget,
                                     std::span<char> readBuffer, Received received, Closed closed) :
    context_(std::move(context)),
    socket_(std::move(socket)), descriptor_(socket_.native_handle()), limits_(limits), readBuffer_(readBuffer),
    received_(std::move(received)), closed_(std::move(closed)), lines_(kLongestControlLine), budget_(std::move(budget)),
    account_(*budget_, [this] { closeSoon(); }) {}

void ControlConnection::start() {
    readAvailable(); // most clients send a request as soon as they connect
}

void ControlConnection::close() {
    std::vector<std::function<void()>> callbacks;
    {
        const MutexLock guard(lock_);
        if (!std::exchange(isOpen_, false)) return;
        unsent_ = {};
        alreadySent_ = 0;
        batchResponse_ = {};
        pending_.clear();
        account_.setUnread(0);
        asio::error_code ignored;
        socket_.close(ignored);
        callbacks.swap(whenDisconnected_);
    }
    for (const auto& callback : callbacks) callback();
    closed_(shared_from_this());
}

/// Only schedules the closing, because this function may be called on any thread and with locks held.
void ControlConnection::closeSoon() {
    asio::post(*context_, [weak = weak_from_this()] {
        if (const auto self = weak.lock()) self->close();
    });
}

bool ControlConnection::isConnected() const {
    const MutexLock guard(lock_);
    return isOpen_;
}

void ControlConnection::whenDisconnected(std::function<void()> callback) {
    {
        const MutexLock guard(lock_);
        if (isOpen_) return whenDisconnected_.push_back(std::move(callback));
    }
    callback();
}

void ControlConnection::waitForInput() {
    socket_.async_wait(Socket::wait_read, [self = shared_from_this()](const asio::error_code& error) {
        if (!error) self->readAvailable();
    });
}

void ControlConnection::readAvailable() {
    try {
        readInput();
    } catch (const std::exception&) {
        close(); // most likely there is not enough memory for this line
    }
}

void ControlConnection::readInput() {
    if (!isConnected()) return; // another file may have the number of a closed descriptor now
    const auto length = ::recv(descriptor_, readBuffer_.data(), readBuffer_.size(), MSG_DONTWAIT);
    if (length < 0) return wouldBlock(errno) ? waitForInput() : close();
    if (length == 0) return endInput();
    splitIntoMessages({readBuffer_.data(), static_cast<std::size_t>(length)});

    const MutexLock guard(lock_);
    if (!isOpen_) return;
    isInputPaused_ = !hasRoomForInput(limits_.unansweredRequests - 1);
    if (!isInputPaused_) waitForInput();
}

void ControlConnection::splitIntoMessages(std::string_view bytes) {
    lines_.feed(
        bytes, [this](std::string_view line) { queueMessage(jsonrpc::readMessage(line), line.size()); },
        [this] {
            queueMessage(invalidLine("a line holds at most " + std::to_string(kLongestControlLine) + " bytes"), 0);
        });
}

void ControlConnection::queueMessage(jsonrpc::Message message, std::size_t bytes) {
    {
        const MutexLock guard(lock_);
        if (!isOpen_) return;
        pending_.push_back({std::move(message), bytes});
        pendingBytes_ += bytes;
    }
    deliverNext();
}

/// Passes the next message on, unless one is being handled or the client has left output unread.
void ControlConnection::deliverNext() {
    std::optional<Pending> next;
    {
        const MutexLock guard(lock_);
        if (!isOpen_ || isHandling_ || pending_.empty() || !unsent_.empty()) return;
        next = std::move(pending_.front());
        pending_.pop_front();
        pendingBytes_ -= next->bytes;
        isHandling_ = true;
    }
    received_(shared_from_this(), std::move(next->message));
}

void ControlConnection::endInput() {
    if (lines_.isInsideLine()) queueMessage(invalidLine("the request ends in mid-line"), 0);
    bool isDone = false;
    {
        const MutexLock guard(lock_);
        hasInputEnded_ = true;
        isDone = hasRespondedAndFlushed();
    }
    if (isDone) close();
}

void ControlConnection::addToBatch(std::string_view response) {
    const MutexLock guard(lock_);
    if (response.empty() || !isOpen_ || account_.isDropped()) return;
    appendToBatch(response);
    countUnread();
}

void ControlConnection::appendToBatch(std::string_view response) {
    batchResponse_ += batchResponse_.empty() ? '[' : ',';
    batchResponse_ += response;
}

void ControlConnection::finishMessage(std::string response, bool isBatch) {
    {
        const MutexLock guard(lock_);
        isHandling_ = false;
        if (!isOpen_ || account_.isDropped()) return;
        if (isBatch) {
            if (!response.empty()) appendToBatch(response);
            response = std::exchange(batchResponse_, {});
            if (!response.empty()) response += ']';
        }
        if (!response.empty()) enqueue(std::move(response));
        for (auto& line : std::exchange(afterResponse_, {})) enqueue(std::move(line));
        if (hasRespondedAndFlushed()) {
            closeSoon();
        } else if (isInputPaused_ && hasRoomForInput(limits_.unansweredRequests / 2)) {
            asio::post(*context_, [self = shared_from_this()] { self->resumeInput(); });
        }
    }
    deliverNext();
}

void ControlConnection::resumeInput() {
    const MutexLock guard(lock_);
    if (!isOpen_ || !isInputPaused_ || !hasRoomForInput(limits_.unansweredRequests / 2)) return;
    isInputPaused_ = false;
    waitForInput();
}

bool ControlConnection::hasRoomForInput(std::size_t unansweredAllowed) const {
    return pending_.size() + (isHandling_ ? 1 : 0) <= unansweredAllowed && pendingBytes_ < kLongestControlLine &&
           unsent_.empty();
}

bool ControlConnection::hasRespondedAndFlushed() const {
    return hasInputEnded_ && !isHandling_ && pending_.empty() && unsent_.empty();
}

void ControlConnection::send(const std::string& line) {
    const MutexLock guard(lock_);
    if (!isOpen_ || account_.isDropped()) return;
    if (!unsent_.empty() && unsentBytes() + line.size() > limits_.unsentBytes) return closeSoon();
    enqueue(line);
}

void ControlConnection::sendAfterResponse(const std::string& line) {
    {
        const MutexLock guard(lock_);
        if (!isOpen_) return;
        if (isHandling_) return afterResponse_.push_back(line);
    }
    send(line);
}

void ControlConnection::enqueue(std::string line) {
    const bool wasWaiting = !unsent_.empty();
    line.push_back('\n');
    if (wasWaiting) {
        unsent_.append(line);
        countUnread();
        return;
    }
    unsent_ = std::move(line);
    if (!sendWhatFits()) {
        closeSoon();
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
        const MutexLock guard(lock_);
        if (!isOpen_) return;
        isDone = !sendWhatFits() || hasRespondedAndFlushed();
        isEmpty = unsent_.empty();
    }
    if (isDone) return close();
    if (!isEmpty) return waitForRoom();
    deliverNext();
    resumeInput();
}

bool ControlConnection::sendWhatFits() {
    const auto sent = ::send(descriptor_, unsent_.data() + alreadySent_, unsentBytes(), kControlSendFlags);
    if (sent < 0 && !wouldBlock(errno)) return false;
    if (sent > 0) alreadySent_ += static_cast<std::size_t>(sent);
    if (alreadySent_ == unsent_.size()) {
        unsent_ = {}; // frees the memory, so that an idle client uses none
        alreadySent_ = 0;
    } else if (alreadySent_ > unsent_.size() / 2) { // seldom, since each erasure moves all the unsent bytes
        unsent_.erase(0, alreadySent_);
        alreadySent_ = 0;
    }
    countUnread();
    return true;
}

} // namespace kova
