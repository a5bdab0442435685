#include "engine/SndPlayer.h"

#include <algorithm>
#include <utility>

#include "platform/Debug.h"

namespace vonta {
namespace {

constexpr std::uint32_t kMinSampleRate = 1000;    // Hz: a tick is a sound number of frames

}  // namespace

SndPlayer::SndPlayer(DeviceFactory factory, MidiOpener openMidi)
    : mixer_(std::make_unique<Mixer>()), device_(*mixer_, factory, openMidi) {
    SetSong(nullptr);
}

SndPlayer::~SndPlayer() { Shutdown(); }

int SndPlayer::StartSound(void* windowHandle, int deviceKind, int deviceIndex, CrashHandler* crashHandler,
                          std::uint32_t sampleRate, std::unique_ptr<DrvSound> hostDevice) {
    sampleRate = std::max(sampleRate, kMinSampleRate);
    DebugOutput("SampleRate = %i\n", static_cast<int>(sampleRate));
    if (!DeviceLink::IsKind(deviceKind)) return 1;

    SetMixerOn(false);                            // a device that is opened anew
    device_.Close();
    crashHandler_ = crashHandler;
    mixer_->sampleRate = sampleRate;
    const bool opened =
        device_.Open(windowHandle, static_cast<DeviceKind>(deviceKind), deviceIndex, cycle_, std::move(hostDevice));
    sequencer_.UpdateTickLength();
    if (!opened) return 1;
    sequencer_.TempoChanged();
    midi_.Forget();
    device_.OpenMidi();
    SetSong(nullptr);
    return 0;
}

void SndPlayer::Shutdown() {
    notice_.Close();
    device_.Shutdown();
    PerformStop(0, 1);
    for (int slot = 0; slot < kEffectSlots; ++slot) mixer_->SetEffect(slot, nullptr);
    device_.Close();
}

std::unique_ptr<Song> SndPlayer::ExchangeSong(std::unique_ptr<Song> song) {
    if (!song) song = Song::MakeDefault();
    if (song_) {
        StopNotes();                              // voices and MIDI notes belong to the former song
        song_->fxSlotTable = nullptr;
        for (std::size_t slot = 0; slot < kEffectSlots; ++slot) {
            if (mixer_->effects[slot]) mixer_->effects[slot]->Uninit();
            song_->fxSlots[slot] = std::move(mixer_->effects[slot]);
        }
    }
    std::swap(song_, song);
    midi_.ForgetSynths();
    song_->fxSlotTable = &mixer_->effects;
    sequencer_.EnterSong();
    SetMasterVolume(Load(song_->masterVolume));
    for (std::size_t slot = 0; slot < kEffectSlots; ++slot)
        if (song_->fxSlots[slot]) mixer_->SetEffect(static_cast<int>(slot), std::move(song_->fxSlots[slot]));
    for (const auto& instrument : song_->instruments)
        if (instrument && instrument->synth) instrument->synth->Init(0, 0, 0, mixer_->sampleRate);
    return song;
}

void SndPlayer::KillChannel(int channel) {
    if (channel < 0 || channel >= kTracks) return;
    if (IsMixerOn()) requests_.KillChannel(channel);
    else notes_.Kill(channel, Milliseconds());
}

// The command stops what was asked for before it; the plug-ins are reset while nothing calls them, and hold no notes.
void SndPlayer::Panic() {
    Stop(0, 1);
    const MixerPause pause(*this);
    StopNotes();
    for (const auto& synth : song_->synths) {
        if (!synth) continue;
        synth->SetActive(0);
        synth->SetActive(1);
    }
    for (std::size_t slot = 0; slot < kSendSlots; ++slot)
        if (mixer_->effects[slot]) mixer_->effects[slot]->Suspend();
}

bool SndPlayer::RestoreDevice() {
    const MixerPause pause(*this);
    const std::uint32_t formerRate = mixer_->sampleRate;
    if (!device_.Restore()) return false;
    if (mixer_->sampleRate != formerRate) SetSampleRate(mixer_->sampleRate);
    return true;
}

void SndPlayer::SetSampleRate(std::uint32_t sampleRate) {
    mixer_->sampleRate = std::max(sampleRate, kMinSampleRate);
    sequencer_.UpdateTickLength();
    notes_.KeepPitch();
    for (const auto& effect : mixer_->effects) {
        if (!effect) continue;
        const std::uint8_t on = Load(effect->on);
        if (on) effect->SetActive(0);
        effect->SetActive(on);
    }
}

void SndPlayer::SetMasterVolume(float value) {
    Store(mixer_->masterAmp, value);
    song_->SetMasterVolume(value);
}

void SndPlayer::SetInterpolation(Interpolation mode) {
    Store(mixer_->interpolation, static_cast<std::uint32_t>(mode));
}

void SndPlayer::PerformPlay(std::uint8_t flags) {
    sync_.Forgive();
    sequencer_.PerformPlay(flags);
}

}  // namespace vonta
