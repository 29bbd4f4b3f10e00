#include "platform/x11/X11KeyboardMap.h"

#include "platform/x11/XkbProtocol.h"
#include "windowing/KeyCodes.h"

#include <xkbcommon/xkbcommon.h>

#include <algorithm>
#include <cstring>

namespace kova::x11 {

namespace {

struct NamedKey {
    std::string_view name;
    std::uint16_t code;
};

/// Maps keys by position, which is correct for every layout. The key left of the digit 1 counts as the American accent
/// key, and the key beside the left Shift as the additional key of European keyboards.
constexpr std::array kKeyNames = std::to_array<NamedKey>({
    {"TLDE", keyCode::grave},
    {"AE01", keyCode::one},
    {"AE02", keyCode::two},
    {"AE03", keyCode::three},
    {"AE04", keyCode::four},
    {"AE05", keyCode::five},
    {"AE06", keyCode::six},
    {"AE07", keyCode::seven},
    {"AE08", keyCode::eight},
    {"AE09", keyCode::nine},
    {"AE10", keyCode::zero},
    {"AE11", keyCode::minus},
    {"AE12", keyCode::equals},
    {"AE13", keyCode::jisYen},
    {"BKSP", keyCode::deleteBackward},
    {"TAB", keyCode::tab},
    {"AD01", keyCode::q},
    {"AD02", keyCode::w},
    {"AD03", keyCode::e},
    {"AD04", keyCode::r},
    {"AD05", keyCode::t},
    {"AD06", keyCode::y},
    {"AD07", keyCode::u},
    {"AD08", keyCode::i},
    {"AD09", keyCode::o},
    {"AD10", keyCode::p},
    {"AD11", keyCode::leftBracket},
    {"AD12", keyCode::rightBracket},
    {"RTRN", keyCode::returnKey},
    {"CAPS", keyCode::capsLock},
    {"AC01", keyCode::a},
    {"AC02", keyCode::s},
    {"AC03", keyCode::d},
    {"AC04", keyCode::f},
    {"AC05", keyCode::g},
    {"AC06", keyCode::h},
    {"AC07", keyCode::j},
    {"AC08", keyCode::k},
    {"AC09", keyCode::l},
    {"AC10", keyCode::semicolon},
    {"AC11", keyCode::quote},
    {"BKSL", keyCode::backslash},
    {"AC12", keyCode::backslash},
    {"LSGT", keyCode::isoSection},
    {"AB01", keyCode::z},
    {"AB02", keyCode::x},
    {"AB03", keyCode::c},
    {"AB04", keyCode::v},
    {"AB05", keyCode::b},
    {"AB06", keyCode::n},
    {"AB07", keyCode::m},
    {"AB08", keyCode::comma},
    {"AB09", keyCode::period},
    {"AB10", keyCode::slash},
    {"AB11", keyCode::jisUnderscore},
    {"SPCE", keyCode::space},
    {"MUHE", keyCode::jisEisu},
    {"HJCV", keyCode::jisEisu},
    {"HENK", keyCode::jisKana},
    {"HNGL", keyCode::jisKana},
    {"ESC", keyCode::escape},
    {"LEFT", keyCode::left},
    {"RGHT", keyCode::right},
    {"UP", keyCode::up},
    {"DOWN", keyCode::down},
    {"HOME", keyCode::home},
    {"END", keyCode::end},
    {"PGUP", keyCode::pageUp},
    {"PGDN", keyCode::pageDown},
    {"INS", keyCode::insert},
    {"HELP", keyCode::insert},
    {"DELE", keyCode::deleteForward},
    {"COMP", keyCode::contextualMenu},
    {"MENU", keyCode::contextualMenu},
    {"FK01", keyCode::f1},
    {"FK02", keyCode::f2},
    {"FK03", keyCode::f3},
    {"FK04", keyCode::f4},
    {"FK05", keyCode::f5},
    {"FK06", keyCode::f6},
    {"FK07", keyCode::f7},
    {"FK08", keyCode::f8},
    {"FK09", keyCode::f9},
    {"FK10", keyCode::f10},
    {"FK11", keyCode::f11},
    {"FK12", keyCode::f12},
    {"FK13", keyCode::f13},
    {"FK14", keyCode::f14},
    {"FK15", keyCode::f15},
    {"FK16", keyCode::f16},
    {"FK17", keyCode::f17},
    {"FK18", keyCode::f18},
    {"FK19", keyCode::f19},
    {"FK20", keyCode::f20},
    {"NMLK", keyCode::keypadClear},
    {"KPDV", keyCode::keypadDivide},
    {"KPMU", keyCode::keypadMultiply},
    {"KPSU", keyCode::keypadMinus},
    {"KPAD", keyCode::keypadPlus},
    {"KPEN", keyCode::keypadEnter},
    {"KPEQ", keyCode::keypadEquals},
    {"KPDL", keyCode::keypadDecimal},
    {"KPPT", keyCode::jisKeypadComma},
    {"I129", keyCode::jisKeypadComma},
    {"JPCM", keyCode::jisKeypadComma},
    {"KP0", keyCode::keypad0},
    {"KP1", keyCode::keypad1},
    {"KP2", keyCode::keypad2},
    {"KP3", keyCode::keypad3},
    {"KP4", keyCode::keypad4},
    {"KP5", keyCode::keypad5},
    {"KP6", keyCode::keypad6},
    {"KP7", keyCode::keypad7},
    {"KP8", keyCode::keypad8},
    {"KP9", keyCode::keypad9},
    {"MUTE", keyCode::mute},
    {"VOL-", keyCode::volumeDown},
    {"VOL+", keyCode::volumeUp},
});

/// The accent of a dead key.
std::string_view accentOf(std::uint32_t symbol) {
    constexpr std::array<std::string_view, 13> kAccents = {"`", "´", "^", "~", "¯", "˘", "˙",
                                                           "¨", "˚", "˝", "ˇ", "¸", "˛"};
    const std::uint32_t place = symbol - XKB_KEY_dead_grave;
    return symbol >= XKB_KEY_dead_grave && place < kAccents.size() ? kAccents[place] : std::string_view();
}

std::string textOf(std::uint32_t symbol) {
    if (const auto accent = accentOf(symbol); !accent.empty()) return std::string(accent);
    std::array<char, 8> text{};
    const int length = xkb_keysym_to_utf8(symbol, text.data(), text.size());
    return length > 1 ? std::string(text.data(), static_cast<std::size_t>(length) - 1) : std::string();
}

/// The character for a key's symbols in one group, by level.
std::string charactersOf(const std::vector<std::uint32_t>& levels) {
    const auto isKeypadCharacter = [](std::uint32_t symbol) {
        return symbol >= XKB_KEY_KP_Multiply && symbol <= XKB_KEY_KP_Equal;
    };
    // On the keypad, uses the level with Num Lock, which has the digits; a Mac's keypad has no arrows.
    const auto found = std::ranges::find_if(levels, isKeypadCharacter);
    if (found != levels.end()) return textOf(*found);
    return levels.empty() ? std::string() : textOf(levels.front());
}

/// The group to use for `group`, which the key may not have.
std::size_t groupInRange(std::size_t group, std::size_t count, std::uint8_t outOfRangeGroups) {
    if (group < count) return group;
    const std::size_t redirected = (outOfRangeGroups >> 4) & 3U;
    switch (outOfRangeGroups & 0xC0) {
    case XCB_XKB_GROUPS_WRAP_CLAMP_INTO_RANGE:
        return count - 1;
    case XCB_XKB_GROUPS_WRAP_REDIRECT_INTO_RANGE:
        return redirected < count ? redirected : 0;
    default:
        return group % count;
    }
}

using Keys = std::array<KeyboardKey, KeyboardMap::kKeyCount>;

/// The bit that a key with one of these symbols sets; the lowest if there are several, 0 if there is none.
std::uint8_t modifierWith(const Keys& keys, std::initializer_list<std::uint32_t> wanted) {
    unsigned found = 0;
    for (const KeyboardKey& key : keys) {
        if (key.modifiers == 0) continue;
        for (const auto& group : key.symbols) {
            if (std::ranges::find_first_of(group, wanted) != group.end()) found |= key.modifiers;
        }
    }
    return static_cast<std::uint8_t>(found & (~found + 1));
}

} // namespace

std::optional<std::uint16_t> macKeyCodeNamed(std::string_view xkbName) {
    const auto found = std::ranges::find(kKeyNames, xkbName, &NamedKey::name);
    return found == kKeyNames.end() ? std::nullopt : std::optional(found->code);
}

KeyboardMap::KeyboardMap(const std::array<KeyboardKey, kKeyCount>& keys) {
    for (std::size_t code = 0; code < kKeyCount; ++code) {
        const KeyboardKey& key = keys[code];
        const auto macKeyCode = macKeyCodeNamed(key.name);
        // A modifier key, such as Caps Lock, cannot be the key of a shortcut.
        if (!macKeyCode || key.modifiers != 0) continue;
        Key& known = keys_.emplace_back();
        known.key = static_cast<xcb_keycode_t>(code);
        known.macKeyCode = *macKeyCode;
        known.outOfRangeGroups = key.outOfRangeGroups;
        for (const auto& levels : key.symbols) known.characters.push_back(charactersOf(levels));
    }
    option_ = modifierWith(keys, {XKB_KEY_Alt_L, XKB_KEY_Alt_R});
    if (option_ == 0) option_ = modifierWith(keys, {XKB_KEY_Meta_L, XKB_KEY_Meta_R});
    command_ = modifierWith(keys, {XKB_KEY_Super_L, XKB_KEY_Super_R});
    if (command_ == option_) command_ = 0; // if Alt and Super set the same modifier, it counts as Alt
    const unsigned shortcutModifiers = option_ | command_ | XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_CONTROL;
    unsigned locks = 0;
    for (const unsigned lock : {unsigned{XCB_MOD_MASK_LOCK}, unsigned{modifierWith(keys, {XKB_KEY_Num_Lock})},
                                unsigned{modifierWith(keys, {XKB_KEY_Scroll_Lock})}}) {
        if (lock == 0 || (lock & (shortcutModifiers | locks)) != 0) continue;
        locks |= lock;
        for (std::size_t i = 0, count = lockStates_.size(); i < count; ++i) {
            lockStates_.push_back(static_cast<std::uint16_t>(lockStates_[i] | lock));
        }
    }
}

std::optional<std::uint16_t> KeyboardMap::macKeyCode(xcb_keycode_t key) const {
    const auto found = std::ranges::find(keys_, key, &Key::key);
    return found == keys_.end() ? std::nullopt : std::optional(found->macKeyCode);
}

std::vector<xcb_keycode_t> KeyboardMap::keysOf(std::uint16_t macKeyCode) const {
    std::vector<xcb_keycode_t> found;
    for (const Key& key : keys_) {
        if (key.macKeyCode == macKeyCode) found.push_back(key.key);
    }
    return found;
}

std::string KeyboardMap::characters(std::uint16_t macKeyCode, std::uint8_t group) const {
    for (const Key& key : keys_) {
        if (key.macKeyCode != macKeyCode || key.characters.empty()) continue;
        const std::string& character = key.characters[groupInRange(group, key.characters.size(), key.outOfRangeGroups)];
        if (!character.empty()) return character;
    }
    return {};
}

std::uint64_t KeyboardMap::flagsOf(std::uint16_t state) const {
    std::uint64_t flags = 0;
    if (state & XCB_MOD_MASK_LOCK) flags |= modifierFlag::capsLock;
    if (state & XCB_MOD_MASK_SHIFT) flags |= modifierFlag::shift;
    if (state & XCB_MOD_MASK_CONTROL) flags |= modifierFlag::control;
    if (state & option_) flags |= modifierFlag::option;
    if (state & command_) flags |= modifierFlag::command;
    return flags;
}

std::optional<std::uint16_t> KeyboardMap::stateOf(std::uint64_t flags) const {
    struct Bit {
        std::uint64_t flag;
        unsigned mask;
    };
    unsigned state = 0;
    for (const Bit& bit :
         {Bit{modifierFlag::shift, XCB_MOD_MASK_SHIFT}, Bit{modifierFlag::control, XCB_MOD_MASK_CONTROL},
          Bit{modifierFlag::option, option_}, Bit{modifierFlag::command, command_}}) {
        if ((flags & bit.flag) == 0) continue;
        if (bit.mask == 0) return std::nullopt;
        state |= bit.mask;
    }
    return static_cast<std::uint16_t>(state);
}

KeyboardMap keyboardMapOf(const xcb_xkb_get_names_reply_t& names, const xcb_xkb_get_map_reply_t& map) {
    Keys keys{};
    xcb_xkb_get_names_value_list_t named{};
    xcb_xkb_get_names_value_list_unpack(xcb_xkb_get_names_value_list(&names), names.nTypes, names.indicators,
                                        names.virtualMods, names.groupNames, names.nKeys, names.nKeyAliases,
                                        names.nRadioGroups, names.which, &named);
    const bool hasNames = names.which & XCB_XKB_NAME_DETAIL_KEY_NAMES;
    for (std::size_t i = 0; hasNames && i < names.nKeys && names.firstKey + i < keys.size(); ++i) {
        const char* name = named.keyNames[i].name;
        keys[names.firstKey + i].name.assign(name, strnlen(name, sizeof named.keyNames[i].name));
    }

    xcb_xkb_get_map_map_t parts{};
    xcb_xkb_get_map_map_unpack(xcb_xkb_get_map_map(&map), map.nTypes, map.nKeySyms, map.nKeyActions, map.totalActions,
                               map.totalKeyBehaviors, map.virtualMods, map.totalKeyExplicit, map.totalModMapKeys,
                               map.totalVModMapKeys, map.present, &parts);
    if (map.present & XCB_XKB_MAP_PART_KEY_SYMS) {
        auto each = xcb_xkb_get_map_map_syms_rtrn_iterator(&map, &parts);
        for (std::size_t code = map.firstKeySym; each.rem > 0 && code < keys.size(); ++code) {
            const xcb_keysym_t* symbols = xcb_xkb_key_sym_map_syms(each.data);
            const std::size_t groups = each.data->groupInfo & 0x0F, width = each.data->width;
            KeyboardKey& key = keys[code];
            key.outOfRangeGroups = each.data->groupInfo & 0xF0;
            for (std::size_t group = 0; group < groups && (group + 1) * width <= each.data->nSyms; ++group) {
                key.symbols.emplace_back(symbols + group * width, symbols + (group + 1) * width);
            }
            xcb_xkb_key_sym_map_next(&each);
        }
    }
    if (map.present & XCB_XKB_MAP_PART_MODIFIER_MAP) {
        for (std::size_t i = 0; i < map.totalModMapKeys; ++i) {
            keys[parts.modmap_rtrn[i].keycode].modifiers = parts.modmap_rtrn[i].mods;
        }
    }
    return KeyboardMap(keys);
}

} // namespace kova::x11
