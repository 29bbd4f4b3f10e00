// The Mac's virtual key codes: numbers for positions on the keyboard. Letters, digits and punctuation have the names of
// the American keyboard; a key keeps its number with every layout.
#pragma once

#include <cstdint>
#include <string_view>

namespace kova {

namespace keyCode {

inline constexpr std::uint16_t a = 0, s = 1, d = 2, f = 3, h = 4, g = 5, z = 6, x = 7, c = 8, v = 9, b = 11, q = 12,
                               w = 13, e = 14, r = 15, y = 16, t = 17, o = 31, u = 32, i = 34, p = 35, l = 37, j = 38,
                               k = 40, n = 45, m = 46;
inline constexpr std::uint16_t one = 18, two = 19, three = 20, four = 21, six = 22, five = 23, nine = 25, seven = 26,
                               eight = 28, zero = 29;
inline constexpr std::uint16_t equals = 24, minus = 27, rightBracket = 30, leftBracket = 33, quote = 39, semicolon = 41,
                               backslash = 42, comma = 43, slash = 44, period = 47, grave = 50;
inline constexpr std::uint16_t isoSection = 10; // beside the left Shift, where a keyboard has a key there
inline constexpr std::uint16_t jisYen = 93, jisUnderscore = 94, jisKeypadComma = 95, jisEisu = 102, jisKana = 104;
inline constexpr std::uint16_t returnKey = 36, tab = 48, space = 49, deleteBackward = 51, escape = 53,
                               deleteForward = 117, insert = 114, home = 115, end = 119, pageUp = 116, pageDown = 121,
                               left = 123, right = 124, down = 125, up = 126, contextualMenu = 110;
inline constexpr std::uint16_t capsLock = 57, volumeUp = 72, volumeDown = 73, mute = 74;
inline constexpr std::uint16_t keypadDecimal = 65, keypadMultiply = 67, keypadPlus = 69, keypadClear = 71,
                               keypadDivide = 75, keypadEnter = 76, keypadMinus = 78, keypadEquals = 81, keypad0 = 82,
                               keypad1 = 83, keypad2 = 84, keypad3 = 85, keypad4 = 86, keypad5 = 87, keypad6 = 88,
                               keypad7 = 89, keypad8 = 91, keypad9 = 92;
inline constexpr std::uint16_t f1 = 122, f2 = 120, f3 = 99, f4 = 118, f5 = 96, f6 = 97, f7 = 98, f8 = 100, f9 = 101,
                               f10 = 109, f11 = 103, f12 = 111, f13 = 105, f14 = 107, f15 = 113, f16 = 106, f17 = 64,
                               f18 = 79, f19 = 80, f20 = 90;

/// Larger than every key code.
inline constexpr std::uint16_t limit = 128;

} // namespace keyCode

/// The key's character on an American keyboard without Shift; empty if there is none.
std::string_view americanCharacterOf(std::uint16_t keyCode);

} // namespace kova
