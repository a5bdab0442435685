// The player: the face of all that turns a song into sound, and the owner of the song and the mixer.
//
// It owns few objects, each of which has its own page: what other threads ask for (Requests), the walk through the song
// (Sequencer), how notes begin and end (NoteStarter, MidiNotes), a host's transport (HostSync), the sound device
// (DeviceLink). All sound is made by the block cycle, which the device's timer calls, or by Render on the thread of a
// mixdown with the device stopped: both are called the audio side.
//
// Threads. Play, Stop and KillChannel post commands. Everything that replaces or frees a part of the song goes inside
// a CycleHold, which nobody hears, or inside a MixerPause if it takes longer than a moment; what frees waves, envelopes
// or plug-ins calls StopInstrument or StopNotes there first, for sounding voices point into them. Positions and single
// values are plain stores that the audio side sees at its next tick.
#pragma once

#include <cstdint>
#include <memory>

#include "engine/channels/MidiNotes.h"
#include "engine/channels/NoteStarter.h"
#include "engine/DeviceLink.h"
#include "engine/mix/Mixer.h"
#include "engine/sequence/HostSync.h"
#include "engine/sequence/PositionNotice.h"
#include "engine/sequence/Requests.h"
#include "engine/sequence/Sequencer.h"
#include "platform/Clock.h"
#include "platform/Shared.h"
#include "song/Song.h"

namespace vonta {

// Told of a fault in the block cycle, on the thread that is lost for sound by it.
class CrashHandler {
public:
    virtual ~CrashHandler() = default;
    virtual void OnCrash(int audioFault) = 0;
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

    void Play(std::uint8_t flags) { requests_.Play(flags); }     // kPlayPattern, kPlayFromHere
    void Stop(std::uint8_t keepPlaying, std::uint32_t immediate) { requests_.Stop(keepPlaying, immediate); }
    void KillChannel(int channel);                 // at once if no timer runs
    void Panic();                                  // silence, and every plug-in reset

    // The lock between the interface and the audio side: after SetMixerOn(false) the block cycle does not run, and a
    // block of silence is on its way. Never on the audio side. Prefer MixerPause.
    void SetMixerOn(bool on) { device_.SetMixerOn(on); }
    bool IsMixerOn() const { return device_.IsMixerOn(); }
    CycleGate& GetCycleGate() { return device_.Gate(); }         // prefer CycleHold
    // Ends what this instrument sounds, also as MIDI and on plug-ins, so that its waves, envelopes and plug-in may
    // leave. Inside a CycleHold or a MixerPause.
    void StopInstrument(int instrument) { notes_.StopInstrument(instrument, Milliseconds()); }
    // Opens a lost device anew, which may run at another rate then. False if it is still gone. Not on the audio side.
    bool RestoreDevice();

    void SetBPM(float bpm) { sequencer_.SetBPM(bpm); }
    void SetTempo(std::uint32_t tempo) { sequencer_.SetTempo(tempo); }   // ticks per row
    void SetSampleRate(std::uint32_t sampleRate);  // Hz; the song keeps speed and pitch. Audio side, or mixer off
    void SetMasterVolume(float value);             // linear
    void SetInterpolation(Interpolation mode);
    void SetLatencyMs(int ms) { device_.SetLatencyMs(ms); }
    int GetLatencyMs() const { return device_.GetLatencyMs(); }  // what the device really took

    // Each leaves the row that was set as the next to be performed.
    void SetRow(int row) { sequencer_.SetRow(row); }
    void NextPosition() { sequencer_.NextPosition(); }           // does not wrap
    void PreviousPosition() { sequencer_.PreviousPosition(); }
    void SetPosition(int position) { sequencer_.SetPosition(position); }   // ignored beyond the song
    void NextPattern() { sequencer_.NextPattern(); }
    void PreviousPattern() { sequencer_.PreviousPattern(); }
    PlayPosition GetCurrentPlayPos() const { return sequencer_.GetCurrentPlayPos(); }

    void SetStopAtEnd(bool on) { sequencer_.SetStopAtEnd(on); }
    bool IsPlaying() const { return sequencer_.IsPlaying(); }
    bool HasEnded() const { return sequencer_.HasEnded(); }
    std::uint32_t TicksPlayed() const { return sequencer_.TicksPlayed(); }   // since Play
    float GetBPM() const { return sequencer_.GetBPM(); }
    std::uint32_t StartTime() const { return sequencer_.StartTime(); }       // milliseconds, at the last Play
    int OutputClass() const { return device_.OutputClass(); }    // 0, 1 DirectSound planes; 2 WaveOut, ASIO; 3 neither
    bool IsHeard() const { return OutputClass() != 3; }
    void SetSongEndListener(SongEndListener* listener) { sequencer_.SetSongEndListener(listener); }   // or null
    PositionNotice& GetPositionNotice() { return notice_; }
    bool IsDesynced() const { return sync_.IsDesynced(); }       // a host's clock has lost us
    bool TakePositionJump() { return sync_.TakePositionJump(); } // a host moved us: redraw

    // While on, rows performed are remembered from PerformPlay on, and Revisited tells whether a jump or a break has
    // entered one of them again: the song runs in a circle. That counts as a wrap too; pattern loops do not count.
    void SetVisitTracking(bool on) { sequencer_.SetVisitTracking(on); }
    bool Revisited() const { return sequencer_.Revisited(); }
    void ClearVisits() { sequencer_.ClearVisits(); }

    // Keyboard playing in the tick grid, from any thread. volume 255 is the sample's own. The channel taken, or 0 when
    // 32 notes wait.
    int QueueNote(int note, int instrument, int volume) { return requests_.QueueNote(note, instrument, volume); }
    int QueueNoteOn(int note, int instrument, int channel, int volume) {
        return requests_.QueueNoteOn(note, instrument, channel, volume);
    }
    // A sample from one float to another, once if that is not all of it, at the rate of its recording.
    int QueueStretch(int instrument, int sample, std::uint32_t from, std::uint32_t to) {
        return requests_.QueueStretch(instrument, sample, from, to);
    }
    void QueueKeyOff(int channel) { QueueNoteOn(kNoteOff, 0, channel, 0); }   // a released key

    // A muted track takes no notes; a muted instrument's notes run unheard.
    void SetChannelMuted(int channel, bool on) { sequencer_.SetChannelMuted(channel, on); }
    bool IsChannelMuted(int channel) const { return sequencer_.IsChannelMuted(channel); }
    void MuteInstrument(int instrument, bool on) { requests_.MuteInstrument(instrument, on); }
    void UnmuteInstruments() { requests_.UnmuteInstruments(); }

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
    void PerformStop(std::uint8_t keepPlaying, std::uint32_t immediate) {
        sequencer_.PerformStop(keepPlaying, immediate);
    }
    bool DoTick(bool silent = false) { return sequencer_.DoTick(silent); }   // true if the song wrapped
    bool PerformRow(bool silent) { return sequencer_.PerformRow(silent); }   // true if the row reports the song's end
    void SeekToTick(std::uint32_t ticks) { sequencer_.SeekToTick(ticks); }   // re-runs the song silently from its start

    // See NoteStarter.
    void PlayNote(int instrument, int note, int offset, int volume, int channel, int pan, std::uint32_t time) {
        notes_.PlayNote(instrument, note, offset, volume, channel, pan, time);
    }
    void KeyOff(int channel, std::uint32_t time) { notes_.KeyOff(channel, time); }

    ChannelMemory& Memory(int channel) { return notes_.Memory(channel); }
    Channel& GetChannel(int channel) { return notes_.GetChannel(channel); }

private:
    class Cycle final : public TickHandler {
    public:
        explicit Cycle(SndPlayer& player) : player_(player) {}
        bool OnTick() override;
    private:
        SndPlayer& player_;
    };

    void PerformCommand(const PlayerCommand& command);
    std::uint32_t BytesWanted();
    void WriteBlocks(std::uint32_t bytes);

    std::unique_ptr<Song> song_;
    std::unique_ptr<Mixer> mixer_;
    Requests requests_;
    MidiNotes midi_{*mixer_, song_};
    NoteStarter notes_{*mixer_, song_, midi_};
    Sequencer sequencer_{*mixer_, song_, notes_, requests_};
    HostSync sync_{*mixer_, sequencer_, requests_};
    DeviceLink device_;
    PositionNotice notice_;
    CrashHandler* crashHandler_ = nullptr;
    Cycle cycle_{*this};
};

// Holds the audio side still between two blocks while it lives, for what takes microseconds: the device plays on what
// it has, and nothing is heard of it. Nested ones are free, inside a MixerPause too. Never on the audio side.
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
