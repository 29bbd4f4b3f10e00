#include "platform/macos/MenuBar.h"

#include "platform/macos/Contained.h"
#include "platform/macos/Modal.h"

#import <AppKit/AppKit.h>

/// Fills the menu when it opens, and reports the chosen entry to the content.
@interface KOVAMenuBarTarget : NSObject <NSMenuDelegate>
- (instancetype)initWithContent:(kova::KovaMenuBarContent&)content;
/// Stops using the content, which may be destroyed afterwards.
- (void)detach;
@end

@implementation KOVAMenuBarTarget {
    kova::KovaMenuBarContent* _content; // null after `detach`
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
            // A KovaShortcut has the same modifier bits as the system.
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
        showSymbol();
        symbolChanges = content.observeSymbol([this, &content] { showSymbol(content.symbol()); });
        NSMenu* menu = [[NSMenu alloc] initWithTitle:@"KOVA"];
        menu.delegate = target; // the menu does not own its delegate; `target` does
        item.menu = menu;
    }
    /// Shows the symbol, or the name on a system that lacks the symbol.
    void showSymbol(MenuBarSymbol symbol = MenuBarSymbol::usual) {
        NSString* name = symbol == MenuBarSymbol::message ? @"rectangle.3.group.fill" : @"rectangle.3.group";
        NSImage* image = [NSImage imageWithSystemSymbolName:name accessibilityDescription:@"KOVA"];
        item.button.image = image;
        item.button.title = image ? @"" : @"KOVA";
    }
    ~Parts() {
        [target detach];
        [NSStatusBar.systemStatusBar removeStatusItem:item];
    }
    Parts(const Parts&) = delete;
    Parts& operator=(const Parts&) = delete;

    KOVAMenuBarTarget* target;
    NSStatusItem* item;
    Subscription symbolChanges;
};

MenuBar::MenuBar(KovaMenuBarContent& content) : parts_(std::make_unique<Parts>(content)) {}

MenuBar::~MenuBar() = default;

void MenuBar::open() {
    // A click runs the menu's own event loop until the menu closes. So the click is not made now, within another event,
    // but by the main run loop.
    __weak NSStatusItem* item = parts_->item;
    [NSRunLoop.mainRunLoop performInModes:@[ NSDefaultRunLoopMode ]
                                    block:^{
                                      [item.button performClick:nil];
                                      returnActivationSoon(); // KOVA became active when it was opened
                                    }];
}

} // namespace kova::macos
