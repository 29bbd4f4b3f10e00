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
    void letThrough(bool lets) { panel_.ignoresMouseEvents = lets; }

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
    tell(grip_.keepOnly(handles, pointerOnScreen()));
    if (!grip_.isHeld()) escape_ = {}; // a handle that was removed gets no release
    std::erase_if(handles_, [&](const auto& shown) {
        return std::ranges::none_of(handles, [&](const DividerHandle& handle) {
            return handle.id == shown.first && handle.axis == shown.second->axis();
        });
    });
    for (const DividerHandle& handle : handles) {
        auto& shown = handles_[handle.id];
        if (!shown) {
            // The system may own the view a little longer than this owns the panel.
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

/// After a press elsewhere something may be dragged to the desktop, so the panels ignore events until the release.
void MacDividerHandles::watchPressesElsewhere() {
    if (handles_.empty() && guards_.empty()) return pressesElsewhere_.reset();
    if (pressesElsewhere_) return;
    pressesElsewhere_ = watchEventsOfOthers(
        NSEventMaskLeftMouseDown | NSEventMaskLeftMouseUp,
        lifetime_.guard([this](NSEvent* event) { letThrough(event.type == NSEventTypeLeftMouseDown); }));
}

void MacDividerHandles::letThrough(bool lets) {
    for (const auto& shown : handles_) shown.second->letThrough(lets);
    for (const auto& guard : guards_) guard->letThrough(lets);
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
