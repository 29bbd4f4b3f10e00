#include "platform/macos/MenuBar.h"

#include "platform/macos/Contained.h"

#import <AppKit/AppKit.h>

/// Fills the menu when it opens, and passes on what is chosen.
@interface KOVAMenuBarTarget : NSObject <NSMenuDelegate>
- (instancetype)initWithContent:(kova::KovaMenuBarContent&)content;
/// From now on nobody is asked and nobody is told.
- (void)detach;
@end

@implementation KOVAMenuBarTarget {
    kova::KovaMenuBarContent* _content; // null once detached
}

- (instancetype)initWithContent:(kova::KovaMenuBarContent&)content {
    self = [super init];
    if (self) _content = &content;
    return self;
}

- (void)detach {
    _content = nullptr;
}

- (void)menuNeedsUpdate:(NSMenu*)menu {
    kova::macos::contained([&] {
        [menu removeAllItems];
        if (self->_content) [self fill:menu with:self->_content->entries()];
    });
}

- (void)fill:(NSMenu*)menu with:(const std::vector<kova::MenuEntry>&)entries {
    menu.autoenablesItems = NO;
    for (const auto& entry : entries) [menu addItem:[self itemFor:entry]];
}

- (NSMenuItem*)itemFor:(const kova::MenuEntry&)entry {
    if (entry.kind == kova::MenuEntry::Kind::separator) return [NSMenuItem separatorItem];
    NSMenuItem* item = [[NSMenuItem alloc] initWithTitle:kova::macos::nsString(entry.title)
                                                  action:nil
                                           keyEquivalent:@""];
    item.enabled = entry.isEnabled;
    item.state = entry.isChecked ? NSControlStateValueOn : NSControlStateValueOff;
    if (entry.kind == kova::MenuEntry::Kind::submenu) {
        NSMenu* submenu = [[NSMenu alloc] initWithTitle:item.title];
        [self fill:submenu with:entry.entries];
        item.submenu = submenu;
    } else if (entry.kind == kova::MenuEntry::Kind::command) {
        item.target = self;
        item.action = @selector(choose:);
        item.representedObject = kova::macos::nsString(entry.id);
        if (entry.shortcut) {
            item.keyEquivalent = kova::macos::nsString(kova::menuKeyEquivalent(*entry.shortcut));
            // The numbers are the system's own.
            item.keyEquivalentModifierMask = static_cast<NSEventModifierFlags>(entry.shortcut->modifierFlagsRawValue);
        }
    }
    return item;
}

- (void)choose:(NSMenuItem*)item {
    kova::macos::contained([&] {
        NSString* chosen = item.representedObject;
        if (self->_content) self->_content->choose(kova::macos::text(chosen));
    });
}

@end

namespace kova::macos {

struct MenuBar::Parts {
    explicit Parts(KovaMenuBarContent& content) :
        target([[KOVAMenuBarTarget alloc] initWithContent:content]),
        item([NSStatusBar.systemStatusBar statusItemWithLength:NSVariableStatusItemLength]) {
        NSImage* symbol = [NSImage imageWithSystemSymbolName:@"rectangle.3.group" accessibilityDescription:@"KOVA"];
        if (symbol) {
            item.button.image = symbol;
        } else {
            item.button.title = @"KOVA";
        }
        NSMenu* menu = [[NSMenu alloc] initWithTitle:@"KOVA"];
        menu.delegate = target; // not owned by the menu
        item.menu = menu;
    }
    ~Parts() {
        [target detach];
        [NSStatusBar.systemStatusBar removeStatusItem:item];
    }
    Parts(const Parts&) = delete;
    Parts& operator=(const Parts&) = delete;

    KOVAMenuBarTarget* target;
    NSStatusItem* item;
};

MenuBar::MenuBar(KovaMenuBarContent& content) : parts_(std::make_unique<Parts>(content)) {}

MenuBar::~MenuBar() = default;

} // namespace kova::macos
