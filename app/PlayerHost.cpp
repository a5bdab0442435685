#include "app/PlayerHost.h"

#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

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
constexpr int kCrashStatus = 1;

// To the directory, which is made if need be.
bool ChangeTo(const std::string& directory) {
    std::error_code failed;
    std::filesystem::create_directories(directory, failed);
    std::filesystem::current_path(directory, failed);
    return !failed;
}

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
    // A backup that runs on the audio side still reads the song, and ends the process when it is done.
    while (m_nCrashGuard != 0) pause();
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

bool PlayerHost::SaveBackup(std::string& error) {
    if (!m_pSndPlayer) {
        error = "there is no song";
        return false;
    }
    if (!ChangeTo(m_szStartDir)) {
        error = m_szStartDir + " cannot be entered";
        return false;
    }
    DiskStream stream;
    if (stream.Open(kBackupName, "wb") && SaveFile(&stream, SaveMode::Module, m_pSndPlayer->GetSong(), {}) == 0)
        return true;
    error = stream.Error();
    return false;
}

void PlayerHost::CrashBackup(bool audioFault) {
    if (m_nCrashGuard.fetch_add(1) != 0) return;
    // The song may be what is broken: a fault while it is saved ends in the same message as any other failure.
    struct Job {
        PlayerHost& app;
        std::string error;
        bool saved = false;
    } job{*this, {}};
    const auto save = [](void* argument) {
        Job& mine = *static_cast<Job*>(argument);
        mine.saved = mine.app.SaveBackup(mine.error);
    };
    const bool saved = RunGuarded(save, &job) && job.saved;
    const std::string& error = job.error;
    if (!audioFault && m_pSndPlayer) m_pSndPlayer->SetMixerOn(false);
    if (saved) Complain(m_szStartDir, kBackupMessage);
    else if (error.empty()) Complain(kNoBackupMessage);
    else Complain(kNoBackupMessage, error);
    OnBackup(saved ? kBackupMessage : kNoBackupMessage, audioFault);
    // Nothing that the fault may have broken is run again, and the audio side cannot wait for itself: the process goes
    // as it stands.
    std::fflush(nullptr);
    std::_Exit(kCrashStatus);
}

}  // namespace vonta
