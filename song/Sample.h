// One recorded sound of an instrument: playing defaults, and a wave of 32-bit floats at the scale of a signed
// 16-bit sample (full scale 32768.0), interleaved left first for stereo.
//
// Lengths, loop points and selections count floats (elements), so a stereo frame counts two. Everything that
// replaces a wave runs while the player is paused.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vonta {

enum LoopType : std::uint8_t {
    VTSAMPLE_LOOP_NONE = 0,
    VTSAMPLE_LOOP_FORDWARD = 1,
    VTSAMPLE_LOOP_PINGPONG = 2,
};

// The wave. The mix loop reads a little before and after a position, so the block is two zero floats, the wave,
// and six zero floats.
struct SampleData {
    static constexpr std::uint32_t kHeadFloats = 2;
    static constexpr std::uint32_t kTailFloats = 6;

    std::unique_ptr<float[]> block;              // kHeadFloats + count + kTailFloats; none in new data
    std::uint32_t count = 0;                     // floats, all channels together
    std::uint32_t refCount = 0;                  // how many clones point here
    std::uint8_t stereo = 0;                     // channels minus one
    std::uint32_t loopStart = 0, loopEnd = 0;    // floats; loopEnd is exclusive
    std::uint8_t loopType = VTSAMPLE_LOOP_NONE;
    std::uint8_t isClone = 0;                    // no wave of its own
    std::weak_ptr<SampleData> cloneOf;           // what a clone plays; it does not keep it alive
    std::uint32_t cloneId = 0;                   // instrument in bits 8 to 15, sample in bits 0 to 7
    std::uint8_t parked = 0;                     // taken out of the song, but kept: clones find it gone

    SampleData() = default;
    SampleData(const SampleData&) = delete;
    SampleData& operator=(const SampleData&) = delete;
    ~SampleData();                               // a clone that goes is no longer counted by its target

    // The data that is played: this, or what a clone points at in the end; a clone whose target is gone is empty.
    // Valid while the player is paused or on its thread.
    const SampleData& Source() const;
    void Unlink();
    // Exchanges wave, loop and link with other data; who points here goes on doing so.
    void SwapWave(SampleData& other);
    float* Wave() { return block ? block.get() + kHeadFloats : nullptr; }
    const float* Wave() const { return block ? block.get() + kHeadFloats : nullptr; }
};

// Elements cut or copied out of a sample.
struct SampleClip {
    std::vector<float> values;
    int channels = 1;
};

struct Sample {
    std::shared_ptr<SampleData> data = std::make_shared<SampleData>();   // shared with nobody but weak clones
    std::int8_t toneRel = 0;             // semitones, -48 to 71
    std::int8_t fineTune = 0;            // 1/128 of a semitone
    std::uint8_t volume = 0;             // 0 to 128
    std::uint8_t panning = 128;          // 0 left, 128 centre, 255 right
    std::uint8_t bits = 8;               // depth of the source file; not used by sound
    std::string name;                    // at most 255 characters
    std::int32_t isValid = 1;
    std::int32_t selStart = 0, selEnd = 0, selActive = 0;   // the editor's selection

    // What is played, clones followed. Wave is null when there is none.
    std::uint32_t Count() const { return data->Source().count; }
    const float* Wave() const { return data->Source().Wave(); }
    int Channels() const { return data->Source().stereo ? 2 : 1; }

    void SetName(std::string_view text);                             // cut to 255 characters
    // Replaces the wave by a zeroed one and returns it to be filled; a clone becomes a plain sample. 1 channel is mono,
    // anything else stereo. The caller has checked `count` against what it read.
    std::span<float> Allocate(std::uint32_t count, int channels);
    void SetData(std::span<const float> values, int channels);       // copies

    void MakeClone();                                                // drops the wave; reads as empty until linked
    void Link(const std::shared_ptr<SampleData>& target, std::uint32_t id);
    void Unlink();

    // Repairs what interpolation reads at the end of a mono wave.
    void Validate();
    std::unique_ptr<Sample> Duplicate() const;                       // never a clone

    // On the selection; nothing without one. They reset loop and selection.
    SampleClip Cut();
    SampleClip Copy() const;                                         // changes nothing
    void Paste(const SampleClip& clip);                              // only with the same channel count
    void Delete();
    void Crop();                                                     // nothing if the selection is empty

    void ToggleSign();                                 // the whole wave: signed read as unsigned, and back

    bool IsEightBit() const;                                         // every value survives as 8 bits
    bool IsSixteenBit() const;

private:
    void ReplaceWave(std::initializer_list<std::span<const float>> parts);
};

}  // namespace vonta
