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
    Panel(LayoutAxis axis, DividerPanelEvents events) :
        axis_(axis), panel_(makeDividerPanel([[KOVADividerView alloc] initWithAxis:axis events:std::move(events)])) {}
    Panel(const Panel&) = delete;
    Panel& operator=(const Panel&) = delete;
    ~Panel() { [panel_ close]; }

    LayoutAxis axis() const { return axis_; }
    void show(const CGRect& frameOnScreen) {
        [panel_ setFrame:frameOnScreen display:NO];
        if (!panel_.visible) [panel_ orderFrontRegardless];
    }
    void letThrough(bool lets) { panel_.ignoresMouseEvents = lets; }

  private:
    LayoutAxis axis_;
    NSPanel* panel_;
};

MacDividerHandles::MacDividerHandles(MainQueue& queue) : queue_(queue) {}

MacDividerHandles::~MacDividerHandles() = default;

void MacDividerHandles::showHandles(const std::vector<DividerHandle>& handles) {
    tell(grip_.keepOnly(handles, pointerOnScreen()));
    if (!grip_.isHeld()) escape_ = {}; // the release of a handle that is gone is never told
    if (handles.empty()) {
        pressesElsewhere_ = {};
    } else if (panels_.empty()) {
        watchPressesElsewhere();
    }
    std::erase_if(panels_, [&](const auto& shown) {
        return std::ranges::none_of(handles, [&](const DividerHandle& handle) {
            return handle.id == shown.first && handle.axis == shown.second->axis();
        });
    });
    for (const DividerHandle& handle : handles) {
        auto& panel = panels_[handle.id];
        if (!panel) {
            // The system may hold the view a little longer than the panel is ours.
            panel = std::make_unique<Panel>(handle.axis, eventsOf(handle.id));
        }
        panel->show(bareFrame(handle));
    }
}

DividerPanelEvents MacDividerHandles::eventsOf(const std::string& id) {
    return {.pressed = lifetime_.guard([this, id](int clickCount) { press(id, clickCount); }),
            .moved = lifetime_.guard([this] { move(); }),
            .released = lifetime_.guard([this] { release(); }),
            .crossed = lifetime_.guard([this, id](bool isEntered) {
                const auto kind = isEntered ? DividerHandleEvent::Kind::entered : DividerHandleEvent::Kind::left;
                tell(DividerHandleEvent{kind, id, pointerOnScreen()});
            })};
}

Subscription MacDividerHandles::observeHandles(std::function<void(const DividerHandleEvent&)> observer) {
    return observers_.add(std::move(observer));
}

void MacDividerHandles::press(const std::string& handleID, int clickCount) {
    tell(grip_.press(handleID, clickCount, pointerOnScreen()));
    if (!grip_.isHeld()) return;
    escape_ = watchEventsOfOthers(NSEventMaskKeyDown, lifetime_.guard([this](NSEvent* event) {
        if (event.keyCode == keyCode::escape) tell(grip_.cancel(pointerOnScreen()));
    }));
}

/// From a press elsewhere on, something may be dragged that the desktop is to receive.
void MacDividerHandles::watchPressesElsewhere() {
    pressesElsewhere_ = watchEventsOfOthers(
        NSEventMaskLeftMouseDown | NSEventMaskLeftMouseUp,
        lifetime_.guard([this](NSEvent* event) { letThrough(event.type == NSEventTypeLeftMouseDown); }));
}

void MacDividerHandles::letThrough(bool lets) {
    for (const auto& shown : panels_) shown.second->letThrough(lets);
}

void MacDividerHandles::move() {
    tell(grip_.move(pointerOnScreen()));
}

void MacDividerHandles::release() {
    escape_ = {};
    tell(grip_.release(pointerOnScreen()));
}

void MacDividerHandles::tell(const std::optional<DividerHandleEvent>& event) {
    if (event) queue_.post(lifetime_.guard([this, told = *event] { observers_.notify(told); }));
}

} // namespace kova::macos
