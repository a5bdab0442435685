// The walk through the song: the clock, the position, and the work of a tick and of a row.
//
// Words: a tick is the unit, `tempo` ticks make a row, `samplesPerTick` frames make a tick. Audio side, but for
// positions and single values, which are plain stores that the next row or tick sees.
#pragma once

#include <array>
#include <bitset>
#include <cstdint>
#include <memory>

#include "engine/channels/NoteStarter.h"
#include "engine/sequence/Requests.h"
#include "platform/Shared.h"

namespace vonta {

struct RowCell;

class SongEndListener {
public:
    virtual ~SongEndListener() = default;
    virtual void OnSongEnd() = 0;                  // audio side; each time the song wraps
};

struct PlayPosition {
    std::uint32_t pattern = 0;
    std::int32_t row = 0;                          // never greater than the pattern's rows
    std::int32_t position = 0;
    const Pattern* current = nullptr;
};

class Sequencer {
public:
    static constexpr std::uint32_t kLongestSeek = 1u << 20;   // ticks, some hours: a host's number may be anything

    Sequencer(Mixer& mixer, const std::unique_ptr<Song>& song, NoteStarter& notes, Requests& requests)
        : mixer_(mixer), song_(song), notes_(notes), requests_(requests) {}

    void PerformPlay(std::uint8_t flags);
    void PerformStop(std::uint8_t keepPlaying, std::uint32_t immediate);
    bool DoTick(bool silent);                      // true if the song wrapped
    bool PerformRow(bool silent);                  // true if the row reports the song's end
    void SeekToTick(std::uint32_t ticks);          // re-runs the song silently from its start
    void EnterSong();                              // another one: its tempo, from its beginning

    void SetBPM(float bpm);
    void SetTempo(std::uint32_t tempo);
    void UpdateTickLength();                       // from beats and rate
    void TempoChanged();                           // tells the effects
    static float BoundedBpm(float bpm);

    // Each leaves the row that was set as the next to be performed.
    void SetRow(int row);
    void NextPosition();                           // does not wrap
    void PreviousPosition();
    void SetPosition(int position);                // ignored beyond the song
    void NextPattern();
    void PreviousPattern();
    PlayPosition GetCurrentPlayPos() const;

    void SetStopAtEnd(bool on);
    void SetSongEndListener(SongEndListener* listener) { songEndListener_ = listener; }
    void SetVisitTracking(bool on);
    void ClearVisits();
    void SetChannelMuted(int channel, bool on);
    bool IsChannelMuted(int channel) const;

    bool IsPlaying() const { return playing_; }
    bool IsPatternMode() const { return patternMode_; }   // of the last Play
    bool HasEnded() const { return ended_; }
    bool Revisited() const { return revisited_; }
    std::uint32_t TicksPlayed() const { return tickCounter_; }   // since Play
    float GetBPM() const { return bpm_; }
    std::uint32_t StartTime() const { return startTime_; }       // milliseconds, at the last Play
    std::int32_t Row() const { return row_; }
    std::uint32_t PatternNumber() const { return pattern_; }
    const Song& PlayedSong() const { return *song_; }
    ChannelMemory& Memory(int channel) { return notes_.Memory(channel); }
    Channel& GetChannel(int channel) { return notes_.GetChannel(channel); }

private:
    friend struct RowEffects;                      // the effect commands: Effects.cpp

    void TakeStart(std::uint8_t flags);
    void ResetSequencer();
    bool AdvanceSequencer(bool silent);
    bool AdvanceRow();
    bool GoToNextPosition();
    void EnterPosition(std::int32_t position);
    bool NoteVisit(bool jumped, bool wrapped);
    void RunTickEffects();
    void RunJamQueue();
    void TellSongEnd();
    const Pattern& CurrentPattern() const;
    void SelectPattern(int pattern);

    void PerformCell(RowCell& row);
    void ReturnFromArpeggio(int channel);
    void StartCell(RowCell& row);
    bool Trigger(int channel, int note, int instrument, int volume, bool restartEnvelopes, std::uint32_t time) {
        return !silent_ && notes_.Trigger(channel, note, instrument, volume, restartEnvelopes, time);
    }

    Mixer& mixer_;
    const std::unique_ptr<Song>& song_;            // the one that is played, whichever it is
    NoteStarter& notes_;
    Requests& requests_;
    Relaxed<SongEndListener*> songEndListener_{nullptr};
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

    std::array<Relaxed<std::uint8_t>, kTracks> channelMuted_;
    std::bitset<kTracks> letGo_;                   // keys whose release waits for the next tick

    bool trackVisits_ = false, revisited_ = false;
    std::bitset<kMaxPositions * kMaxRows> visited_;
};

}  // namespace vonta
