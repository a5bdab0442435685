// The application with its window: holds what there is one of, in the order in which it comes and goes, and runs the
// frames. What the interface asks of the program around it is answered here.
//
// One instance, made and used on the main thread.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "app/backup/Backups.h"
#include "app/config/Config.h"
#include "app/config/Environment.h"
#include "app/PlayerHost.h"
#include "app/recovery/LeftWork.h"
#include "app/recovery/Recovery.h"
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
    // All that is to be saved is saved, and the program takes itself down; may be null.
    std::function<void(int status)> onTidyUp = {};
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
    void KeepFormer(const std::string& path) override;
    bool HasSoundDevice() const override { return hasSoundDevice_; }

    TrackerInterface& GetInterface() { return *m_pInterface; }
    TrackerState& GetTracker() { return *m_pTracker; }

protected:
    void OnBackup(const std::string& message, bool audioFault) override;
    bool HasSongToSave() const override;

private:
    int FirstInit();                                 // Startup.cpp, as the next nine
    int RestartVideo();
    int Fail(const std::string& message);
    bool OpenWindow();
    int OpenPacks();
    bool LoadSettings(std::string& unreadable);
    int OpenDefaultSkin();
    int OpenChosenSkin();
    int OpenSound();
    void ShowIcon();
    bool FindWaiting();                              // BackupOffer.cpp, as the next six
    void OfferNext();
    void OnOfferTaken(ControlRecord& record);
    void OnOfferDeclined(ControlRecord& record);
    void OfferNextWork();
    void OnWorkTaken(ControlRecord& record);
    void OnWorkDeclined(ControlRecord& record);
    void KeepWork();                                 // FrameLoop.cpp: what was edited, for any end
    class ShownProgress;                             // LongWork.cpp, as the next three
    void BeginLongWork();
    bool ShowProgress(float fraction);               // false if the user wants to stop
    void OpenCurtain();
    void OnKeyDown(int scanCode);
    void OnClose();
    int LeaveAtOnce();
    int LeaveAsWished();
    void FadeAway();
    void TakeEvents();
    void ShowTitle();
    void Sleep();
    void TurnOnce();
    void Survive(void (GMain::*work)());             // a fault of it saves the song, an exception ends it alone
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
    int status_ = 0;                                 // with which the program ends
    std::vector<WaitingBackup> waiting_;             // to be offered, the newest first, and after them
    std::vector<LeftWork> works_;                    // what other instances left unsaved
    std::unique_ptr<Recovery> recovery_;             // of this one
    std::string unkept_;                             // why not all of the start directory could be written; or empty
    std::string dataDirectory_;                      // of packs and skins: the start directory, or what ships
    bool stopLongWork_ = false, inLongWork_ = false;
    bool toldOfFormer_ = false;
    std::uint32_t titleFrames_ = 0;
};

}  // namespace vonta
