// The keys of the program and the table of the 210 actions that they are bound to.
//
// A key event is matched against the table; what an action does is known to the interface, by its index. The default
// bindings are built in. Keyb.cfg holds the user's own:
//
//     4 bytes version (1), 4 bytes count of records; then for each record 4 bytes index, 4 bytes key code and one byte
//     each for control, shift, alt, repeat and repeatEdit. Little-endian.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace vonta {

class FileStream;

// Our own numbers, not those of the platform. The three rows of letters, digits and so on count up from their first.
enum KeyCode : std::int32_t {
    kKeyA = 0,                                       // to Z
    kKey0 = 26,                                      // to 9, above the letters
    kKeyComma = 36, kKeyEnter, kKeyNumpadSupr, kKeyGrave,
    kKeyF1 = 40,                                     // to F12
    kKeyHome = 52, kKeyEnd, kKeyLeftShift, kKeyRightShift, kKeyLeftControl, kKeyRightControl,
    kKeyLeftAlt, kKeyRightAlt,                       // never sent: the Alt keys arrive as kKeyAlt and kKeyAltGr
    kKeyUp, kKeyDown, kKeyTab, kKeyRight, kKeyLeft, kKeySpace, kKeyAltGr, kKeyAlt, kKeyDelete, kKeyCaps, kKeyBack,
    kKeyInsert, kKeyPageUp, kKeyPageDown, kKeyNumLock, kKeyNumpadDivide, kKeyNumpadMultiply, kKeyNumpadSubtract,
    kKeyNumpad0 = 78,                                // to 9
    kKeyPeriod = 88, kKeySlash, kKeySemicolon, kKeyApostrophe, kKeyBackslash, kKeyLeftBracket, kKeyRightBracket,
    kKeyMinus, kKeyEquals, kKeyNumpadPlus,
    kKeyRightEnter = 98,
    kNoKey = 99,                                     // a key that the program does not know
};
constexpr int kKeyCodes = 100;

// As the bindings are shown to people; empty outside 0 to 99.
std::string_view KeyName(int key);

enum KeyGroup : std::int32_t {
    kGroupMiscellaneus, kGroupCursorMoves, kGroupCutCopyPaste, kGroupInstrumentSelect, kGroupPianoDown, kGroupPianoUp,
    kGroupPatternData, kGroupMenus, kGroupTranspose, kGroupSampleEditor,
};
constexpr int kKeyGroups = 10;

std::string_view KeyGroupName(int group);            // empty outside 0 to 9

struct KeyAction {
    std::int32_t group = 0;                          // for display
    std::int32_t key = kNoKey;
    bool control = false, alt = false, shift = false;   // each must be held, or else must not be
    bool repeat = false;                             // while the key is held
    bool repeatEdit = false;                         // the same, only in edit mode and while the song does not play
    std::string_view name;

    bool operator==(const KeyAction&) const = default;
};

constexpr int kKeyActions = 210;
using KeyTable = std::array<KeyAction, kKeyActions>; // by index of the action

const KeyTable& DefaultKeyTable();

// Applies the records in the order of the file. One whose action or key does not exist changes nothing, and an action
// without a record keeps its binding.
void ReadKeyTable(FileStream& stream, KeyTable& table);
void WriteKeyTable(FileStream& stream, const KeyTable& table);

// False if the file cannot be opened, or not be written; the old file is then as it was.
bool LoadKeyTable(const std::string& path, KeyTable& table);
bool SaveKeyTable(const std::string& path, const KeyTable& table);

}  // namespace vonta
