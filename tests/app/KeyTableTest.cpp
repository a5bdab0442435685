#include "app/config/KeyTable.h"

#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "formats/streams/FileStream.h"
#include "tests/support/ByteBuilder.h"

namespace vonta {
namespace {

using test::ByteBuilder;

// "Shift+Alt+0 E": modifiers, key, and R or E if it repeats.
std::string Binding(const KeyAction& action) {
    std::string text;
    if (action.control) text += "Control+";
    if (action.shift) text += "Shift+";
    if (action.alt) text += "Alt+";
    text += KeyName(action.key);
    if (action.repeat) text += " R";
    if (action.repeatEdit) text += " E";
    return text;
}

// Actions that follow each other: the prefix of their bindings, the keys one by one, what stands behind each.
struct Sequence {
    int first;
    int group;
    const char *prefix, *keys, *suffix;
};

constexpr Sequence kSequences[] = {
    {0, 0, "", "Right Control,Control+Alt Gr,Space", ""},
    {21, 0, "", "F1,F2,F3,F4,F5,F6,F7", ""},
    {28, 0, "", "Grave,Shift+Grave,Caps,Shift+Right,Shift+Left,Control+Right,Control+Left", " R"},
    {140, 0, "", "Right Shift", ""},
    {190, 0, "", "Shift+V,Control+V,Alt+V,Control+Alt+F1,Control+Alt+F2,Alt+Enter", ""},
    {3, 1, "", "Page Up,Page Down,Home,End,Tab,Shift+Tab", " R"},
    {94, 1, "", "Up,Down,Left,Right", " R"},
    {115, 1, "", "F9,F10,F11,F12", ""},
    {119, 1, "Alt+", "Q,W,E,R,T,Y,U,I,A,S,D,F,G,H,J,K", ""},
    {9, 2, "", "Delete,Insert,Back", " R"},
    {12, 2, "", "Shift+F3,Shift+F4,Shift+F5,Control+F3,Control+F4,Control+F5,Alt+F3,Alt+F4,Alt+F5", ""},
    {135, 2, "", "Shift+Delete,Control+Delete,Alt+Delete,Shift+Insert,Shift+Back", " E"},
    {151, 2, "Alt+", "0,1,2,3,4,5,6,7,8,9", " E"},
    {161, 2, "Shift+Alt+", "0,1,2,3,4,5,6,7,8,9", ""},
    {35, 3, "", "NumLock,Numpad Divide,Numpad Multiply,Numpad Subtract", ""},
    {39, 3, "Numpad ", "0,1,2,3,4,5,6,7,8,Supr", ""},
    {49, 3, "Shift+", "Numpad Supr", ""},
    {50, 3, "Shift+", "Up,Down", " R"},
    {52, 3, "", "Shift+S,Control+Enter,Control+4,Shift+4", ""},
    {114, 3, "", "Control+Shift+S", ""},
    {196, 3, "Shift+", "NumLock,Numpad Divide,Numpad Multiply,Numpad Subtract", ""},
    {200, 3, "", "Right Enter", ""},
    {56, 4, "", "Z,S,X,D,C,V,G,B,H,N,J,M,;,L,88,90,89", " E"},      // ';' stands for the comma
    {73, 5, "", "Q,2,W,3,E,R,5,T,6,Y,7,U,I,9,O,0,P,93,96,94,Enter", " E"},
    {98, 6, "", "0,1,2,3,4,5,6,7,8,9,A,B,C,D,E,F", " E"},
    {141, 7, "Control+", "A,B,C,D,H,I,M,P,S,X", ""},
    {201, 7, "Control+", "G,N,F,Z,E,L,R,K,J", ""},
    {171, 8, "", "Shift+F7,Shift+F8,Control+F7,Control+F8,Alt+F7,Alt+F8", " R"},
    {177, 8, "", "Shift+F1,Shift+F2,Control+F1,Control+F2,Alt+F1,Alt+F2", " R"},
    {183, 9, "Alt+", "A,S,Z,X,C,V,R", ""},
};

TEST(KeyTable, BindsEachOf210ActionsByDefault) {
    std::map<int, int> seen;
    for (const Sequence& row : kSequences) {
        std::istringstream keys(row.keys);
        int index = row.first;
        for (std::string key; std::getline(keys, key, ','); ++index) {
            ++seen[index];
            const KeyAction& action = DefaultKeyTable()[static_cast<std::size_t>(index)];
            EXPECT_EQ(Binding(action), row.prefix + (key == ";" ? "," : key) + row.suffix) << index;
            EXPECT_EQ(action.group, row.group) << index;
        }
    }
    EXPECT_EQ(seen.size(), 210u);
    for (const auto& [index, times] : seen) EXPECT_EQ(times, 1) << index;
}

TEST(KeyTable, NamesItsActions) {
    const std::pair<std::size_t, const char*> names[] = {
        {0, "Play Song"}, {2, "Stop/Rec"}, {4, "Jump 16 lines downwards"}, {11, "Delete previous note"},
        {16, "Copy Pattern"}, {27, "Select octave 7"}, {29, "Decrease CursorAdd"}, {34, "Decrease pattern number"},
        {38, "Select Instr. Block 4"}, {39, "Select No Instrument"}, {47, "Select Instrument 8"},
        {53, "Play Song from current position"}, {55, "Play actual line"}, {56, "C0"}, {72, "E1"}, {73, "C1"},
        {92, "G2"}, {93, "A2"}, {97, "Cursor Right"}, {107, "9"}, {113, "F"}, {114, "Solo Channel"},
        {118, "Jump to pattern line 48"}, {134, "Jump to track 15"}, {135, "Delete Note, Vol, Ins and Effect"},
        {140, "Record Pattern"}, {144, "Menu Disk Op."}, {147, "Menu Instr. Ed. Ext."}, {150, "Menu Main Screen"},
        {151, "Write Cmnd/Vol Macro 0 at Cursor"}, {170, "Read Cmnd/Vol Macro 9 at Cursor"},
        {171, "Transpose Instrument Track Down"}, {176, "Transpose Instrument Block Up"}, {180, "Transpose Pattern Up"},
        {184, "Sample Editor Show Range"}, {189, "Sample Editor Crop"}, {190, "Scale Fade Vol in Track"},
        {193, "Octave Down"}, {194, "Octave Up"}, {195, "Octave Down"}, {199, "Select Instr. Block 8"},
        {200, "Change Instr. Bank"}, {203, "Menu SongInfo"}, {209, "Menu Synth"},
    };
    for (const auto& [index, name] : names) EXPECT_EQ(DefaultKeyTable()[index].name, name) << index;
}

TEST(KeyTable, NamesKeysAndGroupsAndNothingElse) {
    EXPECT_EQ(KeyName(kKeyA + 25), "Z");
    EXPECT_EQ(KeyName(kKeyRightAlt), "Right Alt");
    EXPECT_EQ(KeyName(kKeyNumpadSubtract), "Numpad Subtract");
    EXPECT_EQ(KeyName(kKeyNumpadPlus), "97");
    EXPECT_EQ(KeyName(kNoKey), "No Key");
    EXPECT_EQ(KeyGroupName(kGroupMiscellaneus), "Miscellaneus");
    EXPECT_EQ(KeyGroupName(kGroupSampleEditor), "Sample Editor");
    for (const int none : {-1, 100, 1 << 30}) {
        EXPECT_EQ(KeyName(none), "");
        EXPECT_EQ(KeyGroupName(none), "");
    }
}

KeyTable Read(const std::vector<std::uint8_t>& bytes, KeyTable table = DefaultKeyTable()) {
    MemoryStream stream(bytes);
    ReadKeyTable(stream, table);
    return table;
}

std::vector<std::uint8_t> Written(const KeyTable& table) {
    MemoryStream stream;
    WriteKeyTable(stream, table);
    return stream.Bytes();
}

// All bindings differ from the default ones.
KeyTable Turned() {
    KeyTable table = DefaultKeyTable();
    for (KeyAction& action : table) {
        action.key = kNoKey - action.key;
        for (bool* flag : {&action.control, &action.alt, &action.shift, &action.repeat, &action.repeatEdit})
            *flag = !*flag;
    }
    return table;
}

TEST(KeyTableFile, WrittenAndReadIsEqual) {
    EXPECT_EQ(Written(DefaultKeyTable()).size(), 2738u);
    EXPECT_EQ(Read(Written(Turned())), Turned());
}

TEST(KeyTableFile, HoldsTheFlagsInItsOwnOrder) {
    KeyTable table = DefaultKeyTable();
    table[1] = {kGroupMiscellaneus, 0x42, false, true, false, false, true, "Play Pattern"};
    const auto bytes = Written(table);
    const std::vector<std::uint8_t> head(bytes.begin(), bytes.begin() + 34);
    EXPECT_EQ(head, ByteBuilder().U32(1).U32(210).U32(0).U32(57).Zeros(5)
                        .U32(1).U32(0x42).U8(0).U8(0).U8(1).U8(0).U8(1).bytes);
}

TEST(KeyTableFile, AppliesTheRecordsInOrderAndSkipsWhatHasNoPlace) {
    ByteBuilder file;
    file.U32(77).U32(5);                                        // any version will do
    file.U32(210).U32(1).Zeros(5).U32(0xFFFFFFFF).U32(1).Zeros(5);
    file.U32(3).U32(100).Zeros(5);                              // no such key
    file.U32(2).U32(10).U8(1).Zeros(4).U32(2).U32(11).U8(0).U8(255).Zeros(3);
    KeyTable expected = DefaultKeyTable();
    expected[2].key = 11;
    expected[2].shift = true;
    EXPECT_EQ(Read(file.bytes), expected);
}

TEST(KeyTableFile, AFalseCountEndsWithTheFile) {
    ByteBuilder file;
    file.U32(1).U32(0xFFFFFFFF).U32(2).U32(10).Zeros(5).U32(3).U32(10).Zeros(4);
    KeyTable expected = DefaultKeyTable();
    expected[2].key = 10;
    EXPECT_EQ(Read(file.bytes), expected);
}

TEST(KeyTableFile, AnyPrefixChangesWholeBindingsOnly) {
    const KeyTable defaults = DefaultKeyTable(), turned = Turned();
    auto bytes = Written(turned);
    for (; !bytes.empty(); bytes.pop_back()) {
        const std::size_t whole = bytes.size() < 8 ? 0 : (bytes.size() - 8) / 13;
        const KeyTable read = Read(bytes);
        ASSERT_TRUE(std::equal(read.begin(), read.begin() + static_cast<std::ptrdiff_t>(whole), turned.begin()));
        ASSERT_TRUE(std::equal(read.begin() + static_cast<std::ptrdiff_t>(whole), read.end(),
                               defaults.begin() + static_cast<std::ptrdiff_t>(whole)));
    }
}

TEST(KeyTableFile, WithAnyByteFlippedBindsOnlyKeysThatExist) {
    const auto bytes = Written(DefaultKeyTable());
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        auto damaged = bytes;
        damaged[i] ^= 0xFF;
        for (const KeyAction& action : Read(damaged)) ASSERT_NE(KeyName(action.key), "");
    }
}

}  // namespace
}  // namespace vonta
