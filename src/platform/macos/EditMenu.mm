#include "platform/macos/EditMenu.h"

#import <AppKit/AppKit.h>

namespace kova::macos {

void installEditMenu() {
    NSMenu* edit = [[NSMenu alloc] initWithTitle:@"Edit"];
    // Entries without a target act on the field that has the keyboard focus.
    [edit addItemWithTitle:@"Undo" action:NSSelectorFromString(@"undo:") keyEquivalent:@"z"];
    [edit addItemWithTitle:@"Redo" action:NSSelectorFromString(@"redo:") keyEquivalent:@"Z"];
    [edit addItem:[NSMenuItem separatorItem]];
    [edit addItemWithTitle:@"Cut" action:@selector(cut:) keyEquivalent:@"x"];
    [edit addItemWithTitle:@"Copy" action:@selector(copy:) keyEquivalent:@"c"];
    [edit addItemWithTitle:@"Paste" action:@selector(paste:) keyEquivalent:@"v"];
    [edit addItemWithTitle:@"Select All" action:@selector(selectAll:) keyEquivalent:@"a"];

    NSMenu* main = [[NSMenu alloc] initWithTitle:@"KOVA"];
    [main addItemWithTitle:@"KOVA" action:nil keyEquivalent:@""]; // the first entry is the application's own menu
    [main addItemWithTitle:@"Edit" action:nil keyEquivalent:@""].submenu = edit;
    NSApp.mainMenu = main;
}

} // namespace kova::macos
