#include "interface/screens/Screens.h"
#include "interface/TrackerInterface.h"

namespace vonta {
namespace {

constexpr const char* kQuitText = "           Gotta go??";

}  // namespace

void TrackerInterface::Ask(const std::string& text, ControlCallback onYes, ControlCallback onNo, DialogMode mode) {
    CloseQuestion();
    m_szDialogText = text;
    m_pfnYes = onYes;
    m_pfnNo = onNo;
    m_nDialogMode = mode;
    state_.m_bDialogOpen = true;
    GetScreen(kScreenQuestion).SetVisible(true);
    regions_.ReleaseCapture();                   // from now on the mouse belongs to the question
}

void TrackerInterface::AskToQuit() {
    if (quitAsked_) return;
    Ask(kQuitText, Bind<&TrackerInterface::OnQuit>(this));
    quitAsked_ = true;
}

void TrackerInterface::AskForZap() {
    Ask({}, {}, {}, DialogMode::Zap);
    m_pfnChoice = Bind<&TrackerInterface::OnZap>(this);
}

void TrackerInterface::Tell(const std::string& text) {
    Ask(text, {});
    tellOnly_ = true;
}

void TrackerInterface::CloseQuestion() {
    if (!state_.m_bDialogOpen) return;
    StopTextEdit();                              // of the file name
    m_pfnYes = m_pfnNo = m_pfnChoice = {};
    state_.m_bDialogOpen = tellOnly_ = quitAsked_ = false;
    GetScreen(kScreenQuestion).SetVisible(false);
    regions_.ReleaseCapture();
}

void TrackerInterface::AnswerYes() {
    const ControlCallback answer = m_pfnYes;
    ControlRecord record;
    CloseQuestion();
    answer(record);
}

void TrackerInterface::AnswerNo() {
    const ControlCallback answer = m_pfnNo;
    ControlRecord record;
    CloseQuestion();
    answer(record);
}

void TrackerInterface::AnswerChoice(int choice) {
    const ControlCallback answer = m_pfnChoice;
    ControlRecord record;
    record.param = choice;
    CloseQuestion();
    answer(record);
}

void TrackerInterface::OnQuit(ControlRecord&) { state_.m_bQuit = true; }

void TrackerInterface::OnZap(ControlRecord& record) {
    using Operation = void (*)(TrackerState& state);
    constexpr Operation kOperations[] = {
        [](TrackerState& state) { state.NewSong(); },
        [](TrackerState& state) { state.ClearPatterns(); },
        [](TrackerState& state) { state.ClearInstruments(); },
        [](TrackerState& state) { state.ClearEffects(); },
        [](TrackerState&) {},
    };
    static_assert(std::size(kOperations) == kZapChoices);
    if (record.param >= 0 && record.param < kZapChoices) kOperations[record.param](state_);
}

// The keys of the question. There is no Yes to the Zap: its choices are for the mouse alone.
void TrackerInterface::AnswerKey(int key) {
    constexpr int kKeyN = kKeyA + 'N' - 'A', kKeyY = kKeyA + 'Y' - 'A';
    if (key == kKeyN) AnswerNo();
    else if ((key == kKeyY || key == kKeyEnter || key == kKeyRightEnter) && m_nDialogMode != DialogMode::Zap) AnswerYes();
}

}  // namespace vonta
