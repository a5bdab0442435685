// The tracker's face: 24 screens, the keys' dispatch, the modal question, text editing and the painting of a frame.
//
// Every frame all visible screens are painted anew and declare their controls while they paint; nothing is retained.
// Interface thread only.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "app/config/KeyTable.h"
#include "interface/InterfaceHost.h"
#include "interface/keys/Input.h"
#include "interface/screens/Screen.h"
#include "interface/skin/Skin.h"
#include "interface/video/Font.h"
#include "interface/video/Video.h"
#include "interface/view/TrackerState.h"
#include "interface/widgets/MouseRegions.h"

namespace vonta {

class DiskOpScreen;
class QuestionScreen;

// What the question offers: Yes and No, five choices, the options of a save, what to do with a changed song, or lines to
// be read.
enum class DialogMode : int { YesNo = 1, Zap = 2, Save = 3, Changed = 4, Report = 5 };
constexpr int kZapChoices = 5;

// An answer that is a button of the question and a key.
struct QuestionAnswer {
    const char* caption;
    int key;
};

class TrackerInterface {
public:
    static constexpr int kMaxTextLength = 24;    // characters of an edited text
    static constexpr int kPianoKeys = 38;        // of both rows
    static constexpr std::uint16_t kNoVoice = 256;   // m_noteVoice: no note is held

    TrackerInterface(InterfaceHost& host, TrackerState& state, Video& video, Input& input, ResourcePacks& packs);
    ~TrackerInterface();
    TrackerInterface(const TrackerInterface&) = delete;
    TrackerInterface& operator=(const TrackerInterface&) = delete;

    InterfaceHost& Host() { return host_; }
    TrackerState& State() { return state_; }
    Video& Surfaces() { return video_; }
    Input& Keys() { return input_; }
    Skin& Pictures() { return skin_; }
    ResourcePacks& Packs() { return packs_; }
    Fonts& Text() { return fonts_; }
    MouseRegions& Regions() { return regions_; }
    Screen& GetScreen(int slot) { return *m_screens[static_cast<std::size_t>(slot)]; }
    DiskOpScreen& DiskOp();
    QuestionScreen& Question();
    void SetClock(std::function<std::uint32_t()> milliseconds);  // a test's own
    std::uint32_t Now() const { return clock_(); }               // milliseconds; wraps

    // --- Start. Start.cpp. Goes through on the first run and after each change of the video mode.
    int Start(bool firstRun);                    // 0, or 1 if the mode cannot be had
    void ReleaseSurfaces();
    // Opens, or is cut short by a key or a button of the mouse. The caller's pump takes the window's events each frame;
    // false from it cuts it short too.
    void RunCurtain(const std::function<bool()>& pump);
    void FadeOut(const std::function<void()>& pump);             // closes while the sound fades
    int VisualSurface() const { return visualSurface_; }         // slots of what the visual and the game draw on
    int GameSurface() const { return gameSurface_; }

    // --- One frame. Paint.cpp
    void Paint();

    // --- Screens. ScreenGroups.cpp
    void ShowScreen(int slot);
    void ToggleScreen(int slot);                 // hiding brings the group's default back
    void ShowOnly(int slot) { ShowScreen(slot); }   // like ToggleScreen, but never hides
    void HideGroup(int group);
    void ResetGroup(int group);
    bool CloseTopScreen();                       // what lies over the default layout; false if nothing does
    bool IsVisible(int slot) const { return m_screens[static_cast<std::size_t>(slot)]->IsVisible(); }
    ListKind CurrentList() const;

    // --- Keys. OnKey.cpp, KeyEffects.cpp
    void OnKey(int key, bool pressed, bool fromDevice);
    bool MatchAction(int key, int action, bool checkModifiers) const;
    int OnPianoKey(int key, bool pressed);       // action, or -1
    void KeyRepeatTick();
    void Undo();                                 // and says what it was, as the next
    void Redo();
    void OnNote(int note, bool fromMidi, int velocity);          // velocity 0 to 255
    void OnNoteFromMidi(int note, bool pressed, int velocity);
    void ReleaseNote(int note);                  // 0 to 95, as played
    void OnEscape();                             // leaves the innermost: question, text, screen, program
    void ForgetKeys();                           // the window lost or gained the focus
    int ModifierMask() const;                    // of KeyModifierMask
    bool ShiftHeld() const { return m_bShift; }
    bool AltHeld() const { return m_bAlt; }
    bool TakeAltFresh() { return std::exchange(m_bAltFresh, false); }
    void OwnKeyboard() { keyboardOwned_ = true; }                // the game screen, for this frame

    // --- Input. PollInput.cpp
    void PollInput();
    void PollMouse();

    // --- Question. Question.cpp
    void Ask(const std::string& text, ControlCallback onYes, ControlCallback onNo = {}, DialogMode mode = DialogMode::YesNo);
    // Where Yes destroys what nothing brings back: Enter answers No.
    void AskWithCare(const std::string& text, ControlCallback onYes, ControlCallback onNo = {});
    // Goes on at once if the song is as it was saved. Else asks what to do with it: to save it and then go on, to go on
    // without it, or to stay.
    void IfSongMayGo(const std::string& question, ControlCallback goOn);
    void AskToQuit();                            // one question, however often it is asked
    void AskForZap();
    // What happened, with one button; a text that is too long for it stands in a list. While a question is open, it
    // waits for the answer.
    void Tell(const std::string& text);
    void TellReport(const std::string& heading, const std::vector<std::string>& lines);
    const std::string& Notice() const { return noticeText_; }
    void Notify(const std::string& text);        // a line that goes by itself and stands in nobody's way
    void CloseQuestion();                        // nothing else happens; nothing at all if none is open
    // Each closes the question first, so that its work may ask another.
    void AnswerYes();
    void AnswerNo();
    void AnswerChoice(int choice);               // of the Zap, 0 to kZapChoices - 1; of a changed song as Answers
    void Answer(int index);
    std::span<const QuestionAnswer> Answers() const;   // none of those that have a screen of their own
    int DefaultAnswer() const { return defaultAnswer_; }   // the one that Enter gives
    DialogMode Mode() const { return m_nDialogMode; }
    const std::string& QuestionText() const { return m_szDialogText; }

    // --- Text editing. TextEdit.cpp
    void StartTextEdit(std::string& text, bool selected = false);   // selected: what is typed takes its place
    void StartTextEdit(StepName name, const Place& at, Field<std::string> text);   // of the song: one step
    void EndTextEdit() { m_bEndTextEdit = true; }
    void StopTextEdit();                         // at once: the text's owner is going
    bool IsEditingText() const { return editedText_ != nullptr; }
    bool IsTextSelected() const { return textSelected_; }
    void OnCharacter(std::string_view utf8);     // as typed; "\b", "\r" and "\x1b" do what their keys do
    void OnBackspace();

private:
    int StartVideo();
    void LoadLoadingScreen();
    void AdvanceLoading();
    void BlitCurtain(int open);                  // 0 closed, kPictureWidth open

    void AnswerPending();
    void ApplySolo(bool newSong);
    void PaintScreens();
    void PaintText();
    void PaintQuestion();
    void PaintBusy();
    void PaintNotice();
    void PaintOverlays();
    bool Lock();
    void Unlock();
    void KeepTyped();
    bool IsBusy() const { return state_.m_bSaveRequested || state_.m_bLoadRequested; }

    void PollKeys();
    void PollWheel();
    void PollMidi();
    void UpdateModifiers(int key, bool pressed);
    void OnRelease(int key);
    void Arm(int key, int action);
    bool QuestionTakes(int key) const;
    void PerformOwnAction(int key);
    void TakeStep(const std::string& verb, const Step* (TrackerState::*take)());
    void AnswerKey(int key);
    void KeepNameEdited();
    void TellNextWaiting();
    void OnChangedAnswer(ControlRecord& record);
    void OnZap(ControlRecord& record);
    void Zap(ControlRecord& record);
    void OnQuit(ControlRecord& record);

    InterfaceHost& host_;
    TrackerState& state_;
    Video& video_;
    Input& input_;
    ResourcePacks& packs_;
    Fonts fonts_;
    Skin skin_;
    MouseRegions regions_;
    std::array<std::unique_ptr<Screen>, kScreens> m_screens;

    bool m_bSoftwareMouse = false;
    bool m_bAltFresh = false, m_bShift = false, m_bControl = false, m_bAlt = false;
    std::function<std::uint32_t()> clock_;
    std::uint32_t m_nKeyLast = 0, m_nKeyRest = 0, m_nMouseLast = 0, m_nMouseRest = 0;   // milliseconds
    float wheelRest_ = 0;                        // of a notch
    std::array<std::uint16_t, kLastNote + 1> m_noteVoice;        // handle of the note that a key holds
    std::array<std::int8_t, kPianoKeys> heldNotes_;              // by key of the piano rows; -1 none
    bool m_bEndTextEdit = false;
    std::string* editedText_ = nullptr;
    bool textSelected_ = false;
    // The text of the song that is edited, as it stood when it was last looked at, and the gesture that its step is.
    struct SongText { StepName name; Place at; Field<std::string> field; std::string former; std::uint32_t gesture; };
    std::optional<SongText> songText_;
    bool keyboardOwned_ = false;
    bool keysAnswered_ = false;                  // the keys of this poll belong to a question
    bool lastLeft_ = false, lastRight_ = false;

    DialogMode m_nDialogMode = DialogMode::YesNo;
    ControlCallback m_pfnYes, m_pfnNo, m_pfnChoice;
    std::string m_szDialogText;
    int defaultAnswer_ = 0;
    bool tellOnly_ = false, quitAsked_ = false;
    ControlCallback goOn_;                       // once the changed song is settled
    int zapChoice_ = 0;
    struct Message {
        std::string heading;
        std::vector<std::string> lines;          // none: a text that the question has room for
    };
    std::vector<Message> waiting_;               // to be told, the oldest first
    std::string noticeText_;
    std::uint32_t noticeStart_ = 0;              // milliseconds

    int loadingLeft_ = Video::kNoSlot, loadingRight_ = Video::kNoSlot, progressUnit_ = Video::kNoSlot;
    int mousePicture_ = Video::kNoSlot, visualSurface_ = Video::kNoSlot, gameSurface_ = Video::kNoSlot;
    int progress_ = 0;                           // units of the loading screen
    int soloInstrument_ = 0;                     // that sounds alone, as of the last frame, from 1; 0 none
};

}  // namespace vonta
