#include "platform/macos/UserDefaultsStore.h"

#include "platform/macos/CoreFoundation.h"
#include "support/Overloaded.h"

namespace kova::macos {

namespace {

/// A boolean is a number to Foundation, but a number is no boolean.
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

void UserDefaultsStore::setValue(std::string_view key, PreferenceValue value) {
    @autoreleasepool {
        [NSUserDefaults.standardUserDefaults setObject:object(value) forKey:nsString(key)];
    }
}

void UserDefaultsStore::removeValue(std::string_view key) {
    @autoreleasepool {
        [NSUserDefaults.standardUserDefaults removeObjectForKey:nsString(key)];
    }
}

void UserDefaultsStore::synchronize() {
    const bool isWritten = CFPreferencesAppSynchronize(kCFPreferencesCurrentApplication) != 0;
    problem_ = isWritten ? "" : "The system could not write the preferences";
}

} // namespace kova::macos
