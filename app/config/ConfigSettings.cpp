#include "app/config/ConfigSettings.h"

#include <cstddef>

namespace vonta {
namespace {

// By MODE, whose numbers are not those of the player.
constexpr DeviceKind kDeviceKinds[] = {DeviceKind::DirectSoundPrimary, DeviceKind::DirectSoundSecondary,
                                       DeviceKind::WaveOut,            DeviceKind::NoSound,
                                       DeviceKind::DiskWritter,        DeviceKind::Asio};
constexpr Interpolation kInterpolations[] = {Interpolation::None, Interpolation::Linear, Interpolation::Cubic};
constexpr int kVisibleChannels[] = {4, 8, 16, 24, 32, 0};
constexpr int kColourDepths[] = {16, 24, 32};

constexpr int kMaxWideChannels = 8;
constexpr int kMaxDevice = 255;
constexpr int kMinSampleRate = 1000, kMaxSampleRate = 384000;   // Hz; beyond them the default holds
constexpr int kMaxWaitMs = 1000;                     // a program that sleeps longer seems dead

template <class T, std::size_t count>
T At(const T (&values)[count], int index, T otherwise) {
    return index >= 0 && static_cast<std::size_t>(index) < count ? values[index] : otherwise;
}

std::uint32_t SampleRate(int rate) {
    return static_cast<std::uint32_t>(rate >= kMinSampleRate && rate <= kMaxSampleRate ? rate : Config{}.sampleRate);
}

KeyRepeat Repeat(int ticksPerSecond, int delay) {
    return {kTicksPerSecondRange.Clamp(ticksPerSecond), kRepeatDelayRange.Clamp(delay)};
}

WheelAction Wheel(int action) {
    return action >= kWheelNothing && action <= kWheelInstrument ? static_cast<WheelAction>(action) : kWheelNothing;
}

}  // namespace

Settings SettingsOf(const Config& config) {
    Settings settings;
    settings.deviceKind = At(kDeviceKinds, config.mode, DeviceKind::DirectSoundPrimary);
    settings.deviceIndex = std::clamp(config.deviceNumber, 0, kMaxDevice);
    settings.sampleRate = SampleRate(config.sampleRate);
    settings.latencyMs = kLatencyRange.Clamp(config.latency);
    settings.masterAmp = kAmplificationRange.Clamp(config.amplification);
    for (std::size_t i = 0; i < settings.midiOutDelayMs.size(); ++i)
        settings.midiOutDelayMs[i] = static_cast<std::uint32_t>(kMidiDelayRange.Clamp(config.midiOutDelay[i]));
    settings.interpolation = At(kInterpolations, config.interpolation, Interpolation::Linear);
    settings.visibleChannels = At(kVisibleChannels, config.patternChannels, 0);
    settings.wideCells = settings.visibleChannels <= kMaxWideChannels;
    settings.midiInput = kMidiInputRange.Clamp(config.midiInput);
    settings.keyboard = Repeat(config.keyboardTicksPerSecond, config.keyboardRepeatDelay);
    settings.mouse = Repeat(config.mouseTicksPerSecond, config.mouseRepeatDelay);
    for (std::size_t i = 0; i < settings.wheel.size(); ++i) settings.wheel[i] = Wheel(config.mouse[i]);
    settings.colourDepth = At(kColourDepths, config.fullscreenBits, 32);
    settings.undoMemory = static_cast<std::size_t>(kUndoMemoryRange.Clamp(config.undoMemory)) << 20;
    settings.waitMs = std::clamp(config.waitTime, 0, kMaxWaitMs);
    return settings;
}

}  // namespace vonta
