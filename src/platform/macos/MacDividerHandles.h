// Shows the handles of dividers, and guards: panels that keep presses beside the handles from the desktop. Handles and
// guards are just above the desktop's icons, so every window is above them. They receive pointer events, but never get
// the focus, and a press on them activates no application. They ignore a drag that began in another application, so
// that its contents can be dropped on the desktop.
#pragma once

#include "support/Lifetime.h"
#include "support/MainQueue.h"
#include "windowing/DividerGestureRecognizer.h"

#include <map>
#include <memory>

namespace kova::macos {

struct DividerPanelEvents;

class MacDividerHandles final : public DividerHandleServicing {
  public:
    /// The queue outlives the handles.
    explicit MacDividerHandles(MainQueue& queue);
    ~MacDividerHandles() override;

    void showHandles(const std::vector<DividerHandle>& handles) override;
    bool coversDesktopIcons() const override { return true; }
    void guardDesktop(const std::vector<CGRect>& areas) override;
    Subscription observeHandles(std::function<void(const DividerHandleEvent&)> observer) override;

  private:
    class Panel;
    class Handle;
    DividerPanelEvents eventsOf(const std::string& handleID);

    void press(const std::string& handleID, int clickCount);
    void move();
    void release();
    void watchPressesElsewhere();
    void setIgnoresEvents(bool ignores);
    void notify(const std::optional<DividerHandleEvent>& event);

    MainQueue& queue_;
    DividerGestureRecognizer gesture_;
    std::map<std::string, std::unique_ptr<Handle>> handles_; // by id
    std::vector<std::unique_ptr<Panel>> guards_;
    Subscription escapeKey_;                       // while a handle is pressed
    std::optional<Subscription> pressesElsewhere_; // while there are panels
    Observers<const DividerHandleEvent&> observers_;
    Lifetime lifetime_;
};

} // namespace kova::macos
