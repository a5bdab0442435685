#include "app/Application.h"

#include <chrono>
#include <filesystem>
#include <thread>
#include <utility>

#include "app/config/ConfigFile.h"
#include "app/Interrupt.h"
#include "app/recovery/FormerFiles.h"
#include "platform/Clock.h"
#include "platform/Debug.h"

namespace vonta {
namespace {

constexpr std::uint32_t kSilenceAfterFade = 1500;     // milliseconds
constexpr auto kInterruptPeriod = std::chrono::milliseconds(20);
constexpr const char* kFormerNotKept = "The former file was not kept: ";
constexpr const char* kNotSaved = "Your settings could not be saved";

}  // namespace

GMain::GMain(TrackerOptions options) : options_(std::move(options)) {}

GMain::~GMain() { Shutdown(false); }

// The curtain closes, and what still sounds is heard; a signal cuts it short.
void GMain::FadeAway() {
    m_pInterface->FadeOut([this] { TakeEvents(); });
    const std::uint32_t start = Milliseconds();
    while (Milliseconds() - start < kSilenceAfterFade && !Interrupted()) std::this_thread::sleep_for(kInterruptPeriod);
}

void GMain::Shutdown(bool graceful) {
    if (graceful && options_.curtain && m_pInterface) FadeAway();
    if (m_pWindow && options_.onTidyUp) options_.onTidyUp(status_);
    packs_ = {};
    if (m_pInterface) m_pInterface->ReleaseSurfaces();
    m_pInput.reset();
    m_pVideo.reset();
    if (m_pSndPlayer) m_pSndPlayer->SetMixerOn(false);
    m_pInterface.reset();
    m_pTracker.reset();
    ShutdownPlayer();
    if (m_pWindow) DebugOutput("* (WM_DESTROY) Program Exit\n");
    m_pWindow.reset();
}

void GMain::SaveConfig() {
    if (m_config.Save(m_szStartDir + "/" + kConfigFile, m_szStartDir + "/" + kKeyTableFile) != 0)
        m_pInterface->TellReport(kNotSaved, {m_szStartDir});
}

void GMain::SaveEnvironment() {
    if (!vonta::SaveEnvironment(m_szStartDir + "/" + kEnvironmentFile, m_environment))
        m_pInterface->TellReport(kNotSaved, {m_szStartDir});
}

// The picture of the interface may be what is broken: the message is a window of the desktop.
void GMain::OnBackup(const std::string& message, bool audioFault) {
    if (!audioFault && m_pInterface) m_pInterface->ReleaseSurfaces();
    if (m_pWindow) ShowMessage("", message);
}

// The save goes on without: it replaces the file only when it is whole.
void GMain::KeepFormer(const std::string& path) {
    std::string error;
    if (m_config.formerFiles == 0 || KeepFormerFile(m_szStartDir, path, error)) return;
    if (!std::exchange(toldOfFormer_, true)) m_pInterface->Tell(kFormerNotKept + error);
}

bool GMain::HasSongToSave() const { return m_pTracker && m_pTracker->IsChanged(); }

}  // namespace vonta
