// Which of our keys lies where on the keyboard. The numbers are the USB keyboard page's: they name places, by what a US
// keyboard has there.
#include <array>

#include "app/config/KeyTable.h"
#include "interface/keys/Input.h"

namespace vonta {
namespace {

struct Row {
    int scanCode, key;
    int count = 1;                               // so many scan codes and keys in sequence
};

constexpr Row kRows[] = {
    {4, kKeyA, 26},
    {30, kKey0 + 1, 9},                          // the digit row begins with 1 and ends with 0
    {39, kKey0},
    {40, kKeyEnter},
    {42, kKeyBack},
    {43, kKeyTab},
    {44, kKeySpace},
    {45, kKeyMinus},
    {46, kKeyEquals},
    {47, kKeyLeftBracket},
    {48, kKeyRightBracket},
    {49, kKeyBackslash},
    {50, kKeyBackslash},                         // the same place on ISO keyboards
    {51, kKeySemicolon},
    {52, kKeyApostrophe},
    {53, kKeyGrave},
    {54, kKeyComma},
    {55, kKeyPeriod},
    {56, kKeySlash},
    {57, kKeyCaps},
    {58, kKeyF1, 12},
    {73, kKeyInsert},
    {74, kKeyHome},
    {75, kKeyPageUp},
    {76, kKeyDelete},
    {77, kKeyEnd},
    {78, kKeyPageDown},
    {79, kKeyRight},
    {80, kKeyLeft},
    {81, kKeyDown},
    {82, kKeyUp},
    {83, kKeyNumLock},
    {84, kKeyNumpadDivide},
    {85, kKeyNumpadMultiply},
    {86, kKeyNumpadSubtract},
    {87, kKeyNumpadPlus},
    {88, kKeyRightEnter},
    {89, kKeyNumpad0 + 1, 9},
    {98, kKeyNumpad0},
    {99, kKeyNumpadSupr},
    {224, kKeyLeftControl},
    {225, kKeyLeftShift},
    {226, kKeyAlt},
    {228, kKeyRightControl},
    {229, kKeyRightShift},
    {230, kKeyAltGr},
};

constexpr int kScanCodes = 256;

constexpr auto kKeys = [] {
    std::array<int, kScanCodes> keys{};
    keys.fill(kNoKey);
    for (const Row& row : kRows)
        for (int i = 0; i < row.count; ++i) keys[static_cast<std::size_t>(row.scanCode + i)] = row.key + i;
    return keys;
}();

}  // namespace

int KeyOfScanCode(int scanCode) {
    return scanCode >= 0 && scanCode < kScanCodes ? kKeys[static_cast<std::size_t>(scanCode)] : kNoKey;
}

}  // namespace vonta
