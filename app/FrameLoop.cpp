#include <chrono>
#include <exception>
#include <filesystem>
#include <new>
#include <thread>
#include <utility>

#include "app/Application.h"
#include "app/CommandLine.h"
#include "app/Interrupt.h"
#include "app/Messages.h"
#include "app/config/ConfigSettings.h"
#include "interface/screens/DiskOpScreen.h"
#include "platform/Clock.h"
#include "platform/Debug.h"

namespace vonta {
namespace {

constexpr int kScanEscape = 41, kScanF4 = 61;         // USB HID usages
constexpr const char* kUnnamedSong = "new song";
constexpr int kWaitMs = 200;                         // of a minimised window, between two looks at signals

}  // namespace

// A fault anywhere in a turn saves the song.
int GMain::Run() {
    while (!m_pTracker->m_bQuit && !Interrupted()) {
        Survive(&GMain::TakeEvents);
        OnIdle();
    }
    status_ = m_pTracker->m_bQuit ? LeaveAsWished() : LeaveAtOnce();
    return status_;
}

// What the user leaves behind is meant to be left.
int GMain::LeaveAsWished() {
    if (ClaimEnd()) SetEnd(kDone);
    if (recovery_) recovery_->Discard();
    return kDone;
}

// Told to end by the system, which may be going down, or the display is gone: nobody is asked, and the song is kept.
int GMain::LeaveAtOnce() {
    if (ClaimEnd()) SaveAtEnd();
    return kInterrupted;
}

void GMain::OnIdle() { Survive(&GMain::TurnOnce); }

// A file that asks for more memory than there is ends the work on it, never the program with the song.
void GMain::Survive(void (GMain::*work)()) {
    Guarded([&] {
        try {
            (this->*work)();
        } catch (const std::bad_alloc&) {
            TellOfException("out of memory");
        } catch (const std::exception& error) {
            TellOfException(error.what());
        }
        return 0;
    });
}

void GMain::TurnOnce() {
    WindowEvent event;
    if (m_bRestartVideo) {
        Init();
    } else if (m_bActive) {
        Frame();
    } else if (m_pWindow->WaitEvent(event, kWaitMs)) {
        OnEvent(event);
    }
}

void GMain::TellOfException(const char* reason) {
    m_bRestartVideo = inLongWork_ = m_pTracker->m_bSaveRequested = m_pTracker->m_bLoadRequested = false;
    Complain(reason);
    m_pInterface->Tell(reason);
}

void GMain::Frame() {
    if (m_pVideo->IsLost()) {
        m_pInterface->ReleaseSurfaces();
        m_pInterface->Start(false);
    }
    if (const char* notice = LookAfterDevice(); notice && !m_pTracker->m_bDialogOpen) m_pInterface->Tell(notice);
    Update();
    if (!m_pTracker->m_bEditorOpen || !m_config.Has(kFullscreen)) m_pVideo->Present();
    // Between two frames, so that the line which tells of it stays on the screen meanwhile.
    m_pInterface->DiskOp().WorkNow();
    KeepWork();
    ShowTitle();
}

void GMain::KeepWork() {
    if (!recovery_) return;
    recovery_->Look(m_pTracker->Edits(), Milliseconds());
    if (const std::string message = recovery_->TakeMessage(); !message.empty()) m_pInterface->Tell(message);
}

// Of the song and whether it is saved, where the desktop tells windows apart.
void GMain::ShowTitle() {
    constexpr std::uint32_t kFrames = 8;             // from look to look
    if (++titleFrames_ % kFrames != 0) return;
    const bool changed = m_pTracker->IsChanged();
    const std::string file = std::filesystem::path(m_pTracker->CurrentSong().fileName).filename().string();
    const std::string name = file.empty() ? kUnnamedSong : Printable(file);
    const std::string title = file.empty() && !changed ? kProgramTitle : (changed ? "*" : "") + name + " - " + kProgramTitle;
    if (title != m_pWindow->GetTitle()) m_pWindow->SetTitle(title);
}

void GMain::Update() {
    m_pInterface->PollInput();
    if (m_pTracker->m_bEditorOpen) {
        if (std::exchange(m_bCloseEditor, false)) m_pTracker->m_bEditorOpen = false;
        return;
    }
    m_pInterface->PollMouse();
    m_pWindow->TakeText(m_pInterface->IsEditingText());   // else an input method would swallow notes
    m_pInterface->Paint();
    Sleep();
}

void GMain::Sleep() {
    const int milliseconds = SettingsOf(m_config).waitMs;
    if (milliseconds > 0) std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

void GMain::OnEvent(const WindowEvent& event) {
    switch (event.kind) {
    case WindowEventKind::LeftDown:
    case WindowEventKind::RightDown:
        m_pInterface->EndTextEdit();
        [[fallthrough]];
    case WindowEventKind::LeftUp:
    case WindowEventKind::RightUp:
    case WindowEventKind::MouseMove:
        m_pInput->OnMouse(event.x, event.y, event.left, event.right);
        break;
    case WindowEventKind::Wheel: m_pInput->OnWheel(event.amount); break;
    case WindowEventKind::KeyDown: OnKeyDown(event.scanCode); break;
    case WindowEventKind::KeyUp: m_pInput->OnKey(event.scanCode, false); break;
    case WindowEventKind::Character: m_pInterface->OnCharacter(event.text); break;
    case WindowEventKind::Minimised: m_bActive = false; break;
    case WindowEventKind::Resized:
    case WindowEventKind::Restored:
        m_bActive = true;
        [[fallthrough]];
    case WindowEventKind::Exposed: m_pVideo->Repair(); break;
    case WindowEventKind::FocusGained:
    case WindowEventKind::FocusLost: m_pInterface->ForgetKeys(); break;
    case WindowEventKind::Close: OnClose(); break;
    case WindowEventKind::FileDropped: m_pInterface->DiskOp().LoadDropped(event.text); break;
    }
}

// Escape never becomes an action: it leaves the plug-in's window, a text, or the program.
void GMain::OnKeyDown(int scanCode) {
    if (scanCode != kScanEscape) m_pInput->OnKey(scanCode, true);
    else if (inLongWork_) stopLongWork_ = true;
    else if (m_pTracker->m_bEditorOpen) m_bCloseEditor = true;
    else m_pInterface->OnEscape();
}

// Many desktops make a close request of Alt and F4, which here copies the block.
void GMain::OnClose() {
    if (!m_pInterface->AltHeld()) {
        stopLongWork_ = true;                        // or nobody could answer
        return m_pInterface->AskToQuit();
    }
    m_pInput->OnKey(kScanF4, true);
    m_pInput->OnKey(kScanF4, false);
}

// What has arrived while something else than the frame loop runs.
void GMain::TakeEvents() {
    WindowEvent event;
    while (m_pWindow->PollEvent(event)) OnEvent(event);
}

}  // namespace vonta
