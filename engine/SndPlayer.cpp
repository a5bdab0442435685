#include "engine/SndPlayer.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "platform/Clock.h"
#include "platform/Debug.h"

namespace vonta {
namespace {

struct DeviceRow {
    const char *starting, *failed, *started;
    std::uint8_t outputClass;
    int plane;
};

// By DeviceKind.
constexpr DeviceRow kDevices[] = {
    {"\t- starting dsound 1st plane...\n", "\t- dsound 1st plane failed\n", "\t- dsound 1st plano started\n", 0, 0},
    {"\t- starting dsound 2nd plane...\n", "\t- dsound 2nd plane failed\n", "\t- dsound 2nd plane started\n", 1, 1},
    {"\t- starting nosound...\n", "\t- nosound failed\n", "\t- nosound started\n", 3, 0},
    {"\t- starting waveout...\n", "\t- waveout failed\n", "\t- waveout started\n", 2, 0},
    {"\t- starting diskwritter...\n", "\t- diskwritter failed\n", "\t- diskwritter started\n", 3, 0},
    {"\t- starting ASIO...\n", "\t- ASIO failed\n", "\t- ASIO started\n", 2, 0},
};
constexpr int kLastDevice = static_cast<int>(DeviceKind::Asio);

// A host or a script may ask for any number: inside these a tick is a sound number of frames.
constexpr float kMinPlayedBpm = 1.0f, kMaxPlayedBpm = 100000.0f;
constexpr std::uint32_t kMinSampleRate = 1000;    // Hz
constexpr int kMaxLatencyMs = 10000;

// A host's input, which stays the device's.
class BorrowedMidiIn final : public DrvMIDIIN {
public:
    explicit BorrowedMidiIn(DrvMIDIIN& input) : input_(input) {}
    int Open(int device) override { return input_.Open(device); }
    std::string GetName() const override { return input_.GetName(); }
    int Read(std::uint32_t* message) override { return input_.Read(message); }
    std::uint32_t GetLastTime() const override { return input_.GetLastTime(); }

private:
    DrvMIDIIN& input_;
};

}  // namespace

SndPlayer::SndPlayer(DeviceFactory factory, MidiOpener openMidi)
    : factory_(factory), openMidi_(openMidi), mixer_(std::make_unique<Mixer>()) {
    SetSong(nullptr);
}

SndPlayer::~SndPlayer() { Shutdown(); }

int SndPlayer::StartSound(void* windowHandle, int deviceKind, int deviceIndex, CrashHandler* crashHandler,
                          std::uint32_t sampleRate, std::unique_ptr<DrvSound> hostDevice) {
    sampleRate = std::max(sampleRate, kMinSampleRate);
    DebugOutput("SampleRate = %i\n", static_cast<int>(sampleRate));
    if (deviceKind < 0 || deviceKind > kLastDevice) return 1;

    SetMixerOn(false);                            // a device that is opened anew
    CloseDevice();
    crashHandler_ = crashHandler;
    mixer_->sampleRate = sampleRate;
    const auto kind = static_cast<DeviceKind>(deviceKind);
    mixer_->device = hostDevice ? std::move(hostDevice) : factory_ ? factory_(kind) : nullptr;
    if (!OpenDevice(windowHandle, kind, deviceIndex)) {
        CloseDevice();
        UpdateTickLength();
        return 1;
    }
    UpdateTickLength();
    TempoChanged();
    ForgetMidiSent(0);
    DebugOutput("\t- Starting MIDI OUT\n");
    if (openMidi_) openMidi_(mixer_->midiOut, mixer_->midiIn);
    if (DrvMIDIIN* hostInput = mixer_->device->GetSyncMidiIn()) {
        mixer_->midiIn[0] = std::make_unique<BorrowedMidiIn>(*hostInput);
        hostInput_ = true;
    }
    SetSong(nullptr);
    return 0;
}

bool SndPlayer::OpenDevice(void* windowHandle, DeviceKind kind, int deviceIndex) {
    const DeviceRow& row = kDevices[static_cast<int>(kind)];
    outputClass_ = row.outputClass;
    mixer_->timerFlag = kind != DeviceKind::Asio;
    DebugOutput("%s", row.starting);
    const bool opened =
        mixer_->device && mixer_->device->Init(windowHandle, row.plane, deviceIndex, *mixer_, &cycle_);
    DebugOutput("%s", opened ? row.started : row.failed);
    return opened;
}

void SndPlayer::Shutdown() {
    notice_.Close();
    if (mixer_->device) {
        SetMixerOn(false);
        mixer_->device->Shutdown();
    }
    PerformStop(0, 1);
    for (int slot = 0; slot < kEffectSlots; ++slot) mixer_->SetEffect(slot, nullptr);
    CloseDevice();
}

void SndPlayer::CloseDevice() {
    if (hostInput_) mixer_->midiIn[0].reset();
    hostInput_ = false;
    mixer_->device.reset();
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
    ForgetSynthsSent();
    song_->fxSlotTable = &mixer_->effects;
    bpm_ = BoundedBpm(static_cast<float>(song_->GetBPM()));
    UpdateTickLength();
    TempoChanged();
    row_ = 0;
    EnterPosition(0);
    rowStep_ = 0;
    patternDelay_ = 0;
    loopJump_ = orderJump_ = patternBreak_ = 0;
    SetMasterVolume(Load(song_->masterVolume));
    for (std::size_t slot = 0; slot < kEffectSlots; ++slot)
        if (song_->fxSlots[slot]) mixer_->SetEffect(static_cast<int>(slot), std::move(song_->fxSlots[slot]));
    for (const auto& instrument : song_->instruments)
        if (instrument && instrument->synth) instrument->synth->Init(0, 0, 0, mixer_->sampleRate);
    return song;
}

void SndPlayer::Play(std::uint8_t flags) {
    PlayerCommand command;
    command.type = PlayerCommand::Type::Play;
    command.playFlags = flags;
    commands_.Post(command);
}

void SndPlayer::Stop(std::uint8_t keepPlaying, std::uint32_t immediate) {
    PlayerCommand command;
    command.type = PlayerCommand::Type::Stop;
    command.stopKeepPlaying = keepPlaying;
    command.stopImmediate = immediate;
    commands_.Post(command);
}

void SndPlayer::KillChannel(int channel) {
    if (channel < 0 || channel >= kTracks) return;
    if (!IsMixerOn()) {
        GetChannel(channel).Kill();
        return;
    }
    PlayerCommand command;
    command.type = PlayerCommand::Type::KillChannel;
    command.channel = static_cast<std::uint32_t>(channel);
    commands_.Post(command);
}

void SndPlayer::Panic() {
    Stop(0, 1);
    for (const auto& synth : song_->synths) {
        if (!synth) continue;
        synth->SetActive(0);
        synth->SetActive(1);
    }
    for (std::size_t slot = 0; slot < kSendSlots; ++slot)
        if (mixer_->effects[slot]) mixer_->effects[slot]->Suspend();
}

bool SndPlayer::IsMixerOn() const {
    MultimediaTimer* timer = mixer_->device ? mixer_->device->GetTimer() : nullptr;
    return timer && timer->IsRunning();
}

void SndPlayer::SetMixerOn(bool on) {
    DrvSound* device = mixer_->device.get();
    if (!device) return;
    MultimediaTimer* timer = device->GetTimer();
    if (!on) {
        if (timer) timer->Stop();
        WriteSilence();
        mixer_->restartBlock = 1;
        gate_.AwaitOutside();
    } else if (timer && !timer->IsRunning()) {
        mixer_->restartBlock = 1;
        device->GetPosition(&mixer_->playPosition);
        mixer_->writePosition = mixer_->playPosition;
        DebugOutput("* Creating timer\n");
        timer->Start(kTimerPeriodMs);
    }
}

bool SndPlayer::RestoreDevice() {
    const MixerPause pause(*this);
    const std::uint32_t formerRate = mixer_->sampleRate;
    if (!mixer_->device || !mixer_->device->Restore()) return false;
    if (mixer_->sampleRate != formerRate) SetSampleRate(mixer_->sampleRate);
    return true;
}

// The whole ring, so that nothing of what was playing comes round again.
void SndPlayer::WriteSilence() {
    const std::uint32_t ring = mixer_->device->GetBufferSize();
    std::vector<float> zeros(ring / 2);
    std::array<float*, kOutputPairs> outputs;
    outputs.fill(zeros.data());
    mixer_->device->WriteBlock(outputs.data(), static_cast<int>(ring / kDeviceFrameBytes), mixer_->writePosition);
}

// 125 BPM give 50 ticks a second and an envelope step of 1.
void SndPlayer::UpdateTickLength() {
    const double beats = static_cast<double>(bpm_);
    const double ticksPerSecond = (beats + beats) * 0.2;
    Store(mixer_->samplesPerTick, static_cast<float>(mixer_->sampleRate / ticksPerSecond));
    tickStep_ = static_cast<float>(50.0 / ticksPerSecond);
}

void SndPlayer::TempoChanged() {
    for (const auto& effect : mixer_->effects)
        if (effect) effect->TempoChanged();
}

void SndPlayer::TellSongEnd() {
    if (SongEndListener* listener = songEndListener_) listener->OnSongEnd();
}

float SndPlayer::BoundedBpm(float bpm) { return bpm >= kMinPlayedBpm ? std::min(bpm, kMaxPlayedBpm) : kMinPlayedBpm; }

void SndPlayer::SetBPM(float bpm) {
    bpm_ = BoundedBpm(bpm);
    song_->SetBPM(static_cast<std::uint32_t>(bpm_));
    UpdateTickLength();
    TempoChanged();
}

void SndPlayer::SetTempo(std::uint32_t tempo) {
    song_->SetTempo(tempo);
    UpdateTickLength();
    TempoChanged();
}

void SndPlayer::SetSampleRate(std::uint32_t sampleRate) {
    mixer_->sampleRate = std::max(sampleRate, kMinSampleRate);
    UpdateTickLength();
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

// The device speaks bytes; the 20 bytes keep a latency of 0 ms from asking for nothing at all.
void SndPlayer::SetLatencyMs(int ms) {
    if (!mixer_->device) return;
    const double bounded = std::clamp(ms, 0, kMaxLatencyMs);
    mixer_->device->SetLatency(static_cast<std::uint32_t>(mixer_->sampleRate * bounded * 4.0 * 0.001 + 20.0));
}

int SndPlayer::GetLatencyMs() {
    if (!mixer_->device) return 0;
    return static_cast<int>(mixer_->device->GetLatency() * 1000.0 / (mixer_->sampleRate * 4.0));
}

void SndPlayer::SetStopAtEnd(bool on) {
    stopAtEnd_ = on;
    if (!on) ended_ = 0;
}

int SndPlayer::QueueNote(int note, int instrument, int volume) {
    static std::atomic<std::uint32_t> rotation{0};
    return QueueNoteOn(note, instrument, static_cast<int>(rotation++ % kTracks), volume);
}

int SndPlayer::QueueNoteOn(int note, int instrument, int channel, int volume) {
    const JamNote entry{static_cast<std::uint32_t>(instrument), static_cast<std::uint32_t>(note),
                        static_cast<std::uint32_t>(channel),
                        static_cast<std::uint8_t>(std::clamp(volume, 0, 255))};
    return jam_.Put(entry) ? channel : 0;
}

void SndPlayer::QueueKeyOff(int channel) { QueueNoteOn(kNoteOff, 0, channel, 0); }

void SndPlayer::SetChannelMuted(int channel, bool on) {
    if (channel >= 0 && channel < kTracks) channelMuted_[static_cast<std::size_t>(channel)] = on;
}

bool SndPlayer::IsChannelMuted(int channel) const {
    return channel >= 0 && channel < kTracks && channelMuted_[static_cast<std::size_t>(channel)];
}

void SndPlayer::MuteInstrument(int instrument, bool on) {
    if (instrument < 0 || instrument >= kMaxInstruments) return;
    muteRequests_[static_cast<std::size_t>(instrument)] = on ? kMute : kUnmute;
    muteRequested_ = true;
}

void SndPlayer::UnmuteInstruments() {
    for (auto& request : muteRequests_) request = kKeep;
    unmuteAll_ = true;
    muteRequested_ = true;
}

void SndPlayer::ApplyMuteRequests() {
    if (!muteRequested_.exchange(false)) return;
    const bool all = unmuteAll_.exchange(false);
    std::array<std::uint8_t, kMaxInstruments> wanted;
    for (std::size_t i = 0; i < wanted.size(); ++i) wanted[i] = muteRequests_[i].exchange(kKeep);
    for (auto* table : {&mixer_->channels, &mixer_->reserve})
        for (const auto& channel : *table) {
            if (all) channel->instrumentMuted = 0;
            if (channel->instrument >= kMaxInstruments) continue;
            const std::uint8_t request = wanted[channel->instrument];
            if (request != kKeep) channel->instrumentMuted = request == kMute;
        }
}

}  // namespace vonta
