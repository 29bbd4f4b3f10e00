#include "platform/macos/MacDocumentPanels.h"

#include "platform/macos/Contained.h"
#include "platform/macos/Modal.h"

#import <AppKit/AppKit.h>
#if __has_include(<UniformTypeIdentifiers/UniformTypeIdentifiers.h>)
#import <UniformTypeIdentifiers/UniformTypeIdentifiers.h>
#else
// For a syntax check with copies of the SDK's headers that lack this framework.
@interface UTType : NSObject
+ (nullable instancetype)typeWithIdentifier:(nonnull NSString*)identifier;
@end
#endif

namespace kova::macos {

namespace {

/// Shows the panel and returns. `chosen` is called on the main thread with the path of the chosen file, and not at all
/// if the user cancels.
void show(NSSavePanel* panel, std::function<void(const std::string& path)> chosen) {
    UTType* json = [UTType typeWithIdentifier:@"public.json"];
    if (json) panel.allowedContentTypes = @[ json ];
    bringToFront(panel);
    [panel beginWithCompletionHandler:^(NSModalResponse response) {
      returnActivationSoon();
      contained([&] {
          NSURL* url = panel.URL;
          if (response == NSModalResponseOK && url) chosen(text(url.path));
      });
    }];
}

FileProblem problem(NSError* error) {
    return {error ? text(error.localizedDescription) : "The system gave no reason"};
}

std::optional<FileProblem> write(const std::string& path, const std::string& bytes) {
    NSError* error = nil;
    NSData* data = [NSData dataWithBytes:bytes.data() length:bytes.size()];
    if ([data writeToFile:nsString(path) options:NSDataWritingAtomic error:&error]) return std::nullopt;
    return problem(error);
}

std::variant<std::string, FileProblem> read(const std::string& path) {
    NSError* error = nil;
    NSData* data = [NSData dataWithContentsOfFile:nsString(path) options:NSDataReadingOptions(0) error:&error];
    if (!data) return problem(error);
    return std::string(static_cast<const char*>(data.bytes), data.length);
}

} // namespace

void MacDocumentPanels::saveDocument(const std::string& proposedName, std::string json,
                                     std::function<void(const std::optional<FileProblem>&)> completion) {
    NSSavePanel* panel = [NSSavePanel savePanel];
    panel.nameFieldStringValue = nsString(proposedName);
    show(panel, lifetime_.guard([this, json = std::move(json),
                                 finish = lifetime_.guard(std::move(completion))](const std::string& path) {
        diskQueue_.post([&queue = queue_, path, json, finish] {
            queue.post([finish, outcome = write(path, json)]() mutable { finish(outcome); });
        });
    }));
}

void MacDocumentPanels::openDocument(std::function<void(const std::variant<std::string, FileProblem>&)> completion) {
    NSOpenPanel* panel = [NSOpenPanel openPanel];
    panel.canChooseDirectories = NO;
    panel.allowsMultipleSelection = NO;
    show(panel, lifetime_.guard([this, finish = lifetime_.guard(std::move(completion))](const std::string& path) {
        diskQueue_.post(
            [&queue = queue_, path, finish] { queue.post([finish, file = read(path)]() mutable { finish(file); }); });
    }));
}

} // namespace kova::macos
