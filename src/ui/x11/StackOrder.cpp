#include "ui/x11/StackOrder.h"

#include <algorithm>

namespace kova::ui {

void StackOrder::reset(std::vector<WindowNumber> bottomFirst) {
    order_ = std::move(bottomFirst);
    std::erase_if(kinds_, [&](const auto& kind) { return std::ranges::find(order_, kind.first) == order_.end(); });
}

void StackOrder::created(WindowNumber window) {
    std::erase(order_, window);
    order_.push_back(window);
}

void StackOrder::removed(WindowNumber window) {
    std::erase(order_, window);
    kinds_.erase(window);
}

void StackOrder::configured(WindowNumber window, WindowNumber sibling) {
    if (sibling == 0) return lowered(window);
    const auto found = std::ranges::find(order_, window);
    if (found == order_.end()) return;
    if (found != order_.begin() && *(found - 1) == sibling) return;
    order_.erase(found);
    const auto below = std::ranges::find(order_, sibling);
    order_.insert(below == order_.end() ? below : below + 1, window);
}

void StackOrder::raised(WindowNumber window) {
    if (std::erase(order_, window) > 0) order_.push_back(window);
}

void StackOrder::lowered(WindowNumber window) {
    if (std::erase(order_, window) > 0) order_.insert(order_.begin(), window);
}

void StackOrder::classify(WindowNumber window, RootChild kind) {
    if (kind == RootChild::other) {
        kinds_.erase(window);
    } else {
        kinds_[window] = kind;
    }
}

RootChild StackOrder::kindOf(WindowNumber window) const {
    const auto found = kinds_.find(window);
    return found == kinds_.end() ? RootChild::other : found->second;
}

std::vector<WindowNumber> StackOrder::shownApplications() const {
    std::vector<WindowNumber> shown;
    for (const WindowNumber window : order_) {
        const RootChild kind = kindOf(window);
        if (kind == RootChild::guard) shown.clear();
        if (kind == RootChild::application) shown.push_back(window);
    }
    return shown;
}

StackOrder::Place StackOrder::placeFor(const std::vector<WindowNumber>& ours) const {
    // The place is between the guard and the lowest application. A desktop window above an application stays there.
    const auto is = [&](RootChild kind) {
        return [this, kind](WindowNumber window) { return kindOf(window) == kind; };
    };
    const auto guard = std::find_if(order_.rbegin(), order_.rend(), is(RootChild::guard));
    const auto application = std::find_if(guard.base(), order_.end(), is(RootChild::application));
    Place place;
    if (guard != order_.rend()) place.above = *guard;
    std::vector<WindowNumber> found;
    bool isDesktopAbove = false;
    for (auto window = guard.base(); window != application; ++window) {
        const RootChild kind = kindOf(*window);
        if (kind == RootChild::desktop) {
            place.above = *window;
            isDesktopAbove = isDesktopAbove || !found.empty();
        }
        if (std::ranges::find(ours, *window) != ours.end()) found.push_back(*window);
    }
    place.isKept = found == ours && !isDesktopAbove;
    return place;
}

} // namespace kova::ui
