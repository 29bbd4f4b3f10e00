#include "commands/Intents.h"

namespace kova {

namespace {

/// Encodes all bytes except ASCII letters, digits and “-._~”, which have no other meaning in URLs.
std::string percentEncoded(std::string_view text) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    constexpr std::string_view kPlain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";
    std::string out;
    for (const char c : text) {
        if (kPlain.find(c) != std::string_view::npos) {
            out += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        out += '%';
        out += kDigits[byte >> 4U];
        out += kDigits[byte & 0xFU];
    }
    return out;
}

} // namespace

std::string intentURL(const Intent& intent, std::string_view value) {
    return std::string(intent.url) + (intent.parameter ? percentEncoded(value) : "");
}

std::string intentDialog(const Intent& intent, std::string_view value) {
    const std::string named(intent.parameter ? value : "");
    return std::string(intent.dialog.before) + named + std::string(intent.dialog.after);
}

} // namespace kova
