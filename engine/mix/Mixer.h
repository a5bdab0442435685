// The mixer: channels and reserve, buffers, effect slots and master, and the link to the sound device.
//
// What happens to a channel's sound between the mix loop and the device, per segment and in this order: mix, peak
// test, channel filters, synths, buses, send slots, groups, synths out, buses out; and per block: master slots,
// amplification, clip. Audio thread, or the thread of a mixdown with the device stopped.
//
// Channel, bus, group and output buffers are at the 16-bit scale, effect slots at 1.0, synths at 0.5. The buffer of a
// slot with a mono output holds one float a frame. The stages themselves are in Stages.h.
#pragma once

#include <array>
#include <cstdint>
#include <memory>

#include "audio/DrvSound.h"
#include "engine/channels/Channel.h"
#include "engine/CpuScan.h"
#include "engine/mix/MixLoop.h"
#include "engine/mix/ScopeTap.h"
#include "midi/DrvMIDIIN.h"
#include "midi/DrvMIDIOUT.h"
#include "song/Song.h"

namespace vonta {

constexpr int kMaxBlockFrames = 2048;             // what the buffers hold
constexpr int kRenderFrames = 1024;               // what the block cycle asks for at most
constexpr int kMidiPorts = 256;
constexpr int kFlushedMidiOuts = 16;
constexpr float kClipBound = 32764.0f;
constexpr float kSlotScale = 32768.0f;            // effect slots work at 1.0
constexpr float kSynthScale = 65536.0f;           // synths work at 0.5
constexpr float kLivePeak = 1.0f;                 // at or below, a side is silent for the filters

using StereoBuffer = std::array<float, kBlockFloats>;

struct Mixer {
    // The device and the block cycle.
    std::uint32_t sampleRate = 44100;             // Hz
    std::unique_ptr<DrvSound> device;
    std::uint32_t playPosition = 0, writePosition = 0, blockBytes = 0;
    std::uint8_t restartBlock = 0;                // the next block is the first after a start
    std::uint8_t timerFlag = 1;                   // the device runs the callback from a timer
    float samplesPerTick = 882.0f;                // frames; shared, as sampleRate is not
    float tickPosition = 0.0f;                    // frames since the last tick
    std::uint32_t syncSamples = 0;

    // Sound.
    std::uint32_t interpolation = static_cast<std::uint32_t>(Interpolation::Linear);
    float masterAmp = 1.0f;
    std::uint8_t clearIdle = 0;                   // zero what slots and buses leave unwritten (mixdown by parts)
    std::array<std::unique_ptr<Channel>, kTracks> channels;   // one per track
    std::array<std::unique_ptr<Channel>, kTracks> reserve;    // notes that fade or go on
    std::uint32_t reserveIndex = 0;               // next to be taken by a note that goes on
    FxSlotTable effects;
    std::array<std::unique_ptr<DrvMIDIOUT>, kMidiPorts> midiOut;
    std::array<std::unique_ptr<DrvMIDIIN>, kMidiPorts> midiIn;
    std::unique_ptr<CpuScan> cpuScan = std::make_unique<CpuScan>();

    // Buffers, interleaved stereo.
    std::array<StereoBuffer, kTracks> channelBuffer{};
    std::array<StereoBuffer, kTracks> reserveBuffer{};
    std::array<StereoBuffer, kEffectSlots> fxBuffer{};
    std::array<StereoBuffer, kBuses> busBuffer{};
    std::array<StereoBuffer, kOutputPairs> outputBuffer{};    // before the master stage
    std::array<StereoBuffer, kOutputPairs> finalBuffer{};     // what the device gets
    std::array<float*, kOutputPairs> outputs{};               // finalBuffer, as WriteBlock takes it

    // Which buffers hold something in this block.
    std::array<std::uint8_t, kOutputPairs> outputUsed{};
    std::array<std::uint8_t, kMaxInstruments> groupUsed{};
    std::array<std::uint8_t, kOutputPairs> finalZeroed{};     // finalBuffer is silent from end to end
    // Of the segment last mixed, for the meters of the interface.
    std::uint8_t busUsed = 0;                     // bit per bus
    std::uint16_t fxUsed = 0;                     // bit per slot
    ScopeTap scope;

    Mixer();
    Mixer(const Mixer&) = delete;
    Mixer& operator=(const Mixer&) = delete;

    void BeginBlock();                            // forgets what the last one used
    // All stages of one segment, `frames` at frame `offset` of the block; offset + frames is at most
    // kMaxBlockFrames.
    void MixSegment(Song& song, int offset, int frames);
    // Master slots, MIDI time, amplification and clip of the whole block, into finalBuffer.
    void FinishBlock(int frames, std::uint32_t now);

    // Installs an effect, which Init starts at the mixer's rate; if that fails it is destroyed and the slot stays.
    // The former one hands on its `on`. Null empties the slot. With the mixer off.
    void SetEffect(int slot, std::unique_ptr<EffectSlot> effect);
    void EffectOn(int slot, std::uint8_t on);
    // The MIDI face behind a channel's output number: a port below 128, a synth of the song from there; may be null.
    DrvMIDIOUT* MidiOutput(const Song& song, int output);
};

}  // namespace vonta
