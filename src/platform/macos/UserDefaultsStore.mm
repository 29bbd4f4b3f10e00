#include "platform/macos/UserDefaultsStore.h"

#include "platform/macos/Contained.h"
#include "platform/macos/CoreFoundation.h"
#include "support/Dates.h"
#include "support/Log.h"
#include "support/Overloaded.h"

#include <chrono>
#include <functional>
#include <memory>
#include <utility>

namespace kova::macos {

namespace {

/// In Foundation booleans are objects of the class NSNumber. This function distinguishes them from other numbers.
bool isBoolean(id object) {
    return CFGetTypeID((__bridge CFTypeRef)object) == CFBooleanGetTypeID();
}

id object(const PreferenceValue& value) {
    return std::visit(Overloaded{[](bool flag) -> id { return @(flag); },
                                 [](const std::string& word) -> id { return nsString(word); },
                                 [](const PreferenceData& data) -> id {
                                     return [NSData dataWithBytes:data.json.data() length:data.json.size()];
                                 }},
                      value);
}

} // namespace

std::optional<PreferenceValue> UserDefaultsStore::value(std::string_view key) const {
    @autoreleasepool {
        id stored = [NSUserDefaults.standardUserDefaults objectForKey:nsString(key)];
        if (!stored) return std::nullopt;
        if (isBoolean(stored)) return [stored boolValue] != NO;
        if ([stored isKindOfClass:NSString.class]) return text(stored);
        if (![stored isKindOfClass:NSData.class]) return std::nullopt;
        NSData* bytes = stored;
        return PreferenceData{{static_cast<const char*>(bytes.bytes), bytes.length}};
    }
}

bool UserDefaultsStore::contains(std::string_view key) const {
    @autoreleasepool {
        return [NSUserDefaults.standardUserDefaults objectForKey:nsString(key)] != nil;
    }
}

void UserDefaultsStore::setValue(std::string_view key, PreferenceValue value) {
    @autoreleasepool {
        keepCopy(key);
        [NSUserDefaults.standardUserDefaults setObject:object(value) forKey:nsString(key)];
    }
}

void UserDefaultsStore::removeValue(std::string_view key) {
    @autoreleasepool {
        keepCopy(key);
        [NSUserDefaults.standardUserDefaults removeObjectForKey:nsString(key)];
    }
}

void UserDefaultsStore::save(SaveHandler done) {
    const auto finish =
        std::make_shared<std::function<void(bool)>>(lifetime_.guard([this, done = std::move(done)](bool isWritten) {
            noteWritten(isWritten);
            done(isWritten ? std::nullopt : std::optional(writeProblem_));
        }));
    // CFPreferencesAppSynchronize waits for the preferences daemon, so it is not called on the main thread.
    dispatch_async(dispatch_get_global_queue(QOS_CLASS_USER_INITIATED, 0), ^{
      const bool isWritten = CFPreferencesAppSynchronize(kCFPreferencesCurrentApplication) != 0;
      dispatch_async(dispatch_get_main_queue(), ^{
        contained([&] { (*finish)(isWritten); });
      });
    });
}

void UserDefaultsStore::synchronize() {
    noteWritten(CFPreferencesAppSynchronize(kCFPreferencesCurrentApplication) != 0);
}

void UserDefaultsStore::noteWritten(bool isWritten) {
    writeProblem_ = isWritten ? "" : "The system could not write the preferences";
}

void UserDefaultsStore::noteUnusable(std::string_view key, const std::string& reason) {
    if (unusable_.note(key, reason)) log(LogLevel::warning, unusable_.texts().back());
}

void UserDefaultsStore::keepCopy(std::string_view key) {
    if (!unusable_.notKept().contains(key)) return;
    id stored = [NSUserDefaults.standardUserDefaults objectForKey:nsString(key)];
    const auto now = std::chrono::floor<std::chrono::microseconds>(std::chrono::system_clock::now());
    const std::string copy = std::string(key) + ".damaged-" + localDateStamp(now);
    if (stored) [NSUserDefaults.standardUserDefaults setObject:stored forKey:nsString(copy)];
    unusable_.keptAt({std::string(key)}, copy);
}

std::vector<std::string> UserDefaultsStore::problems() const {
    std::vector<std::string> all = unusable_.texts();
    if (!writeProblem_.empty()) all.push_back(writeProblem_);
    return all;
}

} // namespace kova::macos
