// An application with ordinary windows, for the contract tests on a Mac. With "--commands" it reads commands from
// standard input, one per line with words separated by tabs, and prints one line for each command. Without
// "--commands" it opens a window with the program's name as its title.
//
//   open TITLE X Y WIDTH HEIGHT MINWIDTH MINHEIGHT   move TITLE X Y WIDTH HEIGHT   retitle TITLE NEWTITLE
//   close TITLE   minimize TITLE   frame TITLE
//
// Frames are relative to the top left of the first screen.
#import <AppKit/AppKit.h>

#include <cstdio>
#include <iostream>
#include <string>
#include <thread>

static NSMutableDictionary<NSString*, NSWindow*>* windows;

/// Converts between the system's coordinates, in which y grows upwards, and those of the commands.
static NSRect flipped(NSRect frame) {
    frame.origin.y = NSMaxY(NSScreen.screens.firstObject.frame) - NSMaxY(frame);
    return frame;
}

static NSRect frameIn(NSArray<NSString*>* words, NSUInteger first) {
    return NSMakeRect(words[first].doubleValue, words[first + 1].doubleValue, words[first + 2].doubleValue,
                      words[first + 3].doubleValue);
}

static void open(NSString* title, NSRect frame, NSSize minimumSize) {
    const NSWindowStyleMask style = NSWindowStyleMaskTitled | NSWindowStyleMaskClosable |
                                    NSWindowStyleMaskMiniaturizable | NSWindowStyleMaskResizable;
    NSWindow* window = [[NSWindow alloc] initWithContentRect:NSMakeRect(0, 0, 400, 300)
                                                   styleMask:style
                                                     backing:NSBackingStoreBuffered
                                                       defer:NO];
    window.releasedWhenClosed = NO;
    window.title = title;
    if (minimumSize.width > 0) window.minSize = minimumSize;
    [window setFrame:flipped(frame) display:YES];
    [window makeKeyAndOrderFront:nil];
    [NSApp activateIgnoringOtherApps:YES];
    windows[title] = window;
}

static NSString* carryOut(NSArray<NSString*>* words) {
    NSString* title = words.count > 1 ? words[1] : @"";
    NSWindow* window = windows[title];
    NSString* command = words.firstObject;
    if ([command isEqualToString:@"open"] && words.count == 8) {
        open(title, frameIn(words, 2), NSMakeSize(words[6].doubleValue, words[7].doubleValue));
    } else if (!window) {
        return @"no such window";
    } else if ([command isEqualToString:@"move"] && words.count == 6) {
        [window setFrame:flipped(frameIn(words, 2)) display:YES];
    } else if ([command isEqualToString:@"retitle"] && words.count == 3) {
        window.title = words[2];
        windows[words[2]] = window;
        [windows removeObjectForKey:title];
    } else if ([command isEqualToString:@"close"]) {
        [window close];
        [windows removeObjectForKey:title];
    } else if ([command isEqualToString:@"minimize"]) {
        [window miniaturize:nil];
    } else if ([command isEqualToString:@"frame"]) {
        const NSRect frame = flipped(window.frame);
        return [NSString
            stringWithFormat:@"%f\t%f\t%f\t%f", frame.origin.x, frame.origin.y, frame.size.width, frame.size.height];
    } else {
        return @"no such command";
    }
    return @"done";
}

static void listen() {
    std::thread([] {
        for (std::string line; std::getline(std::cin, line);) {
            NSString* text = [NSString stringWithUTF8String:line.c_str()];
            dispatch_sync(dispatch_get_main_queue(), ^{
              std::printf("%s\n", carryOut([text componentsSeparatedByString:@"\t"]).UTF8String);
              std::fflush(stdout);
            });
        }
        dispatch_async(dispatch_get_main_queue(), ^{
          [NSApp terminate:nil];
        });
    }).detach();
}

int main(int argc, char** argv) {
    @autoreleasepool {
        windows = [NSMutableDictionary dictionary];
        [NSApplication sharedApplication];
        [NSApp setActivationPolicy:NSApplicationActivationPolicyRegular];
        if (argc > 1 && std::string(argv[1]) == "--commands") {
            listen();
        } else {
            dispatch_async(dispatch_get_main_queue(), ^{
              open(NSProcessInfo.processInfo.processName, NSMakeRect(200, 200, 400, 300), NSZeroSize);
            });
        }
        [NSApp run];
    }
    return 0;
}
