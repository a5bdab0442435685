#include <type_traits>
#include <vector>

#include "script/binding/ScriptCall.h"
#include "script/song/Wrappers.h"

namespace vonta {
namespace {

constexpr const char* kBadChannel = "Channel parameter out of range";
constexpr const char* kBadRow = "Row parameter out of range";
constexpr const char* kBadRows = "Rows parameter out of range";

template <class Work>
int WithPattern(ScriptCall& call, Work work) { return With<VTPattern>(call, kPatternGone, work); }

// Channel and row are the first two arguments: the warning if one is outside, else null.
const char* WrongPlace(const Pattern& pattern, const ScriptCall& call) {
    if (call.Integer(0) < 0 || call.Integer(0) >= kTracks) return kBadChannel;
    return call.Integer(1) < 0 || call.Integer(1) >= pattern.Rows() ? kBadRow : nullptr;
}

// A cell that holds more than `most`, such as a command in the volume column, reads as one that holds nothing.
template <auto field, int most, int failure>
int GetField(ScriptCall& call) {
    return WithPattern(call, [&](const Pattern& pattern) {
        if (const char* const message = WrongPlace(pattern, call)) return call.Warn("%s", message);
        const int value = pattern.Read(call.Integer(1), call.Integer(0)).*field;
        return call.GiveNumber(value > most ? failure : value);
    });
}

template <auto field>
int SetField(ScriptCall& call) {
    return WithPattern(call, [&](Pattern& pattern) {
        if (const char* const message = WrongPlace(pattern, call)) return call.Warn("%s", message);
        Cell cell = pattern.Read(call.Integer(1), call.Integer(0));
        cell.*field = static_cast<std::remove_reference_t<decltype(cell.*field)>>(call.Integer(2));
        pattern.Write(call.Integer(1), call.Integer(0), cell);
        return 0;
    });
}

// A pair of rows for one field. What a getter gives after a failure is `failure`.
template <auto field, int most, int failure>
void AddField(std::vector<MethodRow>& rows, const char* getName, const char* setName, const char* about, int settable,
              const char* message) {
    const Parameter channel = Number("channel"), row = Number("row");
    rows.push_back({getName, {channel, row}, "number", about, GetField<field, most, failure>, {kBadChannel, kBadRow},
        failure});
    rows.push_back({setName, {channel, row, Number("value", 0, settable, message)}, nullptr, "Sets it.",
        SetField<field>,
                    {kBadChannel, kBadRow}});
}

int ConstructNothing(ScriptCall&) { return 0; }

int GetNumRows(ScriptCall& call) {
    return WithPattern(call, [&](const Pattern& pattern) { return call.GiveNumber(pattern.Rows()); });
}

int SetNumRows(ScriptCall& call) {
    return WithPattern(call, [&](Pattern& pattern) {
        pattern.SetNumRows(call.Integer(0));
        return 0;
    });
}

constexpr int kMostByte = 255, kMostVolume = kNoVolume, kMostEffect = 15;

std::vector<MethodRow> Rows() {
    std::vector<MethodRow> rows{
        {"GetNumRows", {}, "number", "How many rows it has.", GetNumRows},
        {"SetNumRows", {Number("rows", 1, kMaxRows, kBadRows)}, nullptr, "Makes it longer or shorter.", SetNumRows},
    };
    AddField<&Cell::note, kMostByte, kNoteOff>(rows, "GetNote", "SetNote",
        "The note, from 0 to 95, 128 for none or 129 for the end of one; 129 after a warning.", kNoteOff,
        "Note parameter out of range");
    AddField<&Cell::instrument, kMostByte, 0>(rows, "GetInstr", "SetInstr",
        "The instrument's number plus one, or 0 for none; 0 after a warning.", kMaxInstruments,
        "Instr parameter out of range");
    AddField<&Cell::volume, kMostVolume, kNoVolume>(rows, "GetVolume", "SetVolume",
        "The volume, from 0 to 128, or 129 for none or for a command of the volume column; 129 after a warning.",
        kMostVolume, "Volume parameter out of range");
    AddField<&Cell::effect, kMostEffect, 0>(rows, "GetEffect", "SetEffect",
        "The effect, from 0 to 15; a higher one reads as 0, and so does a warning.", kMostEffect,
        "Effect parameter out of range");
    AddField<&Cell::param, kMostByte, 0>(rows, "GetEffectParam", "SetEffectParam",
        "The effect's parameter; 0 after a warning.", kMostByte, "EffectParam parameter out of range");
    return rows;
}

constexpr const char* kExample = R"(pattern = VTSong():GetPattern(0)
pattern:SetNumRows(32)
for row = 0, 31, 4 do
    pattern:SetNote(0, row, 24 + math.mod(row, 12))
    pattern:SetInstr(0, row, 1)
    pattern:SetVolume(0, row, 128 - row)
end
)";

}  // namespace

const ScriptClass& VTPatternClass() {
    static const ScriptClass scriptClass(
        "VTPattern",
        {"A pattern, from VTSong:GetPattern. A cell is told by its channel, 0 to 63, and its row. Every method warns "
         "\"This pattern does not exist\" if the pattern has gone.",
         kExample},
        {"VTPattern", {}, "nothing", "Patterns come from VTSong:GetPattern.", ConstructNothing},
        Rows());
    return scriptClass;
}

}  // namespace vonta
