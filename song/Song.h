// The one document: an ordered list of pattern numbers, patterns, instruments, routing and free text.
//
// The player holds one current Song and reads it without a lock. Cells, tempo values and the pattern list are
// single stores; patterns, instruments and plug-ins are exchanged only while the player is paused.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "plugins/EffectSlot.h"
#include "plugins/SynthPlugin.h"
#include "song/Instrument.h"
#include "song/Pattern.h"

namespace vonta {

constexpr int kMaxPatterns = 256;
constexpr int kMaxPositions = 256;
constexpr int kMaxInstruments = 128;
constexpr int kMinChannels = 2;
constexpr int kMaxChannels = kTracks;
constexpr std::uint32_t kMinBpm = 32, kMaxBpm = 255, kDefaultBpm = 125;
constexpr std::uint32_t kMinTempo = 1, kMaxTempo = 31, kDefaultTempo = 6;
constexpr int kNoTarget = -1;

// How the output of one effect slot continues.
struct FxRouting {
    std::array<std::int32_t, 4> target{};                // slot, or kNoTarget
    std::array<float, 4> gain{1, 1, 1, 1};
    std::array<std::uint8_t, 4> enabled{};
    bool operator==(const FxRouting&) const = default;
};

struct Bus {
    std::uint8_t active = 0;
    float volume = 1.0f;
    std::array<std::uint8_t, 4> sendEnabled{};
    std::array<float, 4> sendGain{1, 1, 1, 1};
    std::array<std::uint8_t, 4> sendTarget{0, 1, 2, 3};  // effect slots
    float pan = 0.5f;                                    // held and saved
    std::uint8_t output = 0;                             // output pair
    bool operator==(const Bus&) const = default;
};

constexpr std::array<FxRouting, kEffectSlots> DefaultRouting() {
    std::array<FxRouting, kEffectSlots> routing{};
    for (int slot = 0; slot < kEffectSlots; ++slot)
        for (int k = 0; k < 4; ++k) {
            const int target = slot + 1 + k;
            routing[static_cast<std::size_t>(slot)].target[static_cast<std::size_t>(k)] =
                target < kSendSlots ? target : kNoTarget;
        }
    return routing;
}

using FxSlotTable = std::array<std::unique_ptr<EffectSlot>, kEffectSlots>;

constexpr std::uint32_t kNotKept = 0xFFFFFFFF;               // of a number that a song does not keep apart

// A sample of a song: the instrument's place and the sample's place in it.
struct SampleNumber {
    int instrument = 0, sample = 0;
    bool operator==(const SampleNumber&) const = default;
    std::uint32_t CloneId() const {              // as a clone holds it
        return static_cast<std::uint32_t>(instrument) * 256 + static_cast<std::uint32_t>(sample);
    }
    static SampleNumber OfCloneId(std::uint32_t id) {
        return {static_cast<int>(id >> 8 & 0xFF), static_cast<int>(id & 0xFF)};
    }
};

struct Song {
    std::string title;                                   // at most 254 characters
    std::uint32_t bpm = kDefaultBpm;                     // the player writes the running value here
    std::uint32_t tempo = kDefaultTempo;                 // ticks per row; likewise
    // What the song begins with and what is saved, once KeepStart has set it apart from what its commands make of it.
    std::uint32_t startBpm = kNotKept, startTempo = kNotKept;
    std::uint32_t restartPos = 0;
    std::uint32_t length = 0;                            // positions in use; 1 in a new song
    std::array<std::uint8_t, kMaxPositions> patternList{};
    std::int32_t numChannels = 0;
    std::int32_t numPatterns = 0;                        // count of AddPattern
    std::array<std::unique_ptr<Pattern>, kMaxPatterns> patterns;
    std::int32_t numInstruments = 0;                     // count of AddInstrument
    std::array<std::unique_ptr<Instrument>, kMaxInstruments> instruments;
    std::string comments;
    std::array<std::string, kEffectSlots> fxNames;       // as the song file records them
    FxSlotTable* fxSlotTable = nullptr;                  // the player's slots, while this song is current
    FxSlotTable fxSlots;                                 // delivered by a loader; the player takes them
    // By slot: what the song file says of plug-ins that could not be loaded, so that the next save says it too.
    std::map<int, std::vector<std::uint8_t>> missingEffects, missingSynths;
    float masterVolume = 1.0f;
    std::array<std::unique_ptr<SynthPlugin>, kMaxInstruments> synths;
    std::array<FxRouting, kEffectSlots> fxRouting = DefaultRouting();
    std::array<Bus, kBuses> buses;
    std::string fileName;                                // at most 255 characters

    // The song of a fresh start: 10 channels, one empty pattern of 64 rows.
    static std::unique_ptr<Song> MakeDefault();

    std::uint32_t GetBPM() const;
    std::uint32_t GetTempo() const;
    std::uint32_t GetPatternPosLenght() const;
    std::uint32_t GetPatternPosRestart() const;
    int GetPatternPosIndex(int position) const;          // 0 outside
    bool KeepsStart() const;
    std::uint32_t StartBpm() const;                      // the present one if none is kept apart
    std::uint32_t StartTempo() const;
    void KeepStart();                                    // the present ones, unless the song keeps some already
    void SetStartBpm(std::uint32_t value);
    void SetStartTempo(std::uint32_t value);
    void SetBPM(std::uint32_t value);
    void SetTempo(std::uint32_t value);
    void SetNumChannels(int channels);                   // clamped to 2 to 64
    void SetPatternPosLenght(std::uint32_t positions);
    void SetPatternPosRestart(std::uint32_t position);
    void SetPatternPosIndex(int position, int pattern);  // nothing outside
    void SetPatternList(const std::array<std::uint8_t, kMaxPositions>& bytes);
    void SetMasterVolume(float value);
    void SetTitle(std::string_view text);
    void SetComments(std::string text);
    void SetFileName(std::string_view text);

    // Stored at the count, which goes up; the index, or -1 (and dropped) when all places are taken.
    int AddPattern(std::unique_ptr<Pattern> pattern);
    int AddInstrument(std::unique_ptr<Instrument> instrument);
    void SetPattern(int index, std::unique_ptr<Pattern> pattern);
    void SetInstrument(int index, std::unique_ptr<Instrument> instrument);
    void SetSynth(int index, std::unique_ptr<SynthPlugin> synth);
    Pattern* GetPattern(int index) const;                // null outside or if empty, as the next two
    Instrument* GetInstrument(int index) const;
    SynthPlugin* GetSynth(int index) const;

    void SwapInstruments(int a, int b);
    void SwapSamples(int instrumentA, int sampleA, int instrumentB, int sampleB);   // both of the sample kind
    // Makes sample A, already of the clone kind, play sample B.
    void LinkSample(int instrumentA, int sampleA, int instrumentB, int sampleB);
    Sample* Find(SampleNumber number) const;             // null if it is not there
    // What a clone of `source` plays: the source, or what that one plays if it is a clone itself.
    SampleNumber CloneTarget(SampleNumber source) const;
    int CountInstruments() const;
    int CountSamples() const;                            // the first 16 of each instrument

    // Brings every count and range of a freshly loaded song inside its limits.
    void Validate();
};

}  // namespace vonta
