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

  private:
    LayoutAxis axis_;
    NSPanel* panel_;
};

MacDividerHandles::MacDividerHandles(MainQueue& queue) : queue_(queue) {}

MacDividerHandles::~MacDividerHandles() = default;

void MacDividerHandles::showHandles(const std::vector<DividerHandle>& handles) {
    tell(grip_.keepOnly(handles, pointerOnScreen()));
    if (!grip_.isHeld()) escape_ = {}; // a handle that is gone is never let go
    std::erase_if(panels_, [&](const auto& shown) {
        return std::ranges::none_of(handles, [&](const DividerHandle& handle) {
            return handle.id == shown.first && handle.axis == shown.second->axis();
        });
    });
    for (const DividerHandle& handle : handles) {
        auto& panel = panels_[handle.id];
        if (!panel) {
            // The system may hold the view a little longer than the panel is ours.
            panel = std::make_unique<Panel>(
                handle.axis,
                DividerPanelEvents{
                    .pressed = lifetime_.guard([this, id = handle.id](int clickCount) { press(id, clickCount); }),
                    .moved = lifetime_.guard([this] { move(); }),
                    .released = lifetime_.guard([this] { release(); }),
                    .entered = lifetime_.guard([this, id = handle.id] { cross(DividerHandleEvent::Kind::entered, id); }),
                    .left = lifetime_.guard([this, id = handle.id] { cross(DividerHandleEvent::Kind::left, id); })});
        }
        panel->show(grippableFrame(handle));
    }
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

void MacDividerHandles::move() {
    tell(grip_.move(pointerOnScreen()));
}

void MacDividerHandles::release() {
    escape_ = {};
    tell(grip_.release(pointerOnScreen()));
}

void MacDividerHandles::cross(DividerHandleEvent::Kind kind, const std::string& handleID) {
    tell(DividerHandleEvent{kind, handleID, pointerOnScreen()});
}

void MacDividerHandles::tell(const std::optional<DividerHandleEvent>& event) {
    if (event) queue_.post(lifetime_.guard([this, told = *event] { observers_.notify(told); }));
}

} // namespace kova::macos
