// Random walks over a scenario. A walk is a list of operations, each with a name and a number. The number is the seed
// for all choices of the operation (which window, which frame) among the windows and displays that exist at that
// moment, so that an operation still works after other operations were removed from the list.
//
// A failing walk is shortened and printed in a form that can be pasted into a test:
//     replay<RandomDay>(1570, {{"opens", 4711}, {"zoom", 12}});
// The environment variable KOVA_RANDOM_SEED sets the first seed, KOVA_RANDOM_DAYS the number of seeds.
#pragma once

#include "tests/harness/Scenario.h"
#include "tests/workspace/Seeds.h"

#include <functional>
#include <initializer_list>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace kova {

struct Operation {
    std::string name;
    std::uint32_t number = 0;
};
using Operations = std::vector<Operation>;

class RandomWalk {
  public:
    explicit RandomWalk(std::uint32_t seed);
    virtual ~RandomWalk() = default;
    RandomWalk(const RandomWalk&) = delete;
    RandomWalk& operator=(const RandomWalk&) = delete;

    virtual Operations anyOperations() = 0;
    /// Carries out the operations in order. Stops as soon as `hasFailed` returns true.
    void run(const Operations& operations, const std::function<bool()>& hasFailed);
    /// The operations so far, with a picture of the desktop after each of them.
    const std::string& story() const { return story_; }

  protected:
    virtual void begin() = 0;
    /// Carries out an operation, waits and checks.
    virtual void step(const std::string& name) = 0;
    /// Checks after the last operation.
    virtual void end() = 0;
    // Choices for operations of the user
    virtual CGRect anyFrameFor(const std::string& /*label*/) { return anyFrame(); }
    virtual WindowTraits anyTraits() { return {.frame = anyFrame()}; }
    virtual bool mayDrag(const std::string& /*label*/) { return true; }
    /// Called during a drag, while the pointer does not move.
    virtual void pauseDrag() {}

    void perform(const std::string& name) { kinds_.at(name)(); }
    void act(const WorkspaceAction& action) { desk_.controller().perform(action); }
    bool isMac() const { return !desk_.desktop.announcesWithoutRequest(); }
    static std::string applicationOf(const std::string& label) { return label.substr(0, label.find(' ')); }

    // Random choices
    std::size_t below(std::size_t count) { return random_() % count; }
    double number(std::size_t count) { return static_cast<double>(below(count)); }
    bool chance(std::size_t oneIn) { return below(oneIn) == 0; }
    template <class T>
    T anyOf(std::initializer_list<T> choices) {
        return *(choices.begin() + below(choices.size()));
    }
    Operations draw(std::size_t count, const std::function<std::string()>& anyName);
    WorkspaceDirection anyDirection();
    /// A frame whose corner is on a display, if there is a display.
    CGRect anyFrame();
    // Each of these calls `use` for a random window, display or divider, or does nothing if there is none.
    using UseName = std::function<void(const std::string&)>; // is passed the label of a window or the name of a display
    void withAnyWindow(const UseName& use);
    void withAnyDisplay(const UseName& use);
    void withAnyDivider(const std::function<void(const DisplayLayoutDivider&)>& use);

    static constexpr std::size_t kMostWindows = 12;
    Scenario desk_;
    std::string story_;
    using Kinds = std::map<std::string, std::function<void()>>; // by name
    Kinds kinds_;
    // Operations that apply `use` to a random window or display.
    std::function<void()> toWindow(UseName use);
    std::function<void()> toDisplay(UseName use);

  private:
    void openWindow();
    void openScene();
    void commandWindow();
    void pressWindow(const std::string& label);
    void dragDivider(const DisplayLayoutDivider& divider);
    void dragWindow(const std::string& label);

    const std::uint32_t seed_;
    std::mt19937 random_;
};

using MakeWalk = std::function<std::unique_ptr<RandomWalk>(std::uint32_t seed)>;

/// Runs one walk per seed, for `usualCount` seeds if KOVA_RANDOM_DAYS is not set. After a failure, reports the shortest
/// list of operations that was found to fail at the same check. `name` is the name of the walk's class.
void runWalks(std::uint32_t usualCount, const char* name, const MakeWalk& make);
void replay(const MakeWalk& make, std::uint32_t seed, const Operations& operations);

template <class Walk>
void runWalks(std::uint32_t usualCount, const char* name) {
    runWalks(usualCount, name, [](std::uint32_t seed) { return std::make_unique<Walk>(seed); });
}
template <class Walk>
void replay(std::uint32_t seed, const Operations& operations) {
    replay([](std::uint32_t each) { return std::make_unique<Walk>(each); }, seed, operations);
}

} // namespace kova
