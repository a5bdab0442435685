#include <filesystem>
#include <vector>

#include "app/Application.h"
#include "app/CommandLine.h"
#include "app/Messages.h"
#include "app/ResourceInstall.h"
#include "app/config/ConfigFile.h"
#include "app/config/ConfigInstall.h"
#include "app/config/ConfigSettings.h"
#include "app/pack/ImageReader.h"
#include "interface/screens/DiskOpScreen.h"
#include "platform/Debug.h"

namespace vonta {
namespace {

namespace fs = std::filesystem;

constexpr const char* kNoPackMessage = "Can't open Vonta.dat file\n";
constexpr const char* kNoConfigMessage = "ERROR: can't open config file. Use Config Utility";
constexpr const char* kNoSkinMessage = "Can't open Default skin file\n";
constexpr const char* kOldSkinMessage = "Default skin file incompatible\n";
constexpr const char* kNoWindowMessage = "Window can't be created";
constexpr const char* kWindowCaption = "WINDOW ERROR";
constexpr const char* kNoVideoMessage = "Can't start the video mode";
constexpr const char* kIconName = "MI_IDI_ICON1";
constexpr const char* kIconEntry = "data\\icon.tga";
constexpr const char* kSilentText = " No sound: look at Config";
constexpr const char* kUnkeptText = "Settings, keys and envelopes are not kept";
constexpr const char* kModeRefused = "This video mode cannot be had. The former one is back.";
constexpr const char* kNotice = " Beta version: save often!";

std::string SkinPath(const std::string& startDirectory, const std::string& name) {
    return startDirectory + "/Skins/" + name;
}

std::unique_ptr<PackFile> OpenPack(const std::string& path) {
    auto pack = std::make_unique<PackFile>(path);
    return pack->IsOpen() ? std::move(pack) : nullptr;
}

std::string WhyUnreadable(const std::string& path) {
    DiskStream stream;
    return stream.Open(path, "rb") ? std::string() : path + ": " + stream.Error();
}

}  // namespace

// A step that failed: what was wrong is shown, and what stands is taken down.
int GMain::Fail(const std::string& message) {
    status_ = kFailed;
    Complain(Printable(message.substr(0, message.find('\n'))));
    if (m_pWindow) ShowMessage("", message);
    DebugOutput("ERROR: Can't Init program\n");
    Shutdown(false);
    return 1;
}

int GMain::Init() { return m_bRestartVideo ? RestartVideo() : FirstInit(); }

bool GMain::OpenWindow() {
    std::string error;
    m_pWindow = options_.openWindow(error);
    if (!m_pWindow) {
        Complain(error);
        return false;
    }
    if (!m_pWindow->Create(kProgramTitle, kIconName)) ShowMessage(kWindowCaption, kNoWindowMessage);
    return true;
}

int GMain::FirstInit() {
    DebugOutput("* Init program...\n");
    if (!OpenWindow()) return 1;
    CreatePlayer();
    m_pVideo = std::make_unique<Video>(m_pWindow->Screen());
    m_pInput = std::make_unique<Input>();
    m_pTracker = std::make_unique<TrackerState>(*m_pSndPlayer, m_config, m_environment);
    m_pInterface = std::make_unique<TrackerInterface>(*this, *m_pTracker, *m_pVideo, *m_pInput, packs_);

    bool fresh = false;
    if (!InstallResources(m_szStartDir, fresh, unkept_)) Complain(unkept_);
    dataDirectory_ = FindDataDirectory(m_szStartDir);
    if (const int status = OpenPacks(); status != 0) return status;
    ShowIcon();
    if (const int status = OpenSound(); status != 0) return status;

    DebugOutput("* Starting Enviroment...\n");
    if (m_pInterface->Start(true) != 0) return Fail(kNoVideoMessage);
    m_pWindow->ShowCursor(m_config.Has(kHardwareMouse));
    DebugOutput("* Enviroment started\n");
    if (options_.curtain) OpenCurtain();
    m_pSndPlayer->Stop(0, 1);
    InstallSong(m_pTracker->MakeFreshSong());
    m_pTracker->MarkSaved();
    recovery_ = std::make_unique<Recovery>(m_szStartDir);
    if (FindWaiting()) OfferNext();
    else if (!unkept_.empty()) m_pInterface->TellReport(kUnkeptText, {unkept_});
    else if (fresh || !hasSoundDevice_) m_pInterface->Tell(hasSoundDevice_ ? kNotice : kSilentText);
    if (!options_.file.empty()) m_pInterface->DiskOp().LoadDropped(options_.file);
    return 0;
}

// Desktops that find the program's entry have one from there; this is for the others.
void GMain::ShowIcon() {
    ImageRequest picture;
    picture.pack = packs_.m_pDataPack.get();
    picture.name = kIconEntry;
    if (LoadImage(picture) != kImageOk) return;
    std::vector<std::uint32_t> pixels(std::size_t{picture.width} * picture.height);
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        const std::uint8_t* bgr = &picture.pixels[3 * i];
        const std::uint32_t colour = bgr[2] * 0x10000u + bgr[1] * 0x100u + bgr[0];
        pixels[i] = colour == 0 ? 0 : 0xFF000000u | colour;      // black is transparent
    }
    m_pWindow->SetIcon(pixels.data(), static_cast<int>(picture.width), static_cast<int>(picture.height));
}

// To the other mode, and back if that one is refused.
int GMain::RestartVideo() {
    std::error_code failed;
    const fs::path before = fs::current_path(failed);    // which may have been removed meanwhile
    fs::current_path(m_szStartDir, failed);
    m_bRestartVideo = false;
    int status = 1;
    for (int tries = 0; status != 0 && tries < 2; ++tries) {
        m_config.flags ^= kFullscreen;
        if (tries > 0) m_pInterface->Tell(kModeRefused);
        m_pInterface->ReleaseSurfaces();
        status = m_pInterface->Start(false);
    }
    fs::current_path(before, failed);
    if (status != 0) Complain(kNoVideoMessage);
    return status;
}

int GMain::OpenPacks() {
    packs_.m_pDataPack = OpenPack(dataDirectory_ + "/Vonta.dat");
    if (!packs_.m_pDataPack) return Fail(kNoPackMessage);
    DebugOutput(kStartingPlayer);
    std::string unreadable;
    if (!LoadSettings(unreadable)) return Fail(std::string(kNoConfigMessage) + "\n" + unreadable);
    if (const int status = OpenDefaultSkin(); status != 0) return status;
    return OpenChosenSkin();
}

// Where nothing can be written, defaults take the place of files that are missing.
bool GMain::LoadSettings(std::string& unreadable) {
    const std::string config = m_szStartDir + "/" + kConfigFile, keys = m_szStartDir + "/" + kKeyTableFile;
    if (!unkept_.empty()) m_config = FreshConfig();
    if (m_config.Load(config, keys) == 0) return true;
    std::error_code failed;
    for (const std::string& path : {config, keys})
        if (unreadable.empty() && (unkept_.empty() || fs::exists(path, failed))) unreadable = WhyUnreadable(path);
    return unreadable.empty();
}

int GMain::OpenDefaultSkin() {
    const std::string path = SkinPath(dataDirectory_, kDefaultSkinName);
    packs_.m_pDefaultSkin = OpenPack(path);
    if (!packs_.m_pDefaultSkin) return Fail(kNoSkinMessage);
    return GetSkinVersion(path) == kSkinVersion081 ? 0 : Fail(kOldSkinMessage);
}

int GMain::OpenChosenSkin() {
    std::string path = SkinPath(m_szStartDir, m_config.skin);
    packs_.m_pSkin = m_config.skin.empty() ? nullptr : OpenPack(path);
    if (!packs_.m_pSkin) {
        m_config.skin = kDefaultSkinName;
        path = SkinPath(dataDirectory_, m_config.skin);
        packs_.m_pSkin = OpenPack(path);
    }
    if (!packs_.m_pSkin) return Fail(kNoSkinMessage);
    packs_.m_nSkinVersion = GetSkinVersion(path);
    return 0;
}

// A machine without the configured device can still write songs: it gets the one without sound, and is told so.
int GMain::OpenSound() {
    const auto settings = SettingsOf(m_config);
    const SoundChoice wanted{settings.deviceKind, settings.deviceIndex, settings.sampleRate};
    std::string error;
    hasSoundDevice_ = StartSound(m_pWindow->GetHandle(), wanted, error) == 0;
    if (hasSoundDevice_) return 0;
    Complain(error);
    const SoundChoice silent{DeviceKind::NoSound, 0, settings.sampleRate};
    return StartSound(m_pWindow->GetHandle(), silent, error) == 0 ? 0 : Fail(error);
}

}  // namespace vonta
