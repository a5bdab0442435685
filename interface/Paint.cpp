#include <algorithm>

#include "interface/TrackerInterface.h"
#include "interface/layout/QuestionLayouts.h"
#include "interface/view/ListItems.h"
#include "platform/Debug.h"

namespace vonta {
namespace {

constexpr const char* kNewChunksText = "  NEW Chunks Found!!";
constexpr std::uint32_t kCaretBit = 1u << 8;     // of the clock's milliseconds: on and off twice a second

// Shows the caret in the text itself, for as long as one frame is painted.
class Caret {
public:
    Caret(std::string* text, std::uint32_t now) : text_(now & kCaretBit ? text : nullptr) {
        if (text_) text_->push_back('_');
    }
    ~Caret() { if (text_) text_->pop_back(); }
    Caret(const Caret&) = delete;
    Caret& operator=(const Caret&) = delete;

private:
    std::string* text_;
};

}  // namespace

// What is painted reads values that do not change before the next frame. The regions that it declares are what the
// mouse is tested against then.
void TrackerInterface::Paint() {
    skin_.BuildPendingPiano();
    AnswerPending();
    TellNextWaiting();
    keyboardOwned_ = false;                      // unless the game says so while it paints
    const Caret caret(editedText_, Now());
    regions_.Clear();
    PaintScreens();
    PaintText();
    if (IsBusy()) PaintBusy();
    else if (!noticeText_.empty() && !state_.m_bDialogOpen) PaintNotice();
    if (state_.m_bDialogOpen) PaintQuestion();
    PaintOverlays();
}

// Before the caret goes into a text: the song that holds it may be replaced here.
void TrackerInterface::AnswerPending() {
    KeepTyped();
    const Applied applied = state_.ApplyPending();
    if (applied.songParts) {
        StopTextEdit();
        regions_.ReleaseCapture();
    }
    if (applied.unknownChunks) Tell(kNewChunksText);
    ApplySolo(applied.songParts);
}

// Muting is a flag of each instrument and of what it sounds; it stops nothing.
void TrackerInterface::ApplySolo(bool newSong) {
    const int wanted = state_.m_bSolo ? state_.pending.m_nSelected[kListInstruments] : 0;
    if (wanted == soloInstrument_ && !(newSong && wanted > 0)) return;
    soloInstrument_ = wanted;
    if (wanted == 0) state_.Player().UnmuteInstruments();
    for (int i = 0; i < kMaxInstruments; ++i) {
        const bool mute = wanted > 0 && i != wanted - 1;
        if (wanted > 0) state_.Player().MuteInstrument(i, mute);
        MuteNotesToCome(state_.Player(), i, mute);
    }
}

// The question comes last, over all.
void TrackerInterface::PaintScreens() {
    const auto shown = [this](int slot) { return slot != kScreenQuestion && IsVisible(slot); };
    for (int slot = 0; slot < kScreens; ++slot)
        if (shown(slot)) GetScreen(slot).PaintBackground();
    regions_.SetBlitMode(true);
    fonts_.Mute(true);
    for (int slot = 0; slot < kScreens; ++slot)
        if (shown(slot)) GetScreen(slot).PaintControls();
    if (!state_.m_bDialogOpen) regions_.PaintPressed(input_.MouseX(), input_.MouseY());
    regions_.SetBlitMode(false);
    fonts_.Mute(false);
}

void TrackerInterface::PaintText() {
    if (!Lock()) return;
    for (int slot = 0; slot < kScreens; ++slot)
        if (slot != kScreenQuestion && IsVisible(slot)) GetScreen(slot).PaintControls();
    for (int slot = 0; slot < kScreens; ++slot)
        if (slot != kScreenQuestion && IsVisible(slot)) GetScreen(slot).PaintPixels();
    Unlock();
}

// Its buttons alone are live.
void TrackerInterface::PaintQuestion() {
    Screen& question = GetScreen(kScreenQuestion);
    regions_.Clear();
    question.PaintBackground();
    regions_.SetBlitMode(true);
    fonts_.Mute(true);
    question.PaintControls();
    regions_.PaintPressed(input_.MouseX(), input_.MouseY());
    regions_.SetBlitMode(false);
    fonts_.Mute(false);
    if (!Lock()) return;
    question.PaintControls();
    question.PaintPixels();
    Unlock();
}

// Covers the texts of the screens, too.
void TrackerInterface::PaintBusy() {
    constexpr int kTextX = 286, kTextY = 305, kNameY = 320, kNameLength = 28;   // pixels, characters
    video_.BlitToBack(kLoadingLayout.x, kLoadingLayout.y, skin_.LoadSkinBitmap(kLoadingLayout.bitmap));
    if (!Lock()) return;
    fonts_.m_fontStd.Print(kTextX, kTextY, state_.m_bSaveRequested ? "Saving data..." : "Loading data...");
    fonts_.m_fontStd.PrintClipped(kTextX, kNameY, kNameLength, state_.m_szRequestedFile);
    Unlock();
}

void TrackerInterface::PaintNotice() {
    constexpr std::uint32_t kShown = 2000;       // milliseconds
    if (Now() - noticeStart_ > kShown) return noticeText_.clear();
    video_.BlitToBack(kNoticeLayout.x, kNoticeLayout.y, skin_.LoadSkinBitmap(kNoticeLayout.bitmap));
    if (!Lock()) return;
    const LayoutItem recess = MovedBy(ItemOf(kNoticeLayout, kNoticeText), kNoticeLayout.x, kNoticeLayout.y);
    const Font& font = fonts_.m_fontStd;
    font.Print(recess.x + (recess.width - font.WidthOf(noticeText_)) / 2, recess.y + 2, noticeText_);
    Unlock();
}

void TrackerInterface::PaintOverlays() {
    constexpr int kLowerStripe = 594;            // y of the second mark of recording
    constexpr int kMouseWidth = 11, kMouseHeight = 20;
    if (state_.frame.m_bEditMode) {
        const int stripe = skin_.LoadSkinBitmap(kBitmapRecording);
        video_.BlitToBack(0, 0, stripe);
        video_.BlitToBack(0, kLowerStripe, stripe);
    }
    if (!m_bSoftwareMouse) return;
    const int x = std::clamp(input_.MouseX(), 0, kPictureWidth - 1), y = std::clamp(input_.MouseY(), 0, kPictureHeight - 1);
    video_.BlitPart(x, y, std::min(kMouseWidth, kPictureWidth - x), std::min(kMouseHeight, kPictureHeight - y),
                    mousePicture_, true);
}

bool TrackerInterface::Lock() {
    int pitch = 0;
    std::uint8_t* address = video_.LockBack(pitch);
    if (!address) {
        DebugOutput("warning: no se pudo bloquear la surface de video\n");
        return false;
    }
    fonts_.SetTarget(address, pitch);
    video_.SetTarget(address, pitch);
    return true;
}

void TrackerInterface::Unlock() {
    fonts_.SetTarget(nullptr, 0);
    video_.SetTarget(nullptr, 0);
    video_.UnlockBack();
}

}  // namespace vonta
