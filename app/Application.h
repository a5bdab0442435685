// The application with its window: holds what there is one of, in the order in which it comes and goes, and runs the
// frames. What the interface asks of the program around it is answered here.
//
// One instance, made and used on the main thread.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "app/config/Config.h"
#include "app/config/Environment.h"
#include "app/PlayerHost.h"
#include "interface/InterfaceHost.h"
#include "interface/keys/Input.h"
#include "interface/skin/Skin.h"
#include "interface/TrackerInterface.h"
#include "interface/video/Video.h"
#include "interface/view/TrackerState.h"
#include "platform/OsWindow.h"

namespace vonta {

// Null, with the reason, if there is no display.
using WindowOpener = std::function<std::unique_ptr<OsWindow>(std::string& error)>;

struct TrackerOptions {
    WindowOpener openWindow = OpenDesktopWindow;
    std::string file;                                // loaded by its kind once all stands; empty: none
    bool curtain = true;                             // the opening picture, and its closing at the end
};

class GMain final : public PlayerHost, public InterfaceHost {
public:
    explicit GMain(TrackerOptions options);
    ~GMain() override;

    // Creates everything; with a video restart requested, the video side alone anew. 0, or 1 when it has told why not.
    int Init();
    // All events that have arrived, then a frame, until the user quits. The exit status.
    int Run();
    void Shutdown(bool graceful);                    // graceful: the curtain closes while the sound fades

    void OnIdle();                                   // one turn without events; a fault saves the song
    void Frame();
    void Update();
    void OnEvent(const WindowEvent& event);

    // What the interface asks for.
    void SaveConfig() override;
    void SaveEnvironment() override;
    void RequestVideoRestart() override { m_bRestartVideo = true; }
    const std::string& GetStartDir() const override { return m_szStartDir; }
    int MixDown(const std::string& base, const MixdownOptions& options, std::string& error,
                std::vector<std::string>& notes) override;
    bool HasSoundDevice() const override { return hasSoundDevice_; }

    TrackerInterface& GetInterface() { return *m_pInterface; }
    TrackerState& GetTracker() { return *m_pTracker; }

protected:
    void OnBackup(const std::string& message, bool audioFault) override;

private:
    int FirstInit();                                 // Startup.cpp, as the next eight
    int RestartVideo();
    int Fail(const std::string& message);
    bool OpenWindow();
    int OpenPacks();
    int OpenDefaultSkin();
    int OpenChosenSkin();
    int OpenSound();
    void ShowIcon();
    bool OfferBackup();
    void OnBackupWanted(ControlRecord& record);
    void OnBackupDeclined(ControlRecord& record);
    std::string PutBackupAside();                    // where it is now
    class ShownProgress;                             // LongWork.cpp, as the next three
    void BeginLongWork();
    bool ShowProgress(float fraction);               // false if the user wants to stop
    void OpenCurtain();
    void OnKeyDown(int scanCode);
    void OnClose();
    int LeaveAtOnce();
    void TakeEvents();
    void ShowTitle();
    void Sleep();
    void TurnOnce();
    void TellOfException(const char* reason);

    TrackerOptions options_;
    // In the order of their creation: what comes later uses what came before.
    std::unique_ptr<OsWindow> m_pWindow;
    Config m_config;
    Environment m_environment;
    ResourcePacks packs_;                            // m_pDataPack, m_pDefaultSkin, m_pSkin, m_nSkinVersion
    std::unique_ptr<Video> m_pVideo;
    std::unique_ptr<Input> m_pInput;
    std::unique_ptr<TrackerState> m_pTracker;
    std::unique_ptr<TrackerInterface> m_pInterface;

    bool m_bActive = true;                           // the window may be drawn; false while minimised
    bool m_bRestartVideo = false;                    // the next idle turn re-creates the video mode
    bool m_bCloseEditor = false;                     // the plug-in's window is to be closed
    bool hasSoundDevice_ = true;
    bool stopLongWork_ = false, inLongWork_ = false;
    std::uint32_t titleFrames_ = 0;
};

}  // namespace vonta
