#include "platform/linux/SerialWorkQueue.h"

#include <pthread.h>

#include <csignal>
#include <utility>

namespace kova {

SerialWorkQueue::SerialWorkQueue(std::string name) : name_(std::move(name)) {}

SerialWorkQueue::~SerialWorkQueue() {
    {
        const MutexLock lock(mutex_);
        isEnding_ = true;
    }
    changed_.notify_one();
    if (thread_.joinable()) thread_.join();
}

void SerialWorkQueue::post(std::function<void()> job) {
    {
        const MutexLock lock(mutex_);
        jobs_.push_back(std::move(job));
        if (!thread_.joinable()) {
            // The thread inherits this thread's mask, so all signals are blocked while it starts: signals must be
            // delivered to the main thread.
            sigset_t all, before;
            sigfillset(&all);
            pthread_sigmask(SIG_SETMASK, &all, &before);
            thread_ = std::thread([this] { work(); });
            pthread_sigmask(SIG_SETMASK, &before, nullptr);
            pthread_setname_np(thread_.native_handle(), name_.substr(0, 15).c_str());
        }
    }
    changed_.notify_one();
}

void SerialWorkQueue::work() {
    while (true) {
        std::function<void()> job;
        {
            const MutexLock lock(mutex_);
            while (!isEnding_ && jobs_.empty()) changed_.wait(mutex_);
            if (isEnding_) return;
            job = std::move(jobs_.front());
            jobs_.pop_front();
        }
        job();
    }
}

} // namespace kova
