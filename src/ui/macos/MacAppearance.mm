#include "ui/macos/MacAppearance.h"

#import <AppKit/AppKit.h>

@interface KOVAAppearanceObserver : NSObject
- (instancetype)initWithObserver:(std::function<void()>)observer;
/// Ends the observation.
- (void)stop;
@end

@implementation KOVAAppearanceObserver {
    std::function<void()> _observer;
}

- (instancetype)initWithObserver:(std::function<void()>)observer {
    self = [super init];
    if (self) {
        _observer = std::move(observer);
        [NSApp addObserver:self forKeyPath:@"effectiveAppearance" options:0 context:nil];
        [NSWorkspace.sharedWorkspace.notificationCenter
            addObserver:self
               selector:@selector(optionsChanged:)
                   name:NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification
                 object:nil];
    }
    return self;
}

- (void)stop {
    [NSApp removeObserver:self forKeyPath:@"effectiveAppearance"];
    [NSWorkspace.sharedWorkspace.notificationCenter removeObserver:self];
}

- (void)observeValueForKeyPath:(NSString*)__unused path
                      ofObject:(id)__unused object
                        change:(NSDictionary<NSKeyValueChangeKey, id>*)__unused change
                       context:(void*)__unused context {
    _observer();
}

- (void)optionsChanged:(NSNotification*)__unused notification {
    _observer();
}

@end

namespace kova::ui {

namespace {

Brightness brightness() {
    NSString* best = [NSApp.effectiveAppearance
        bestMatchFromAppearancesWithNames:@[ NSAppearanceNameAqua, NSAppearanceNameDarkAqua ]];
    return [best isEqualToString:NSAppearanceNameDarkAqua] ? Brightness::dark : Brightness::light;
}

struct Observation {
    explicit Observation(std::function<void()> observer) :
        observer([[KOVAAppearanceObserver alloc] initWithObserver:std::move(observer)]) {}
    Observation(const Observation&) = delete;
    Observation& operator=(const Observation&) = delete;
    ~Observation() { [observer stop]; }

    KOVAAppearanceObserver* observer;
};

} // namespace

std::shared_ptr<const void> followAppearance(std::function<void(Brightness, bool areAnimationsEnabled)> follower) {
    const auto notify = [follower = std::move(follower)] {
        follower(brightness(), !NSWorkspace.sharedWorkspace.accessibilityDisplayShouldReduceMotion);
    };
    notify();
    return std::make_shared<Observation>(notify);
}

} // namespace kova::ui
