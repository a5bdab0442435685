#include "app/config/KeyTable.h"

#include <iterator>

namespace vonta {
namespace {

enum : unsigned { kControl = 1, kAlt = 2, kShift = 4, kRepeat = 8, kRepeatEdit = 16 };

constexpr int Letter(char letter) { return kKeyA + (letter - 'A'); }
constexpr int Digit(int digit) { return kKey0 + digit; }
constexpr int F(int number) { return kKeyF1 + number - 1; }
constexpr int Numpad(int digit) { return kKeyNumpad0 + digit; }

struct Row {
    KeyGroup group;
    std::string_view name;
    int key;
    unsigned options = 0;
};

// One row an action, in the order of their indices.
constexpr Row kRows[] = {
    {kGroupMiscellaneus, "Play Song", kKeyRightControl},   // 0
    {kGroupMiscellaneus, "Play Pattern", kKeyAltGr, kControl},
    {kGroupMiscellaneus, "Stop/Rec", kKeySpace},
    {kGroupCursorMoves, "Jump 16 lines upwards", kKeyPageUp, kRepeat},
    {kGroupCursorMoves, "Jump 16 lines downwards", kKeyPageDown, kRepeat},
    {kGroupCursorMoves, "Jump to line 0", kKeyHome, kRepeat},
    {kGroupCursorMoves, "Jump to last line", kKeyEnd, kRepeat},
    {kGroupCursorMoves, "Jump to next track", kKeyTab, kRepeat},
    {kGroupCursorMoves, "Jump to previous track", kKeyTab, kShift | kRepeat},
    {kGroupCutCopyPaste, "Delete note or volume", kKeyDelete, kRepeat},
    {kGroupCutCopyPaste, "Insert note", kKeyInsert, kRepeat},   // 10
    {kGroupCutCopyPaste, "Delete previous note", kKeyBack, kRepeat},
    {kGroupCutCopyPaste, "Cut Track", F(3), kShift},
    {kGroupCutCopyPaste, "Copy Track", F(4), kShift},
    {kGroupCutCopyPaste, "Paste Track", F(5), kShift},
    {kGroupCutCopyPaste, "Cut Pattern", F(3), kControl},
    {kGroupCutCopyPaste, "Copy Pattern", F(4), kControl},
    {kGroupCutCopyPaste, "Paste Pattern", F(5), kControl},
    {kGroupCutCopyPaste, "Cut Block", F(3), kAlt},
    {kGroupCutCopyPaste, "Copy Block", F(4), kAlt},
    {kGroupCutCopyPaste, "Paste Block", F(5), kAlt},   // 20
    {kGroupMiscellaneus, "Select octave 1", F(1)},
    {kGroupMiscellaneus, "Select octave 2", F(2)},
    {kGroupMiscellaneus, "Select octave 3", F(3)},
    {kGroupMiscellaneus, "Select octave 4", F(4)},
    {kGroupMiscellaneus, "Select octave 5", F(5)},
    {kGroupMiscellaneus, "Select octave 6", F(6)},
    {kGroupMiscellaneus, "Select octave 7", F(7)},
    {kGroupMiscellaneus, "Increase CursorAdd", kKeyGrave, kRepeat},
    {kGroupMiscellaneus, "Decrease CursorAdd", kKeyGrave, kShift | kRepeat},
    {kGroupMiscellaneus, "Note Off", kKeyCaps, kRepeat},   // 30
    {kGroupMiscellaneus, "Increase song position", kKeyRight, kShift | kRepeat},
    {kGroupMiscellaneus, "Decrease song position", kKeyLeft, kShift | kRepeat},
    {kGroupMiscellaneus, "Increase pattern number", kKeyRight, kControl | kRepeat},
    {kGroupMiscellaneus, "Decrease pattern number", kKeyLeft, kControl | kRepeat},
    {kGroupInstrumentSelect, "Select Instr. Block 1", kKeyNumLock},
    {kGroupInstrumentSelect, "Select Instr. Block 2", kKeyNumpadDivide},
    {kGroupInstrumentSelect, "Select Instr. Block 3", kKeyNumpadMultiply},
    {kGroupInstrumentSelect, "Select Instr. Block 4", kKeyNumpadSubtract},
    {kGroupInstrumentSelect, "Select No Instrument", Numpad(0)},
    {kGroupInstrumentSelect, "Select Instrument 1", Numpad(1)},   // 40
    {kGroupInstrumentSelect, "Select Instrument 2", Numpad(2)},
    {kGroupInstrumentSelect, "Select Instrument 3", Numpad(3)},
    {kGroupInstrumentSelect, "Select Instrument 4", Numpad(4)},
    {kGroupInstrumentSelect, "Select Instrument 5", Numpad(5)},
    {kGroupInstrumentSelect, "Select Instrument 6", Numpad(6)},
    {kGroupInstrumentSelect, "Select Instrument 7", Numpad(7)},
    {kGroupInstrumentSelect, "Select Instrument 8", Numpad(8)},
    {kGroupInstrumentSelect, "Delete Instrument", kKeyNumpadSupr},
    {kGroupInstrumentSelect, "Delete Sample", kKeyNumpadSupr, kShift},
    {kGroupInstrumentSelect, "Select previous instr", kKeyUp, kShift | kRepeat},   // 50
    {kGroupInstrumentSelect, "Select next instr", kKeyDown, kShift | kRepeat},
    {kGroupInstrumentSelect, "Solo", Letter('S'), kShift},
    {kGroupInstrumentSelect, "Play Song from current position", kKeyEnter, kControl},
    {kGroupInstrumentSelect, "Play actual note", Digit(4), kControl},
    {kGroupInstrumentSelect, "Play actual line", Digit(4), kShift},
    {kGroupPianoDown, "C0", Letter('Z'), kRepeatEdit},
    {kGroupPianoDown, "C#0", Letter('S'), kRepeatEdit},
    {kGroupPianoDown, "D0", Letter('X'), kRepeatEdit},
    {kGroupPianoDown, "D#0", Letter('D'), kRepeatEdit},
    {kGroupPianoDown, "E0", Letter('C'), kRepeatEdit},   // 60
    {kGroupPianoDown, "F0", Letter('V'), kRepeatEdit},
    {kGroupPianoDown, "F#0", Letter('G'), kRepeatEdit},
    {kGroupPianoDown, "G0", Letter('B'), kRepeatEdit},
    {kGroupPianoDown, "G#0", Letter('H'), kRepeatEdit},
    {kGroupPianoDown, "A0", Letter('N'), kRepeatEdit},
    {kGroupPianoDown, "A#0", Letter('J'), kRepeatEdit},
    {kGroupPianoDown, "B0", Letter('M'), kRepeatEdit},
    {kGroupPianoDown, "C1", kKeyComma, kRepeatEdit},
    {kGroupPianoDown, "C#1", Letter('L'), kRepeatEdit},
    {kGroupPianoDown, "D1", kKeyPeriod, kRepeatEdit},   // 70
    {kGroupPianoDown, "D#1", kKeySemicolon, kRepeatEdit},
    {kGroupPianoDown, "E1", kKeySlash, kRepeatEdit},
    {kGroupPianoUp, "C1", Letter('Q'), kRepeatEdit},
    {kGroupPianoUp, "C#1", Digit(2), kRepeatEdit},
    {kGroupPianoUp, "D1", Letter('W'), kRepeatEdit},
    {kGroupPianoUp, "D#1", Digit(3), kRepeatEdit},
    {kGroupPianoUp, "E1", Letter('E'), kRepeatEdit},
    {kGroupPianoUp, "F1", Letter('R'), kRepeatEdit},
    {kGroupPianoUp, "F#1", Digit(5), kRepeatEdit},
    {kGroupPianoUp, "G1", Letter('T'), kRepeatEdit},   // 80
    {kGroupPianoUp, "G#1", Digit(6), kRepeatEdit},
    {kGroupPianoUp, "A1", Letter('Y'), kRepeatEdit},
    {kGroupPianoUp, "A#1", Digit(7), kRepeatEdit},
    {kGroupPianoUp, "B1", Letter('U'), kRepeatEdit},
    {kGroupPianoUp, "C2", Letter('I'), kRepeatEdit},
    {kGroupPianoUp, "C#2", Digit(9), kRepeatEdit},
    {kGroupPianoUp, "D2", Letter('O'), kRepeatEdit},
    {kGroupPianoUp, "D#2", Digit(0), kRepeatEdit},
    {kGroupPianoUp, "E2", Letter('P'), kRepeatEdit},
    {kGroupPianoUp, "F2", kKeyLeftBracket, kRepeatEdit},   // 90
    {kGroupPianoUp, "F#2", kKeyEquals, kRepeatEdit},
    {kGroupPianoUp, "G2", kKeyRightBracket, kRepeatEdit},
    {kGroupPianoUp, "A2", kKeyEnter, kRepeatEdit},
    {kGroupCursorMoves, "Cursor Up", kKeyUp, kRepeat},
    {kGroupCursorMoves, "Cursor Down", kKeyDown, kRepeat},
    {kGroupCursorMoves, "Cursor Left", kKeyLeft, kRepeat},
    {kGroupCursorMoves, "Cursor Right", kKeyRight, kRepeat},
    {kGroupPatternData, "0", Digit(0), kRepeatEdit},
    {kGroupPatternData, "1", Digit(1), kRepeatEdit},
    {kGroupPatternData, "2", Digit(2), kRepeatEdit},   // 100
    {kGroupPatternData, "3", Digit(3), kRepeatEdit},
    {kGroupPatternData, "4", Digit(4), kRepeatEdit},
    {kGroupPatternData, "5", Digit(5), kRepeatEdit},
    {kGroupPatternData, "6", Digit(6), kRepeatEdit},
    {kGroupPatternData, "7", Digit(7), kRepeatEdit},
    {kGroupPatternData, "8", Digit(8), kRepeatEdit},
    {kGroupPatternData, "9", Digit(9), kRepeatEdit},
    {kGroupPatternData, "A", Letter('A'), kRepeatEdit},
    {kGroupPatternData, "B", Letter('B'), kRepeatEdit},
    {kGroupPatternData, "C", Letter('C'), kRepeatEdit},   // 110
    {kGroupPatternData, "D", Letter('D'), kRepeatEdit},
    {kGroupPatternData, "E", Letter('E'), kRepeatEdit},
    {kGroupPatternData, "F", Letter('F'), kRepeatEdit},
    {kGroupInstrumentSelect, "Solo Channel", Letter('S'), kControl | kShift},
    {kGroupCursorMoves, "Jump to pattern line 0", F(9)},
    {kGroupCursorMoves, "Jump to pattern line 16", F(10)},
    {kGroupCursorMoves, "Jump to pattern line 32", F(11)},
    {kGroupCursorMoves, "Jump to pattern line 48", F(12)},
    {kGroupCursorMoves, "Jump to track 0", Letter('Q'), kAlt},
    {kGroupCursorMoves, "Jump to track 1", Letter('W'), kAlt},   // 120
    {kGroupCursorMoves, "Jump to track 2", Letter('E'), kAlt},
    {kGroupCursorMoves, "Jump to track 3", Letter('R'), kAlt},
    {kGroupCursorMoves, "Jump to track 4", Letter('T'), kAlt},
    {kGroupCursorMoves, "Jump to track 5", Letter('Y'), kAlt},
    {kGroupCursorMoves, "Jump to track 6", Letter('U'), kAlt},
    {kGroupCursorMoves, "Jump to track 7", Letter('I'), kAlt},
    {kGroupCursorMoves, "Jump to track 8", Letter('A'), kAlt},
    {kGroupCursorMoves, "Jump to track 9", Letter('S'), kAlt},
    {kGroupCursorMoves, "Jump to track 10", Letter('D'), kAlt},
    {kGroupCursorMoves, "Jump to track 11", Letter('F'), kAlt},   // 130
    {kGroupCursorMoves, "Jump to track 12", Letter('G'), kAlt},
    {kGroupCursorMoves, "Jump to track 13", Letter('H'), kAlt},
    {kGroupCursorMoves, "Jump to track 14", Letter('J'), kAlt},
    {kGroupCursorMoves, "Jump to track 15", Letter('K'), kAlt},
    {kGroupCutCopyPaste, "Delete Note, Vol, Ins and Effect", kKeyDelete, kShift | kRepeatEdit},
    {kGroupCutCopyPaste, "Delete Volume and Effect", kKeyDelete, kControl | kRepeatEdit},
    {kGroupCutCopyPaste, "Delete Effect", kKeyDelete, kAlt | kRepeatEdit},
    {kGroupCutCopyPaste, "Insert line", kKeyInsert, kShift | kRepeatEdit},
    {kGroupCutCopyPaste, "Delete previous line", kKeyBack, kShift | kRepeatEdit},
    {kGroupMiscellaneus, "Record Pattern", kKeyRightShift},   // 140
    {kGroupMenus, "Menu Advanced edit", Letter('A'), kControl},
    {kGroupMenus, "Menu About", Letter('B'), kControl},
    {kGroupMenus, "Menu Config", Letter('C'), kControl},
    {kGroupMenus, "Menu Disk Op.", Letter('D'), kControl},
    {kGroupMenus, "Menu Help", Letter('H'), kControl},
    {kGroupMenus, "Menu Instr. Ed.", Letter('I'), kControl},
    {kGroupMenus, "Menu Instr. Ed. Ext.", Letter('M'), kControl},
    {kGroupMenus, "Menu Pattern", Letter('P'), kControl},
    {kGroupMenus, "Menu Sample Ed.", Letter('S'), kControl},
    {kGroupMenus, "Menu Main Screen", Letter('X'), kControl},   // 150
    {kGroupCutCopyPaste, "Write Cmnd/Vol Macro 0 at Cursor", Digit(0), kAlt | kRepeatEdit},
    {kGroupCutCopyPaste, "Write Cmnd/Vol Macro 1 at Cursor", Digit(1), kAlt | kRepeatEdit},
    {kGroupCutCopyPaste, "Write Cmnd/Vol Macro 2 at Cursor", Digit(2), kAlt | kRepeatEdit},
    {kGroupCutCopyPaste, "Write Cmnd/Vol Macro 3 at Cursor", Digit(3), kAlt | kRepeatEdit},
    {kGroupCutCopyPaste, "Write Cmnd/Vol Macro 4 at Cursor", Digit(4), kAlt | kRepeatEdit},
    {kGroupCutCopyPaste, "Write Cmnd/Vol Macro 5 at Cursor", Digit(5), kAlt | kRepeatEdit},
    {kGroupCutCopyPaste, "Write Cmnd/Vol Macro 6 at Cursor", Digit(6), kAlt | kRepeatEdit},
    {kGroupCutCopyPaste, "Write Cmnd/Vol Macro 7 at Cursor", Digit(7), kAlt | kRepeatEdit},
    {kGroupCutCopyPaste, "Write Cmnd/Vol Macro 8 at Cursor", Digit(8), kAlt | kRepeatEdit},
    {kGroupCutCopyPaste, "Write Cmnd/Vol Macro 9 at Cursor", Digit(9), kAlt | kRepeatEdit},   // 160
    {kGroupCutCopyPaste, "Read Cmnd/Vol Macro 0 at Cursor", Digit(0), kShift | kAlt},
    {kGroupCutCopyPaste, "Read Cmnd/Vol Macro 1 at Cursor", Digit(1), kShift | kAlt},
    {kGroupCutCopyPaste, "Read Cmnd/Vol Macro 2 at Cursor", Digit(2), kShift | kAlt},
    {kGroupCutCopyPaste, "Read Cmnd/Vol Macro 3 at Cursor", Digit(3), kShift | kAlt},
    {kGroupCutCopyPaste, "Read Cmnd/Vol Macro 4 at Cursor", Digit(4), kShift | kAlt},
    {kGroupCutCopyPaste, "Read Cmnd/Vol Macro 5 at Cursor", Digit(5), kShift | kAlt},
    {kGroupCutCopyPaste, "Read Cmnd/Vol Macro 6 at Cursor", Digit(6), kShift | kAlt},
    {kGroupCutCopyPaste, "Read Cmnd/Vol Macro 7 at Cursor", Digit(7), kShift | kAlt},
    {kGroupCutCopyPaste, "Read Cmnd/Vol Macro 8 at Cursor", Digit(8), kShift | kAlt},
    {kGroupCutCopyPaste, "Read Cmnd/Vol Macro 9 at Cursor", Digit(9), kShift | kAlt},   // 170
    {kGroupTranspose, "Transpose Instrument Track Down", F(7), kShift | kRepeat},
    {kGroupTranspose, "Transpose Instrument Track Up", F(8), kShift | kRepeat},
    {kGroupTranspose, "Transpose Instrument Pattern Down", F(7), kControl | kRepeat},
    {kGroupTranspose, "Transpose Instrument Pattern Up", F(8), kControl | kRepeat},
    {kGroupTranspose, "Transpose Instrument Block Down", F(7), kAlt | kRepeat},
    {kGroupTranspose, "Transpose Instrument Block Up", F(8), kAlt | kRepeat},
    {kGroupTranspose, "Transpose Track Down", F(1), kShift | kRepeat},
    {kGroupTranspose, "Transpose Track Up", F(2), kShift | kRepeat},
    {kGroupTranspose, "Transpose Pattern Down", F(1), kControl | kRepeat},
    {kGroupTranspose, "Transpose Pattern Up", F(2), kControl | kRepeat},   // 180
    {kGroupTranspose, "Transpose Block Down", F(1), kAlt | kRepeat},
    {kGroupTranspose, "Transpose Block Up", F(2), kAlt | kRepeat},
    {kGroupSampleEditor, "Sample Editor Range All", Letter('A'), kAlt},
    {kGroupSampleEditor, "Sample Editor Show Range", Letter('S'), kAlt},
    {kGroupSampleEditor, "Sample Editor Zoom Out", Letter('Z'), kAlt},
    {kGroupSampleEditor, "Sample Editor Cut", Letter('X'), kAlt},
    {kGroupSampleEditor, "Sample Editor Copy", Letter('C'), kAlt},
    {kGroupSampleEditor, "Sample Editor Paste", Letter('V'), kAlt},
    {kGroupSampleEditor, "Sample Editor Crop", Letter('R'), kAlt},
    {kGroupMiscellaneus, "Scale Fade Vol in Track", Letter('V'), kShift},   // 190
    {kGroupMiscellaneus, "Scale Fade Vol in Pattern", Letter('V'), kControl},
    {kGroupMiscellaneus, "Scale Fade Vol in Block", Letter('V'), kAlt},
    {kGroupMiscellaneus, "Octave Down", F(1), kControl | kAlt},
    {kGroupMiscellaneus, "Octave Up", F(2), kControl | kAlt},
    {kGroupMiscellaneus, "Octave Down", kKeyEnter, kAlt},
    {kGroupInstrumentSelect, "Select Instr. Block 5", kKeyNumLock, kShift},
    {kGroupInstrumentSelect, "Select Instr. Block 6", kKeyNumpadDivide, kShift},
    {kGroupInstrumentSelect, "Select Instr. Block 7", kKeyNumpadMultiply, kShift},
    {kGroupInstrumentSelect, "Select Instr. Block 8", kKeyNumpadSubtract, kShift},
    {kGroupInstrumentSelect, "Change Instr. Bank", kKeyRightEnter},   // 200
    {kGroupMenus, "Menu Game", Letter('G'), kControl},
    {kGroupMenus, "Menu Visual", Letter('N'), kControl},
    {kGroupMenus, "Menu SongInfo", Letter('F'), kControl},
    {kGroupMenus, "Menu Zap", Letter('Z'), kControl},
    {kGroupMenus, "Menu MultiFX", Letter('E'), kControl},
    {kGroupMenus, "Menu Instr. Filter", Letter('L'), kControl},
    {kGroupMenus, "Menu Mixer", Letter('R'), kControl},
    {kGroupMenus, "Menu Track Editor", Letter('K'), kControl},
    {kGroupMenus, "Menu Synth", Letter('J'), kControl},
};
static_assert(std::size(kRows) == kKeyActions);

constexpr KeyAction ToAction(const Row& row) {
    const auto has = [&row](unsigned option) { return (row.options & option) != 0; };
    return {row.group, row.key, has(kControl), has(kAlt), has(kShift), has(kRepeat), has(kRepeatEdit), row.name};
}

constexpr KeyTable ToTable() {
    KeyTable table;
    for (std::size_t i = 0; i < table.size(); ++i) table[i] = ToAction(kRows[i]);
    return table;
}

constexpr KeyTable kDefaultTable = ToTable();

}  // namespace

const KeyTable& DefaultKeyTable() { return kDefaultTable; }

}  // namespace vonta
