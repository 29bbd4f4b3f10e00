// The handles of dividers, and the guards of the bare desktop beside the handles. Both are panels just above the
// desktop's icons, so that every window lies over them. They receive pointer events and never the focus, and activate
// no application. Drags of other applications pass through them.
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
    void letThrough(bool lets);
    void tell(const std::optional<DividerHandleEvent>& event);

    MainQueue& queue_;
    DividerGestureRecognizer grip_;
    std::map<std::string, std::unique_ptr<Handle>> handles_; // by id
    std::vector<std::unique_ptr<Panel>> guards_;
    Subscription escape_;                          // while a handle is pressed
    std::optional<Subscription> pressesElsewhere_; // while there are panels
    Observers<const DividerHandleEvent&> observers_;
    Lifetime lifetime_;
};

} // namespace kova::macos
