#include "platform/macos/MacDividerHandles.h"

#include "platform/macos/DividerPanel.h"
#include "platform/macos/EventMonitors.h"
#include "windowing/KeyCodes.h"

#include <algorithm>

namespace kova::macos {

namespace {

CGPoint pointerOnScreen() {
    return NSEvent.mouseLocation;
}

} // namespace

class MacDividerHandles::Panel {
  public:
    explicit Panel(KOVAGuardView* view) : panel_(makeDesktopPanel(view)) {}
    Panel(const Panel&) = delete;
    Panel& operator=(const Panel&) = delete;
    ~Panel() { [panel_ close]; }

    void show(const CGRect& frameOnScreen) {
        [panel_ setFrame:frameOnScreen display:NO];
        if (!panel_.visible) [panel_ orderFrontRegardless];
    }
    void setIgnoresEvents(bool ignores) { panel_.ignoresMouseEvents = ignores; }

  private:
    NSPanel* panel_;
};

class MacDividerHandles::Handle : public Panel {
  public:
    Handle(LayoutAxis axis, DividerPanelEvents events) :
        Panel([[KOVADividerView alloc] initWithAxis:axis events:std::move(events)]), axis_(axis) {}

    LayoutAxis axis() const { return axis_; }

  private:
    LayoutAxis axis_;
};

MacDividerHandles::MacDividerHandles(MainQueue& queue) : queue_(queue) {}

MacDividerHandles::~MacDividerHandles() = default;

void MacDividerHandles::showHandles(const std::vector<DividerHandle>& handles) {
    notify(gesture_.keepOnly(handles, pointerOnScreen()));
    if (!gesture_.isHeld()) escapeKey_ = {}; // a removed handle gets no release event
    std::erase_if(handles_, [&](const auto& shown) {
        return std::ranges::none_of(handles, [&](const DividerHandle& handle) {
            return handle.id == shown.first && handle.axis == shown.second->axis();
        });
    });
    for (const DividerHandle& handle : handles) {
        auto& shown = handles_[handle.id];
        if (!shown) {
            shown = std::make_unique<Handle>(handle.axis, eventsOf(handle.id));
        }
        shown->show(gapFrame(handle));
    }
    watchPressesElsewhere();
}

void MacDividerHandles::guardDesktop(const std::vector<CGRect>& areas) {
    guards_.resize(areas.size());
    for (std::size_t i = 0; i < areas.size(); ++i) {
        if (!guards_[i]) guards_[i] = std::make_unique<Panel>([[KOVAGuardView alloc] initWithFrame:NSZeroRect]);
        guards_[i]->show(areas[i]);
    }
    watchPressesElsewhere();
}

/// `lifetime_` disables the callbacks, since the system may release a panel's view after this object was destroyed.
DividerPanelEvents MacDividerHandles::eventsOf(const std::string& id) {
    return {.pressed = lifetime_.guard([this, id](int clickCount) { press(id, clickCount); }),
            .moved = lifetime_.guard([this] { move(); }),
            .released = lifetime_.guard([this] { release(); }),
            .hoverChanged = lifetime_.guard([this, id](bool isEntered) {
                const auto kind = isEntered ? DividerHandleEvent::Kind::entered : DividerHandleEvent::Kind::left;
                notify(DividerHandleEvent{kind, id, pointerOnScreen()});
            })};
}

Subscription MacDividerHandles::observeHandles(std::function<void(const DividerHandleEvent&)> observer) {
    return observers_.add(std::move(observer));
}

void MacDividerHandles::press(const std::string& handleID, int clickCount) {
    notify(gesture_.press(handleID, clickCount, pointerOnScreen()));
    if (!gesture_.isHeld()) return;
    escapeKey_ = watchEventsOfOthers(NSEventMaskKeyDown, lifetime_.guard([this](NSEvent* event) {
        if (event.keyCode == keyCode::escape) notify(gesture_.cancel(pointerOnScreen()));
    }));
}

/// A press in another application may begin a drag to the desktop, so the panels ignore events until the release.
void MacDividerHandles::watchPressesElsewhere() {
    if (handles_.empty() && guards_.empty()) return pressesElsewhere_.reset();
    if (pressesElsewhere_) return;
    pressesElsewhere_ = watchEventsOfOthers(
        NSEventMaskLeftMouseDown | NSEventMaskLeftMouseUp,
        lifetime_.guard([this](NSEvent* event) { setIgnoresEvents(event.type == NSEventTypeLeftMouseDown); }));
}

void MacDividerHandles::setIgnoresEvents(bool ignores) {
    for (const auto& shown : handles_) shown.second->setIgnoresEvents(ignores);
    for (const auto& guard : guards_) guard->setIgnoresEvents(ignores);
}

void MacDividerHandles::move() {
    notify(gesture_.move(pointerOnScreen()));
}

void MacDividerHandles::release() {
    escapeKey_ = {};
    notify(gesture_.release(pointerOnScreen()));
}

void MacDividerHandles::notify(const std::optional<DividerHandleEvent>& event) {
    if (event) queue_.post(lifetime_.guard([this, reported = *event] { observers_.notify(reported); }));
}

} // namespace kova::macos
