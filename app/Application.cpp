#include "app/Application.h"

#include <chrono>
#include <filesystem>
#include <thread>
#include <utility>

#include "app/config/ConfigFile.h"
#include "platform/Debug.h"

namespace vonta {
namespace {

constexpr auto kSilenceAfterFade = std::chrono::milliseconds(1500);

}  // namespace

GMain::GMain(TrackerOptions options) : options_(std::move(options)) {}

GMain::~GMain() { Shutdown(false); }

void GMain::Shutdown(bool graceful) {
    if (graceful && options_.curtain && m_pInterface) {
        m_pInterface->FadeOut([this] { TakeEvents(); });
        std::this_thread::sleep_for(kSilenceAfterFade);
    }
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

void GMain::SaveConfig() { m_config.Save(m_szStartDir + "/" + kConfigFile, m_szStartDir + "/" + kKeyTableFile); }

void GMain::SaveEnvironment() { vonta::SaveEnvironment(m_szStartDir + "/" + kEnvironmentFile, m_environment); }

// The picture of the interface may be what is broken: the message is a window of the desktop.
void GMain::OnBackup(const std::string& message, bool audioFault) {
    if (!audioFault && m_pInterface) m_pInterface->ReleaseSurfaces();
    if (m_pWindow) ShowMessage("", message);
}

}  // namespace vonta
