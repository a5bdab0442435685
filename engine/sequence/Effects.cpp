#include "engine/sequence/Effects.h"

#include <algorithm>

#include "engine/sequence/Sequencer.h"
#include "platform/Clock.h"

namespace vonta {
namespace {

// One half wave of vibrato and tremolo.
constexpr std::array<std::uint8_t, 32> sineTable = {0,   24,  49,  74,  97,  120, 141, 161, 180, 197, 212,
                                                    224, 235, 244, 250, 253, 255, 253, 250, 244, 235, 224,
                                                    212, 197, 180, 161, 141, 120, 97,  74,  49,  24};
constexpr int kPeriodsPerUnit = 4;            // of all portamenti and the vibrato
constexpr int kVolumePerUnit = 2;             // of all volume slides: the scale is 0 to 128
constexpr float kCutoffOfParam = 10000.0f / 255.0f;
constexpr float kResonanceOfParam = 0.9999f / 255.0f;

// Codes of `activeEffect` that are not the effect's own: the arpeggio's, so that 0 can mean nothing runs, and those of
// the extended commands.
constexpr int kArpeggioTick = 0x0B;
constexpr int kExtendedTick = 0xE0;

constexpr bool ExactlyOneNibble(int param) { return ((param & 0xF0) != 0) != ((param & 0x0F) != 0); }

}  // namespace

struct RowEffects {
    static void Run(Sequencer& sequencer, const RowCell& row, int code, int param) {
        sequencer.Memory(row.channel).activeEffect = static_cast<std::uint16_t>((code << 8) | (param & 0xFF));
    }

    // A parameter of 0 takes the memory; any other is remembered.
    static int Remember(std::int32_t& memory, int param) {
        if (param) memory = param;
        return memory;
    }

    static std::uint32_t Rate(Sequencer& sequencer) { return sequencer.mixer_.sampleRate; }

    static void StepWave(std::uint8_t& position, std::uint8_t& negative, int speed) {
        position = static_cast<std::uint8_t>(position + speed);
        if (position < sineTable.size()) return;
        position = static_cast<std::uint8_t>(position - sineTable.size());
        negative ^= 1;
    }

    // 0: arpeggio.
    static void StartArpeggio(Sequencer& sequencer, RowCell& row) {
        Channel& channel = sequencer.GetChannel(row.channel);
        if (!channel.active || !row.cell.param) return;
        sequencer.Memory(row.channel).arpeggioNote = static_cast<std::uint16_t>(channel.voices[0].note);
        Run(sequencer, row, kArpeggioTick, row.cell.param);
    }
    static void Arpeggio(Sequencer& sequencer, int channel, int param, int tick) {
        const int added[3] = {0, param & 15, param >> 4};
        const int base = sequencer.Memory(channel).arpeggioNote;
        sequencer.GetChannel(channel).SetNote(base + added[tick % 3], Rate(sequencer));
    }

    // 1 and 2: portamento.
    static void StartPortaUp(Sequencer& sequencer, RowCell& row) {
        Run(sequencer, row, kPortaUp, Remember(sequencer.Memory(row.channel).portaUpMemory, row.cell.param));
    }
    static void StartPortaDown(Sequencer& sequencer, RowCell& row) {
        Run(sequencer, row, kPortaDown, Remember(sequencer.Memory(row.channel).portaDownMemory, row.cell.param));
    }
    static void PortaUp(Sequencer& sequencer, int channel, int param, int) {
        sequencer.GetChannel(channel).PortaUp(param * kPeriodsPerUnit, Rate(sequencer));
    }
    static void PortaDown(Sequencer& sequencer, int channel, int param, int) {
        sequencer.GetChannel(channel).PortaDown(param * kPeriodsPerUnit, Rate(sequencer));
    }

    // 3: tone portamento.
    static void StartTonePorta(Sequencer& sequencer, RowCell& row) {
        ChannelMemory& memory = sequencer.Memory(row.channel);
        if (row.cell.note < kNoNote) memory.portaTarget = row.cell.note;
        if (memory.portaTarget == -1) return;
        Run(sequencer, row, kTonePorta, Remember(memory.portaSpeedMemory, row.cell.param));
    }
    static void TonePorta(Sequencer& sequencer, int channelNumber, int, int) {
        const ChannelMemory& memory = sequencer.Memory(channelNumber);
        Channel& channel = sequencer.GetChannel(channelNumber);
        if (memory.portaTarget == -1) return;
        const Voice& voice = channel.voices[0];
        const double target = NoteToPeriod(std::max(0, memory.portaTarget + channel.noteOffset), voice.baseFineTune);
        const double speed = memory.portaSpeedMemory * kPeriodsPerUnit;
        const double period = voice.period > target ? std::max(voice.period - speed, target)
                                                    : std::min(voice.period + speed, target);
        if (period != voice.period) channel.SetPeriod(period, Rate(sequencer));
    }

    // 4: vibrato.
    static void SavePeriod(Sequencer& sequencer, const RowCell& row) {
        if (row.formerCode == kVibrato || row.formerCode == kVibratoSlide) return;
        sequencer.Memory(row.channel).savedPeriod =
            static_cast<float>(sequencer.GetChannel(row.channel).voices[0].period);
    }
    static void StartVibrato(Sequencer& sequencer, RowCell& row) {
        ChannelMemory& memory = sequencer.Memory(row.channel);
        const int speed = row.high ? row.high << 4 : memory.vibratoMemory & 0xF0;
        const int depth = row.low ? row.low : memory.vibratoMemory & 0x0F;
        memory.vibratoMemory = speed | depth;
        SavePeriod(sequencer, row);
        Run(sequencer, row, kVibrato, memory.vibratoMemory);
    }
    static void Vibrato(Sequencer& sequencer, int channel, int, int) {
        ChannelMemory& memory = sequencer.Memory(channel);
        const int delta =
            ((sineTable[memory.vibratoPosition] * (memory.vibratoMemory & 15)) >> 7) * kPeriodsPerUnit;
        sequencer.GetChannel(channel).SetPeriod(
            static_cast<double>(memory.savedPeriod) + (memory.vibratoNegative ? -delta : delta), Rate(sequencer));
        StepWave(memory.vibratoPosition, memory.vibratoNegative, memory.vibratoMemory >> 4);
    }

    // 5, 6 and 10: volume slides, alone or beside the two above.
    static void StartSlide(Sequencer& sequencer, RowCell& row) {
        ChannelMemory& memory = sequencer.Memory(row.channel);
        if (ExactlyOneNibble(row.cell.param)) memory.slideMemory = row.cell.param;
        Run(sequencer, row, row.effect, memory.slideMemory);
    }
    static void StartVibratoSlide(Sequencer& sequencer, RowCell& row) {
        SavePeriod(sequencer, row);
        StartSlide(sequencer, row);
    }
    static void VolumeSlide(Sequencer& sequencer, int channel, int param, int) {
        const int up = param >> 4, down = param & 15;
        if (up && down) return;
        ChangeVolume(sequencer, channel, up - down);
    }
    static void TonePortaSlide(Sequencer& sequencer, int channel, int param, int tick) {
        TonePorta(sequencer, channel, param, tick);
        VolumeSlide(sequencer, channel, param, tick);
    }
    static void VibratoSlide(Sequencer& sequencer, int channel, int param, int tick) {
        Vibrato(sequencer, channel, param, tick);
        VolumeSlide(sequencer, channel, param, tick);
    }
    static void ChangeVolume(Sequencer& sequencer, int channelNumber, int units) {
        if (!units) return;
        Channel& channel = sequencer.GetChannel(channelNumber);
        channel.SetNoteVolume(channel.noteVolume + units * kVolumePerUnit);
    }

    // 7: tremolo.
    static void StartTremolo(Sequencer& sequencer, RowCell& row) {
        ChannelMemory& memory = sequencer.Memory(row.channel);
        const int param = Remember(memory.tremoloMemory, row.cell.param);
        if (row.formerCode != kTremolo)
            memory.tremoloBase = static_cast<std::uint8_t>(sequencer.GetChannel(row.channel).volume);
        Run(sequencer, row, kTremolo, param);
    }
    static void Tremolo(Sequencer& sequencer, int channel, int param, int) {
        ChannelMemory& memory = sequencer.Memory(channel);
        const int delta = ((sineTable[memory.tremoloPosition] * (param & 15)) >> 6) * kVolumePerUnit;
        sequencer.GetChannel(channel).SetNoteVolume(memory.tremoloBase + (memory.tremoloNegative ? -delta : delta));
        StepWave(memory.tremoloPosition, memory.tremoloNegative, param >> 4);
    }

    // 8: pan.
    static void SetPanParam(Sequencer& sequencer, int channelNumber, int param) {
        Channel& channel = sequencer.GetChannel(channelNumber);
        for (int k = 0; k < kMaxLayers; ++k) {
            EnvelopeState& state = channel.panEnvelopes[static_cast<std::size_t>(k)];
            state.position = 0;
            state.base = static_cast<std::uint8_t>(param);
            channel.SetPan(k, static_cast<float>(param));
        }
        for (int k = 0; k < channel.numVoices; ++k) channel.EvaluatePan(k, sequencer.tickStep_);
    }
    static void SetPan(Sequencer& sequencer, RowCell& row) { SetPanParam(sequencer, row.channel, row.cell.param); }

    // 9: sample offset.
    static void SampleOffset(Sequencer& sequencer, RowCell& row) {
        std::int32_t& memory = sequencer.Memory(row.channel).offsetMemory;
        if (row.cell.param) memory = row.cell.param << 8;
        sequencer.GetChannel(row.channel).SetSampleOffset(memory);
    }

    // 11 and 13: the first of these on a row counts.
    static void JumpToPosition(Sequencer& sequencer, RowCell& row) {
        if (sequencer.orderJump_) return;
        sequencer.orderJump_ = 1;
        sequencer.orderTarget_ = row.cell.param;
    }
    static void BreakPattern(Sequencer& sequencer, RowCell& row) {
        if (sequencer.patternBreak_) return;
        sequencer.patternBreak_ = 1;
        const bool decimal = row.low <= 9 && row.high < 8;
        sequencer.breakRow_ = static_cast<std::uint16_t>(decimal ? row.high * 10 + row.low : row.cell.param);
    }

    // 12: volume.
    static void SetVolume(Sequencer& sequencer, RowCell& row) {
        sequencer.GetChannel(row.channel).SetNoteVolume(std::min<int>(row.cell.param, kMaxVolume));
    }

    // 15: speed below 32, else BPM; a speed of 0 ends the song.
    static void SetSpeed(Sequencer& sequencer, RowCell& row) {
        if (row.cell.param < kMinBpm) {
            sequencer.SetTempo(row.cell.param);
            if (row.cell.param) return;
            row.songEnd = true;
            sequencer.TellSongEnd();
        } else if (!sequencer.mixer_.device || !sequencer.mixer_.device->IsSynced()) {
            sequencer.SetBPM(row.cell.param);
        }
    }

    // 16: effect slots 1 to 8 are the send slots, 10 and 11 the masters.
    static void FxOnOff(Sequencer& sequencer, RowCell& row) {
        const bool send = row.high >= 1 && row.high <= 8, master = row.high == 10 || row.high == 11;
        if ((send || master) && row.low <= 1) sequencer.mixer_.EffectOn(row.high - (send ? 1 : 2), row.low);
    }

    // 18 and 19: the filter of the note that sounds.
    static void NoteCutoff(Sequencer& sequencer, RowCell& row) {
        sequencer.GetChannel(row.channel).cutoff = row.cell.param * kCutoffOfParam;
    }
    static void NoteResonance(Sequencer& sequencer, RowCell& row) {
        sequencer.GetChannel(row.channel).resonance = row.cell.param * kResonanceOfParam;
    }

    // 14: extended commands, by the high nibble.
    static void FinePortaUp(Sequencer& sequencer, RowCell& row) { PortaUp(sequencer, row.channel, row.low, 0); }
    static void FinePortaDown(Sequencer& sequencer, RowCell& row) { PortaDown(sequencer, row.channel, row.low, 0); }
    static void PatternLoop(Sequencer& sequencer, RowCell& row) {
        ChannelMemory& memory = sequencer.Memory(row.channel);
        if (!row.low) {
            memory.patternLoopRow = static_cast<std::uint8_t>(sequencer.row_);
            return;
        }
        if (memory.patternLoopCount == -1) {
            memory.patternLoopCount = row.low;
        } else if (--memory.patternLoopCount <= 0) {
            memory.patternLoopCount = -1;
            return;
        }
        sequencer.loopJump_ = 1;
        sequencer.loopRow_ = memory.patternLoopRow;
    }
    static void RunDelayed(Sequencer& sequencer, RowCell& row) {
        ChannelMemory& memory = sequencer.Memory(row.channel);
        memory.delayedNote = row.cell.note;
        memory.delayedInstrument = row.cell.instrument;
        memory.delayedVolume = row.cell.volume;
        RunExtended(sequencer, row);
    }
    static void RunExtended(Sequencer& sequencer, RowCell& row) {
        Run(sequencer, row, kExtendedTick | row.high, row.low);
    }
    static void FineVolumeUp(Sequencer& sequencer, RowCell& row) { ChangeVolume(sequencer, row.channel, row.low); }
    static void FineVolumeDown(Sequencer& sequencer, RowCell& row) { ChangeVolume(sequencer, row.channel, -row.low); }
    static void PatternDelay(Sequencer& sequencer, RowCell& row) { sequencer.patternDelay_ = row.low; }

    static void TriggerDelayed(Sequencer& sequencer, int channel) {
        const ChannelMemory& memory = sequencer.Memory(channel);
        if (sequencer.channelMuted_[static_cast<std::size_t>(channel)]) return;
        sequencer.Trigger(channel, memory.delayedNote, memory.delayedInstrument, StartVolume(memory.delayedVolume),
                          true, Milliseconds());
    }
    static void Retrigger(Sequencer& sequencer, int channel, int every, int tick) {
        if (every && tick % every == 0) TriggerDelayed(sequencer, channel);
    }
    static void CutNote(Sequencer& sequencer, int channel, int from, int tick) {
        if (tick >= from) sequencer.GetChannel(channel).SetNoteVolume(0);
    }
    static void DelayNote(Sequencer& sequencer, int channel, int until, int tick) {
        if (tick < until) return;
        TriggerDelayed(sequencer, channel);
        sequencer.Memory(channel).activeEffect = 0;
    }

    static void Extended(Sequencer& sequencer, RowCell& row);

    // Volume column.
    static void ColumnSlide(Sequencer& sequencer, int channel, int command, int units) {
        sequencer.Memory(channel).volumeColumnEffect = static_cast<std::uint16_t>((command << 8) | units);
    }
};

const std::array<EffectRow, kEffectCodes> kEffects = {{
    {"Arpeggio  ", RowEffects::StartArpeggio, RowEffects::Arpeggio},
    {"Porta Up  ", RowEffects::StartPortaUp, RowEffects::PortaUp},
    {"Porta Down", RowEffects::StartPortaDown, RowEffects::PortaDown},
    {"PortToNote", RowEffects::StartTonePorta, RowEffects::TonePorta},
    {"Vibrato   ", RowEffects::StartVibrato, RowEffects::Vibrato},
    {"TPortVSlid", RowEffects::StartSlide, RowEffects::TonePortaSlide},
    {"VibraVSlid", RowEffects::StartVibratoSlide, RowEffects::VibratoSlide},
    {"Tremolo   ", RowEffects::StartTremolo, RowEffects::Tremolo},
    {"Pan       ", RowEffects::SetPan, nullptr},
    {"Smp.Offset", RowEffects::SampleOffset, nullptr},
    {"Vol. Slide", RowEffects::StartSlide, RowEffects::VolumeSlide},
    {"JumpToPat ", RowEffects::JumpToPosition, nullptr},
    {"Volume    ", RowEffects::SetVolume, nullptr},
    {"JumpNxtPat", RowEffects::BreakPattern, nullptr},
    {"Extended  ", RowEffects::Extended, nullptr},
    {"BPM/Speed ", RowEffects::SetSpeed, nullptr},
    {"FX On/Off ", RowEffects::FxOnOff, nullptr},
    {"Ins.Flt On", nullptr, nullptr},             // worked before the note, by PerformRow
    {"NoteCutoff", RowEffects::NoteCutoff, nullptr},
    {"Note Q", RowEffects::NoteResonance, nullptr},
    {"XDelay", nullptr, nullptr},                 // worked after all channels of the row, by PerformRow
}};

namespace {

struct ExtendedRow {
    RowEffect onRow = nullptr;
    TickEffect onTick = nullptr;
};

constexpr std::array<ExtendedRow, 16> kExtendedCommands = [] {
    std::array<ExtendedRow, 16> rows{};
    rows[kFinePortaUp] = {RowEffects::FinePortaUp, nullptr};
    rows[kFinePortaDown] = {RowEffects::FinePortaDown, nullptr};
    rows[kPatternLoop] = {RowEffects::PatternLoop, nullptr};
    rows[kRetrigger] = {RowEffects::RunDelayed, RowEffects::Retrigger};
    rows[kFineVolumeUp] = {RowEffects::FineVolumeUp, nullptr};
    rows[kFineVolumeDown] = {RowEffects::FineVolumeDown, nullptr};
    rows[kNoteCut] = {RowEffects::RunExtended, RowEffects::CutNote};
    rows[kNoteDelay] = {RowEffects::RunDelayed, RowEffects::DelayNote};
    rows[kPatternDelay] = {RowEffects::PatternDelay, nullptr};
    return rows;
}();

TickEffect RunningEffect(int code) {
    if (code == kArpeggioTick) return kEffects[kArpeggio].onTick;
    if (code >= kExtendedTick) return kExtendedCommands[static_cast<std::size_t>(code & 15)].onTick;
    return code < kEffectCodes ? kEffects[static_cast<std::size_t>(code)].onTick : nullptr;
}

}  // namespace

bool IsArpeggio(std::uint16_t activeEffect) { return (activeEffect >> 8) == kArpeggioTick && (activeEffect & 0xFF); }

int StartVolume(std::uint16_t cellVolume) { return (cellVolume & kVolumeCommand) ? kNoVolume : cellVolume & 0xFF; }

void RowEffects::Extended(Sequencer& sequencer, RowCell& row) {
    if (const RowEffect perform = kExtendedCommands[row.high].onRow) perform(sequencer, row);
}

void PerformVolumeColumn(Sequencer& sequencer, int channel, std::uint16_t volume) {
    const int units = volume & 15;
    switch ((volume >> 4) & 15) {
        case kColumnSlideDown:
        case kColumnSlideUp: RowEffects::ColumnSlide(sequencer, channel, (volume >> 4) & 15, units); break;
        case kColumnFineDown: RowEffects::ChangeVolume(sequencer, channel, -units); break;
        case kColumnFineUp: RowEffects::ChangeVolume(sequencer, channel, units); break;
        case kColumnPan: RowEffects::SetPanParam(sequencer, channel, units << 4); break;
        default: break;
    }
}

void PerformTickEffects(Sequencer& sequencer, int channel, int tick) {
    const std::uint16_t active = sequencer.Memory(channel).activeEffect;
    if (active)
        if (const TickEffect perform = RunningEffect(active >> 8)) perform(sequencer, channel, active & 0xFF, tick);
    const std::uint16_t column = sequencer.Memory(channel).volumeColumnEffect;
    if (!column) return;
    const int units = column & 15;
    RowEffects::ChangeVolume(sequencer, channel, (column >> 8) == kColumnSlideUp ? units : -units);
}

}  // namespace vonta
