#include "app/PlayerHost.h"

#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>

#include "app/CommandLine.h"
#include "app/Messages.h"
#include "app/config/StartDirectory.h"
#include "audio/CreateDevice.h"
#include "audio/DrvASIO.h"
#include "formats/Loaders.h"
#include "midi/OpenMidi.h"
#include "platform/Debug.h"

namespace vonta {
namespace {

constexpr const char* kNoSoundMessage = "Can't init sound. Try with another configuration.";
constexpr const char* kSampleTypeMessage = "Current ASIO output data type(%i) not supported.";
constexpr const char* kBackupMessage = "Internal error, backup.vtm saved";
constexpr const char* kNoBackupMessage = "Internal error, backup.vtm could not be saved";
constexpr const char* kDeviceGone = "The sound device is gone. The song goes on in silence.";
constexpr const char* kDeviceBack = "The sound device is back.";
constexpr const char* kEndMessage = "The song is kept as ";
constexpr int kCrashStatus = 1;

}  // namespace

void PlayerHost::CreatePlayer() {
    m_pSndPlayer = std::make_unique<SndPlayer>(CreateDevice, OpenSystemMidi);
    m_deviceWatch.emplace(*m_pSndPlayer);
    m_szStartDir = FindStartDirectory();
}

int PlayerHost::StartPlayer(const std::optional<SoundChoice>& sound) {
    DebugOutput("* Init program...\n");
    CreatePlayer();
    std::string error;
    if (!sound) return 0;
    DebugOutput(kStartingPlayer);
    if (StartSound(nullptr, *sound, error) == 0) return 0;
    Complain(error);
    return 1;
}

int PlayerHost::StartSound(void* windowHandle, const SoundChoice& sound, std::string& error) {
    const int kind = static_cast<int>(sound.kind);
    if (m_pSndPlayer->StartSound(windowHandle, kind, sound.deviceIndex, this, sound.sampleRate) != 0) {
        DebugOutput("*ERROR starting m_pSndPlayer->\n");
        error = kNoSoundMessage;
        return 1;
    }
    DebugOutput("* SndPlayer started\n");
    if (const auto* asio = dynamic_cast<const DrvASIO*>(m_pSndPlayer->GetDevice()); asio && !asio->IsSupported()) {
        std::array<char, 80> text;
        std::snprintf(text.data(), text.size(), kSampleTypeMessage, asio->GetSampleType());
        error = text.data();
        return 1;
    }
    DebugOutput("\tSound devices:\n");
    DrvSound& device = *m_pSndPlayer->GetDevice();
    for (int i = 0; i < device.GetNumDevices(); ++i) DebugOutput("\t- %s\n", device.GetDeviceName(i).c_str());
    DebugOutput("* Starting Mixer Engine...\n");
    m_pSndPlayer->SetMixerOn(true);
    return 0;
}

void PlayerHost::ShutdownPlayer() {
    // A backup that runs on another thread still reads the song, and ends the process when it is done.
    while (m_nCrashGuard != 0 && claimedBy_ != gettid()) pause();
    m_deviceWatch.reset();
    m_pSndPlayer.reset();
}

const char* PlayerHost::LookAfterDevice() {
    switch (m_deviceWatch ? m_deviceWatch->Look() : DeviceWatch::Event::None) {
        case DeviceWatch::Event::Gone: return kDeviceGone;
        case DeviceWatch::Event::Back: return kDeviceBack;
        default: return nullptr;
    }
}

void PlayerHost::InstallSong(std::unique_ptr<Song> song) {
    const MixerPause pause(*m_pSndPlayer);
    m_pSndPlayer->SetSong(std::move(song));
}

bool PlayerHost::ClaimEnd() {
    if (m_nCrashGuard.fetch_add(1) != 0) return false;
    claimedBy_ = gettid();
    return true;
}

BackupResult PlayerHost::SaveBackup() {
    // The song may be what is broken: a fault while it is saved is a failure as any other.
    struct Job {
        PlayerHost& app;
        BackupResult result;
    } job{*this, {}};
    const auto save = [](void* argument) {
        Job& mine = *static_cast<Job*>(argument);
        if (!mine.app.m_pSndPlayer) return;
        Song& song = mine.app.m_pSndPlayer->GetSong();
        mine.result = WriteBackup(song, BackupPlaces(mine.app.m_szStartDir, song.fileName));
    };
    if (!RunGuarded(save, &job)) job.result.file.clear();
    return job.result;
}

void PlayerHost::CrashBackup(bool audioFault) {
    if (!ClaimEnd()) return;
    const BackupResult saved = SaveBackup();
    const std::string message = saved.file.empty() ? kNoBackupMessage : kBackupMessage;
    const std::string where = saved.file.empty() ? saved.error : saved.file;
    if (where.empty()) Complain(message);
    else Complain(message, where);
    SetEnd(kCrashStatus);
    if (!audioFault && m_pSndPlayer) m_pSndPlayer->SetMixerOn(false);
    OnBackup(where.empty() ? message : message + "\n" + where, audioFault);
    // Nothing that the fault may have broken is run again, and the audio side cannot wait for itself: the process goes
    // as it stands.
    std::fflush(nullptr);
    std::_Exit(kCrashStatus);
}

void PlayerHost::SaveAtEnd() {
    const BackupResult saved = HasSongToSave() ? SaveBackup() : BackupResult{};
    if (!saved.file.empty()) Complain(kEndMessage + saved.file);
    else if (!saved.error.empty()) Complain(saved.error);
    SetEnd(kInterrupted);
}

std::optional<int> PlayerHost::Rescue() {
    if (ClaimEnd()) SaveAtEnd();
    return endStatus_ == kNotYet ? std::nullopt : std::optional<int>(endStatus_);
}

}  // namespace vonta
