// The sequencer, and the one way to sound: song, position, row and tick logic, effect memories, and the mixer.
//
// Words: a tick is the unit of the sequencer, `tempo` ticks make a row, `samplesPerTick` frames make a tick. All sound
// is made by the block cycle, which the device's timer calls, or by Render on the thread of a mixdown with the device
// stopped: both are called the audio side here.
//
// Threads. Play, Stop and KillChannel post commands. Everything that replaces or frees a part of the song goes inside
// a CycleHold, which nobody hears, or inside a MixerPause if it takes longer than a moment; what frees waves, envelopes
// or plug-ins calls StopInstrument or StopNotes there first, for sounding voices point into them. Positions and single values are plain stores that the audio side sees at its next tick.
#pragma once

#include <array>
#include <bitset>
#include <cstdint>
#include <memory>
#include <span>
#include <utility>

#include "audio/DrvSound.h"
#include "engine/CycleGate.h"
#include "engine/mix/Mixer.h"
#include "engine/sequence/JamQueue.h"
#include "engine/sequence/PlayerCommand.h"
#include "engine/sequence/PositionNotice.h"
#include "platform/Shared.h"
#include "song/Song.h"

namespace vonta {

struct RowCell;

// In the order in which StartSound counts them.
enum class DeviceKind : int { DirectSoundPrimary = 0, DirectSoundSecondary, NoSound, WaveOut, DiskWritter, Asio };

// Makes the device object of a kind; null if it cannot be made. The rooms above supply it: the engine knows no device.
using DeviceFactory = std::unique_ptr<DrvSound> (*)(DeviceKind kind);

// Opens the system's MIDI devices into the mixer's tables, and logs from the outputs' lines on. They supply this too;
// null means no MIDI.
using MidiOpener = void (*)(std::span<std::unique_ptr<DrvMIDIOUT>> outputs, std::span<std::unique_ptr<DrvMIDIIN>> inputs);

class SongEndListener {
public:
    virtual ~SongEndListener() = default;
    virtual void OnSongEnd() = 0;                  // audio side; each time the song wraps
};

// Told of a fault in the block cycle, on the thread that is lost for sound by it.
class CrashHandler {
public:
    virtual ~CrashHandler() = default;
    virtual void OnCrash(int audioFault) = 0;
};

// What a channel remembers between rows, and the effect that runs on this one.
struct ChannelMemory {
    std::uint16_t activeEffect = 0;                // tick code in the high byte, parameter in the low; 0 none
    std::uint16_t volumeColumnEffect = 0;          // command in the high byte, parameter in the low; 0 none
    std::uint16_t arpeggioNote = 0;
    std::int32_t offsetMemory = 0;                 // frames
    std::int32_t slideMemory = 0;
    std::int32_t portaUpMemory = 0, portaDownMemory = 0, portaSpeedMemory = 0;
    std::int32_t portaTarget = -1;                 // note; -1 none
    std::int32_t vibratoMemory = 0;                // speed in the high nibble, depth in the low
    std::uint8_t vibratoPosition = 0, vibratoNegative = 0;   // position 0 to 31, and the half wave
    float savedPeriod = 0;                         // to which vibrato returns
    std::int32_t tremoloMemory = 0;
    std::uint8_t tremoloPosition = 0, tremoloNegative = 0, tremoloBase = 0;
    std::uint16_t delayedNote = 0, delayedInstrument = 0, delayedVolume = 0;
    std::uint8_t patternLoopRow = 0;
    std::int32_t patternLoopCount = -1;            // -1 idle
};

struct PlayPosition {
    std::uint32_t pattern = 0;
    std::int32_t row = 0;                          // never greater than the pattern's rows
    std::int32_t position = 0;
    const Pattern* current = nullptr;
};

class SndPlayer {
public:
    explicit SndPlayer(DeviceFactory factory = nullptr, MidiOpener openMidi = nullptr);
    ~SndPlayer();
    SndPlayer(const SndPlayer&) = delete;
    SndPlayer& operator=(const SndPlayer&) = delete;

    // Opens the device (hostDevice, if given, is taken as it is) and installs the default song. 0 on success; 1 for a
    // kind out of range, a device that cannot be made or whose Init fails.
    int StartSound(void* windowHandle, int deviceKind, int deviceIndex, CrashHandler* crashHandler,
                   std::uint32_t sampleRate, std::unique_ptr<DrvSound> hostDevice = nullptr);
    void Shutdown();                               // stops for good; the destructor does it too

    // Takes the song, or makes the default one of an empty argument; the former is destroyed. Inside a MixerPause.
    void SetSong(std::unique_ptr<Song> song) { ExchangeSong(std::move(song)); }
    // The same, but gives the former song back, its effects with it, as they were: another exchange brings it back.
    std::unique_ptr<Song> ExchangeSong(std::unique_ptr<Song> song);
    Song& GetSong() { return *song_; }
    Mixer& GetMixer() { return *mixer_; }
    DrvSound* GetDevice() { return mixer_->device.get(); }

    void Play(std::uint8_t flags);                 // kPlayPattern, kPlayFromHere
    void Stop(std::uint8_t keepPlaying, std::uint32_t immediate);
    void KillChannel(int channel);                 // at once if no timer runs
    void Panic();                                  // silence, and every plug-in reset

    // The lock between the interface and the audio side: after SetMixerOn(false) the block cycle does not run, and a
    // block of silence is on its way. Never on the audio side. Prefer MixerPause.
    void SetMixerOn(bool on);
    bool IsMixerOn() const;
    CycleGate& GetCycleGate() { return gate_; }    // prefer CycleHold
    // Ends what this instrument sounds, also as MIDI and on plug-ins, so that its waves, envelopes and plug-in may leave.
    // Inside a CycleHold or a MixerPause.
    void StopInstrument(int instrument);
    // Opens a lost device anew, which may run at another rate then. False if it is still gone. Not on the audio side.
    bool RestoreDevice();

    void SetBPM(float bpm);
    void SetTempo(std::uint32_t tempo);            // ticks per row
    void SetSampleRate(std::uint32_t sampleRate);  // Hz; the song keeps speed and pitch. Audio side, or mixer off
    void SetMasterVolume(float value);             // linear
    void SetInterpolation(Interpolation mode);
    void SetLatencyMs(int ms);
    int GetLatencyMs();

    // Each leaves the row that was set as the next to be performed.
    void SetRow(int row);
    void NextPosition();                           // does not wrap
    void PreviousPosition();
    void SetPosition(int position);                // ignored beyond the song
    void NextPattern();
    void PreviousPattern();
    PlayPosition GetCurrentPlayPos() const;

    void SetStopAtEnd(bool on);
    bool IsPlaying() const { return playing_; }
    bool HasEnded() const { return ended_; }
    std::uint32_t TicksPlayed() const { return tickCounter_; }   // since Play
    float GetBPM() const { return bpm_; }
    std::uint32_t StartTime() const { return startTime_; }       // milliseconds, at the last Play
    int OutputClass() const { return outputClass_; }             // 0, 1 DirectSound planes; 2 WaveOut, ASIO; 3 neither
    bool IsHeard() const { return outputClass_ != 3; }
    void SetSongEndListener(SongEndListener* listener) { songEndListener_ = listener; }   // or null
    PositionNotice& GetPositionNotice() { return notice_; }
    bool IsDesynced() const { return desynced_; }  // a host's clock has lost us: its position is not ours, or cannot be had
    bool TakePositionJump() { return positionJumped_.exchange(false); }   // a host moved us: redraw

    // While on, rows performed are remembered from PerformPlay on, and Revisited tells whether a jump or a break has
    // entered one of them again: the song runs in a circle. That counts as a wrap too; pattern loops do not count.
    void SetVisitTracking(bool on);
    bool Revisited() const { return revisited_; }
    void ClearVisits();

    // Keyboard playing in the tick grid, from any thread. volume 255 is the sample's own. The channel taken, or 0 when 32
    // notes wait.
    int QueueNote(int note, int instrument, int volume);
    int QueueNoteOn(int note, int instrument, int channel, int volume);
    void QueueKeyOff(int channel);                 // a released key

    // A muted track takes no notes; a muted instrument's notes run unheard.
    void SetChannelMuted(int channel, bool on);
    bool IsChannelMuted(int channel) const;
    void MuteInstrument(int instrument, bool on);
    void UnmuteInstruments();

    // From here on: the audio side, a mixdown or a test with the mixer off.

    // Mixes the next `frames` (at most kMaxBlockFrames) into the mixer's finalBuffer, ticks included. True if the song
    // wrapped.
    bool Render(int frames);
    // The same walk through ticks and rows without notes or mixing, to count how long a song is.
    bool RenderSilently(int frames);
    // One call of the device: commands, sync, as many blocks as it wants, position notice.
    void BlockCycle();

    void StopNotes() { PerformStop(1, 1); }        // all sound at once; what plays goes on playing
    void PerformPlay(std::uint8_t flags);
    void PerformStop(std::uint8_t keepPlaying, std::uint32_t immediate);
    bool DoTick(bool silent = false);              // true if the song wrapped
    bool PerformRow(bool silent);                  // true if the row reports the song's end
    void SeekToTick(std::uint32_t ticks);          // re-runs the song silently from its start

    // note 0 to 95; offset in floats into the wave; volume above 128 is the sample's own; pan with any of bits 8 to 15
    // set is that in its low byte, else the sample's; time in milliseconds, for MIDI. Ignored if nothing can sound.
    void PlayNote(int instrument, int note, int offset, int volume, int channel, int pan, std::uint32_t time);
    void KeyOff(int channel, std::uint32_t time);

    ChannelMemory& Memory(int channel) { return memory_[static_cast<std::size_t>(channel)]; }
    Channel& GetChannel(int channel) { return *mixer_->channels[static_cast<std::size_t>(channel)]; }

private:
    static constexpr std::uint32_t kLongestSeek = 1u << 20;   // ticks, some hours: a host's number may be anything

    friend struct RowEffects;                      // the effect commands: Effects.cpp
    struct NoteStart;                              // what PlayNote has found out: PlayNote.cpp

    class Cycle final : public TickHandler {
    public:
        explicit Cycle(SndPlayer& player) : player_(player) {}
        bool OnTick() override;
    private:
        SndPlayer& player_;
    };

    // What was last sent to a channel of an output; 65535 is nothing yet.
    struct MidiSent { std::uint16_t bank = 65535, program = 65535, volume = 65535, pan = 65535; };

    bool OpenDevice(void* windowHandle, DeviceKind kind, int deviceIndex);
    void CloseDevice();
    void WriteSilence();
    void UpdateTickLength();
    void TempoChanged();
    void TellSongEnd();
    static float BoundedBpm(float bpm);

    void PerformCommand(const PlayerCommand& command);
    std::uint32_t BytesWanted();
    void WriteBlocks(std::uint32_t bytes);
    void FollowHost();
    void FollowHostPosition();
    bool GetSyncPosition(std::uint32_t& tick, double& fraction, std::uint32_t& row);

    template <class MixSegment>
    bool WalkTicks(int frames, bool silent, MixSegment mixSegment);
    bool AdvanceSequencer(bool silent);
    bool AdvanceRow();
    bool GoToNextPosition();
    void EnterPosition(std::int32_t position);
    bool NoteVisit(bool jumped, bool wrapped);
    void TakeStart(std::uint8_t flags);
    void ResetSequencer();
    void RunTickEffects();
    void RunJamQueue();
    void ApplyMuteRequests();
    const Pattern& CurrentPattern() const;
    void SelectPattern(int pattern);

    void PerformCell(RowCell& row);
    void ReturnFromArpeggio(int channel);
    void StartCell(RowCell& row);
    bool SendMidiController(const RowCell& row);
    bool Trigger(int channel, int note, int instrument, int volume, bool restartEnvelopes, std::uint32_t time);
    void TriggerInstrumentAlone(int channel, int instrument, int volume, bool restartEnvelopes, std::uint32_t time);
    void RestartEnvelopes(Channel& channel, Instrument& instrument, std::uint8_t pan);
    void SetupNextEnvelopes(Channel& channel, Instrument& instrument, std::uint8_t pan, float cutoff, float resonance);

    float StepCutoffLfo(Instrument& instrument);
    void MoveOldSoundOut(int channel);
    void StartVoices(const NoteStart& note);
    void SendMidiNote(int channel, int instrument, int note, int volume, std::uint32_t time);
    void SendMidiSettings(DrvMIDIOUT& output, const Instrument& instrument, int outputNumber, std::uint32_t time);
    void SendMidiNoteOff(Channel& channel, std::uint32_t time);
    void ForgetMidiSent(int firstOutput);
    void ForgetSynthsSent();

    // Set at start-up.
    DeviceFactory factory_;
    MidiOpener openMidi_;
    CrashHandler* crashHandler_ = nullptr;
    Relaxed<SongEndListener*> songEndListener_{nullptr};
    std::uint8_t outputClass_ = 3;
    bool hostInput_ = false;                       // midiIn[0] is the device's own
    CycleGate gate_;
    Cycle cycle_{*this};

    std::unique_ptr<Song> song_;
    std::unique_ptr<Mixer> mixer_;
    std::unique_ptr<Pattern> emptyPattern_ = std::make_unique<Pattern>();

    // The clock.
    Relaxed<float> bpm_{125.0f};
    Relaxed<float> tickStep_{1.0f};                // envelope advance per tick; 1 at 125 BPM
    std::int8_t tick_ = -1;                        // within the row; 0 is the row's own
    bool silent_ = false;                          // this tick starts no notes and sends nothing
    Relaxed<std::uint32_t> tickCounter_{0};
    Relaxed<std::uint32_t> startTime_{0};

    // The position.
    Relaxed<std::uint32_t> pattern_{0};
    Relaxed<std::int32_t> row_{0};
    Relaxed<std::int32_t> position_{0};            // index in the song's patternList
    Relaxed<std::uint8_t> rowStep_{0};             // 0: the next advance keeps the row
    std::uint8_t patternDelay_ = 0;                // rows still to be held
    Relaxed<std::uint8_t> playing_{0}, patternMode_{0}, stopAtEnd_{0}, ended_{0};

    // What the commands of a row ask of the next advance.
    std::uint8_t loopJump_ = 0, orderJump_ = 0, patternBreak_ = 0;
    std::uint8_t loopRow_ = 0, orderTarget_ = 0;
    std::uint16_t breakRow_ = 0;

    std::array<ChannelMemory, kTracks> memory_;
    std::array<Relaxed<std::uint8_t>, kTracks> channelMuted_;

    CommandList commands_;
    JamQueue jam_;
    PositionNotice notice_;
    std::atomic<bool> positionJumped_{false};
    Relaxed<std::uint8_t> desynced_{0};

    // Mutes of sounding notes, applied by the audio side: channels change places under it.
    enum MuteRequest : std::uint8_t { kKeep, kUnmute, kMute };
    std::array<std::atomic<std::uint8_t>, kMaxInstruments> muteRequests_{};
    std::atomic<bool> muteRequested_{false}, unmuteAll_{false};

    std::array<std::array<MidiSent, 16>, 256> midiSent_;   // per output number and MIDI channel
    std::uint32_t random_ = 1;                     // of the cutoff LFO

    bool trackVisits_ = false, revisited_ = false;
    std::bitset<kMaxPositions * kMaxRows> visited_;
};

// Holds the audio side still between two blocks while it lives, for what takes microseconds: the device plays on what it
// has, and nothing is heard of it. Nested ones are free, inside a MixerPause too. Never on the audio side.
class CycleHold {
public:
    explicit CycleHold(SndPlayer& player) : gate_(player.GetCycleGate()) { gate_.Hold(); }
    ~CycleHold() { gate_.Release(); }
    CycleHold(const CycleHold&) = delete;
    CycleHold& operator=(const CycleHold&) = delete;

private:
    CycleGate& gate_;
};

// Stops the audio side and silences the device while it lives, for what takes its time; nested ones are free. Never on
// the audio side.
class MixerPause {
public:
    explicit MixerPause(SndPlayer& player) : player_(player), wasOn_(player.IsMixerOn()) {
        if (wasOn_) player_.SetMixerOn(false);
    }
    ~MixerPause() { if (wasOn_) player_.SetMixerOn(true); }
    MixerPause(const MixerPause&) = delete;
    MixerPause& operator=(const MixerPause&) = delete;

private:
    SndPlayer& player_;
    bool wasOn_;
};

}  // namespace vonta
