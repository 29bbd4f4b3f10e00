#include "platform/macos/DocumentPanels.h"

#include "platform/macos/Contained.h"
#include "platform/macos/Modal.h"

#import <AppKit/AppKit.h>
#if __has_include(<UniformTypeIdentifiers/UniformTypeIdentifiers.h>)
#import <UniformTypeIdentifiers/UniformTypeIdentifiers.h>
#else
// A set of headers without this framework, as used to check the sources elsewhere.
@interface UTType : NSObject
+ (nullable instancetype)typeWithIdentifier:(nonnull NSString*)identifier;
@end
#endif

namespace kova::macos {

namespace {

void run(NSSavePanel* panel, std::function<void(const std::string&)> chosen) {
    UTType* json = [UTType typeWithIdentifier:@"public.json"];
    if (json) panel.allowedContentTypes = @[ json ];
    comeToFront();
    [panel beginWithCompletionHandler:^(NSModalResponse response) {
      contained([&] {
          if (response == NSModalResponseOK && panel.URL) chosen(text(panel.URL.path));
      });
    }];
}

} // namespace

void chooseWhereToExport(const std::string& proposedName, std::function<void(const std::string& path)> chosen) {
    NSSavePanel* panel = [NSSavePanel savePanel];
    panel.nameFieldStringValue = nsString(proposedName);
    run(panel, std::move(chosen));
}

void chooseWhatToImport(std::function<void(const std::string& path)> chosen) {
    NSOpenPanel* panel = [NSOpenPanel openPanel];
    panel.canChooseDirectories = NO;
    panel.allowsMultipleSelection = NO;
    run(panel, std::move(chosen));
}

std::string writeWholeFile(const std::string& path, const std::string& bytes) {
    @autoreleasepool {
        NSError* error = nil;
        NSData* data = [NSData dataWithBytes:bytes.data() length:bytes.size()];
        if ([data writeToFile:nsString(path) options:NSDataWritingAtomic error:&error]) return {};
        return error ? text(error.localizedDescription) : "the system gave no reason";
    }
}

FileContents readWholeFile(const std::string& path) {
    @autoreleasepool {
        NSError* error = nil;
        NSData* data = [NSData dataWithContentsOfFile:nsString(path) options:NSDataReadingOptions(0) error:&error];
        if (data) return {{static_cast<const char*>(data.bytes), data.length}, {}};
        return {{}, error ? text(error.localizedDescription) : "the system gave no reason"};
    }
}

} // namespace kova::macos
