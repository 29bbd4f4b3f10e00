// `Owned` releases the objects that Create and Copy functions of the system return. Other functions convert text.
// Objective-C++ only.
#pragma once

#import <Foundation/Foundation.h>

#if !__has_feature(objc_arc)
#error "Objects are released by automatic reference counting only: compile with -fobjc-arc"
#endif

#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace kova::macos {

/// Owns one reference to a CoreFoundation object; empty when there is none.
template <class Ref>
class Owned {
  public:
    Owned() = default;
    /// Takes over the caller's reference.
    static Owned adopt(Ref given) { return Owned(given); }
    /// Adds a reference to the object; the caller keeps its own.
    static Owned retain(Ref shared) { return Owned(shared ? static_cast<Ref>(CFRetain(shared)) : Ref{}); }

    Owned(const Owned& other) : Owned(retain(other.ref_)) {}
    Owned(Owned&& other) noexcept : ref_(std::exchange(other.ref_, Ref{})) {}
    Owned& operator=(Owned other) noexcept {
        std::swap(ref_, other.ref_);
        return *this;
    }
    ~Owned() {
        if (ref_) CFRelease(ref_);
    }

    Ref get() const { return ref_; }
    explicit operator bool() const { return ref_ != Ref{}; }
    /// For functions that return a reference through a pointer. Call only while this is empty.
    Ref* receiver() { return &ref_; }

  private:
    explicit Owned(Ref ref) : ref_(ref) {}
    Ref ref_{};
};

/// Returns a further reference to the object, as a type that portable code can use.
inline std::shared_ptr<const void> shared(CFTypeRef object) {
    if (!object) return nullptr;
    return {CFRetain(object), [](const void* held) { CFRelease(held); }};
}

/// Returns the text as UTF-8. Unpaired surrogates, which UTF-8 cannot express, are replaced. Empty for nil.
inline std::string text(NSString* string) {
    NSData* bytes = [string dataUsingEncoding:NSUTF8StringEncoding allowLossyConversion:YES];
    return bytes ? std::string(static_cast<const char*>(bytes.bytes), bytes.length) : std::string();
}

/// Returns an empty string if the text is not valid UTF-8.
inline NSString* nsString(std::string_view text) {
    NSString* made = [[NSString alloc] initWithBytes:text.data() length:text.size() encoding:NSUTF8StringEncoding];
    return made ? made : @"";
}

} // namespace kova::macos
