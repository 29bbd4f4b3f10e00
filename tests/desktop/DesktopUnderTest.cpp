#include "tests/desktop/DesktopUnderTest.h"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <future>

namespace kova::testing {

struct TestLoop::Timer final : ScheduledWork {
    void cancel() override { work = nullptr; }
    Seconds when{};
    std::function<void()> work;
};

void TestLoop::post(std::function<void()> work) {
    const std::lock_guard lock(mutex_);
    posted_.push_back(std::move(work));
}

std::shared_ptr<ScheduledWork> TestLoop::after(Seconds delay, std::function<void()> work) {
    auto timer = std::make_shared<Timer>();
    timer->when = uptime() + delay;
    timer->work = std::move(work);
    timers_.push_back(timer);
    return timer;
}

WallTime TestLoop::now() const {
    return std::chrono::system_clock::now();
}

Seconds TestLoop::uptime() const {
    return std::chrono::steady_clock::now().time_since_epoch();
}

Subscription TestLoop::watch(int descriptor, std::function<void()> readable) {
    auto watched = std::make_shared<std::pair<int, std::function<void()>>>(descriptor, std::move(readable));
    watched_.push_back(watched);
    return Subscription(watched);
}

void TestLoop::runOnce() {
    std::vector<std::function<void()>> work;
    {
        const std::lock_guard lock(mutex_);
        work.swap(posted_);
    }
    for (auto it = timers_.begin(); it != timers_.end();) {
        if (holdsTimers_ || (*it)->when > uptime()) {
            ++it;
            continue;
        }
        work.push_back([timer = *it] {
            if (timer->work) timer->work();
        });
        it = timers_.erase(it);
    }
    for (const auto& piece : work) piece();
    std::erase_if(watched_, [](const auto& watched) { return watched.expired(); });
    std::vector<pollfd> readable;
    for (const auto& watched : watched_) readable.push_back({watched.lock()->first, POLLIN, 0});
    if (::poll(readable.data(), readable.size(), work.empty() ? 1 : 0) <= 0) return;
    const auto present = watched_;
    for (std::size_t i = 0; i < present.size(); ++i) {
        const auto watched = present[i].lock();
        if (watched && readable[i].revents != 0) watched->second();
    }
}

void TestLoop::dropPendingWork() {
    const std::lock_guard lock(mutex_);
    posted_.clear();
    timers_.clear();
}

ApplicationIdentity PlainCatalogue::identify(const ApplicationTraces& traces) {
    return {BundleID("test." + traces.className), traces.className, "", ""};
}

DesktopUnderTest::DesktopUnderTest(Manager manager, const std::string& size, ClientProcessNumbers numbers) :
    // The server reports the processes of its clients even if the desktop under test must not read them (`numbers_`):
    // some window managers need these numbers.
    numbers_(numbers), server_(size, ClientProcessNumbers::reported) {
    if (manager == Manager::openbox) server_.startManager();
}

DesktopUnderTest::~DesktopUnderTest() {
    closeDesktop();
}

X11Desktop& DesktopUnderTest::openDesktop() {
    auto opened = X11Desktop::open({.displayName = server_.displayName(),
                                    .hiddenWindowsFile = hiddenWindowsFile(),
                                    .launcher = nullptr,
                                    .returnTimeoutAtEnd = Seconds(10),
                                    .queriesProcesses = numbers_ == ClientProcessNumbers::reported},
                                   loop_, catalogue_);
    if (const auto* failure = std::get_if<X11Desktop::Failure>(&opened)) throw std::runtime_error(failure->reason);
    desktop_ = std::move(std::get<0>(opened));
    isConnectionLost_ = false;
    desktop_->listen([this](int descriptor, auto readable) { return loop_.watch(descriptor, std::move(readable)); },
                     [this] { isConnectionLost_ = true; });
    service_ = std::make_unique<AccessibilityWindowService>(*desktop_, *desktop_, *desktop_,
                                                            std::make_shared<ChangeNotifications>(*desktop_), loop_);
    return *desktop_;
}

void DesktopUnderTest::closeDesktop() {
    service_.reset();
    desktop_.reset();
    loop_.dropPendingWork();
}

void DesktopUnderTest::crash() {
    // After the connection is lost, `closeDesktop` shows no hidden window but may change the file. The copy replaces
    // the changed file.
    const std::string kept = hiddenWindowsFile() + ".kept";
    std::filesystem::copy_file(hiddenWindowsFile(), kept, std::filesystem::copy_options::overwrite_existing);
    ::shutdown(desktop_->connectionDescriptor(), SHUT_RDWR);
    EXPECT_FALSE(desktop_->readEvents());
    closeDesktop();
    std::filesystem::rename(kept, hiddenWindowsFile());
}

std::unique_ptr<TestClient> DesktopUnderTest::client(const std::string& className, std::uint32_t process) {
    return std::make_unique<TestClient>(server_.displayName(), className, process);
}

std::vector<ManagedWindow> DesktopUnderTest::poll() {
    auto polled = std::async(std::launch::async, [this] { return service_->enumerateWindows().listed; });
    while (polled.wait_for(std::chrono::seconds(0)) != std::future_status::ready) loop_.runOnce();
    return polled.get();
}

ManagedWindow DesktopUnderTest::window(const std::string& title) {
    ManagedWindow found;
    const auto isThere = [&] {
        for (const ManagedWindow& candidate : poll()) {
            if (candidate.title == title) found = candidate;
        }
        return !found.id.empty();
    };
    EXPECT_TRUE(runUntil(isThere)) << "no window is called " << title;
    return found;
}

bool DesktopUnderTest::showsExactly(std::vector<std::string> expected) {
    std::ranges::sort(expected);
    return runUntil([&] {
        const auto windows = poll();
        return titles() == expected && std::ranges::all_of(windows, &ManagedWindow::isVisible);
    });
}

std::vector<std::string> DesktopUnderTest::titles() {
    std::vector<std::string> titles;
    for (const ManagedWindow& candidate : poll()) titles.push_back(candidate.title);
    std::ranges::sort(titles);
    return titles;
}

bool DesktopUnderTest::isHidden(pid_t process) {
    const auto application = desktop_->runningApplication(process);
    return application && application->isHidden;
}

void DesktopUnderTest::place(const ManagedWindow& window, const CGRect& frame) {
    service_->setFrame(window, frame, AccessibilityWindowService::BringToFront::no,
                       [this](CGRect minimum) { reportedMinimums_.push_back(minimum); });
}

bool DesktopUnderTest::reachesFrame(const std::string& title, const CGRect& requested,
                                    const std::function<CGRect()>& frame) {
    const auto placed = window(title);
    place(placed, requested);
    return runUntil([&] {
        if (text(frame()) == text(requested)) return true;
        if (!service_->pendingFrame(placed.id)) place(window(title), requested);
        return false;
    });
}

bool DesktopUnderTest::reachesFrame(const std::string& title, const CGRect& requested, const TestClient& client,
                                    xcb_window_t window) {
    return reachesFrame(title, requested, [&] { return client.outerFrame(window); });
}

bool DesktopUnderTest::isPolledAs(const std::string& title, const std::function<CGRect()>& frame) {
    return runUntil([&] {
        const auto polled = window(title).frame;
        return polled && text(*polled) == text(frame());
    });
}

void DesktopUnderTest::runFor(Seconds time) {
    const Seconds end = loop_.uptime() + time;
    while (loop_.uptime() < end) loop_.runOnce();
}

bool DesktopUnderTest::runUntil(const std::function<bool()>& condition) {
    const Seconds end = loop_.uptime() + Seconds(20);
    while (!condition()) {
        if (loop_.uptime() > end) return false;
        loop_.runOnce();
    }
    return true;
}

std::string text(const CGRect& r) {
    const auto number = [](double value) { return std::to_string(static_cast<long>(value)); };
    return number(minX(r)) + "," + number(minY(r)) + " " + number(r.size.width) + "x" + number(r.size.height);
}

} // namespace kova::testing
