#include <algorithm>

#include "interface/screens/DiskOpScreen.h"
#include "interface/screens/QuestionScreen.h"
#include "interface/TrackerInterface.h"

namespace vonta {
namespace {

constexpr const char* kQuitText = "           Gotta go??";

constexpr int KeyOf(char letter) { return kKeyA + letter - 'A'; }

constexpr QuestionAnswer kYesNo[] = {{"Yes", KeyOf('Y')}, {"No", KeyOf('N')}};
constexpr QuestionAnswer kOk[] = {{"OK", kKeyEnter}};
// In the order of ChangedChoice.
constexpr QuestionAnswer kChanged[] = {{"Save", KeyOf('S')}, {"Discard", KeyOf('D')}, {"Cancel", KeyOf('C')}};
enum ChangedChoice : int { kSaveIt, kDiscardIt, kCancelIt };
constexpr int kNo = 1;                           // of kYesNo

// By choice; the last one clears nothing.
struct ZapRow {
    const char* question;
    void (*perform)(TrackerState& state);
};
constexpr ZapRow kZaps[] = {
    {"Clear the whole song??", [](TrackerState& state) { state.NewSong(); }},
    {"Clear the patterns??", [](TrackerState& state) { state.ClearPatterns(); }},
    {"Clear the instruments??", [](TrackerState& state) { state.ClearInstruments(); }},
    {"Clear the effects??", [](TrackerState& state) { state.ClearEffects(); }},
};
static_assert(std::size(kZaps) + 1 == kZapChoices);

std::string WithoutLeadingBlanks(const std::string& text) {
    return text.substr(std::min(text.find_first_not_of(' '), text.size()));
}

}  // namespace

void TrackerInterface::Ask(const std::string& text, ControlCallback onYes, ControlCallback onNo, DialogMode mode) {
    CloseQuestion();
    m_szDialogText = text;
    m_pfnYes = onYes;
    m_pfnNo = onNo;
    m_nDialogMode = mode;
    defaultAnswer_ = 0;
    state_.m_bDialogOpen = true;
    GetScreen(kScreenQuestion).SetVisible(true);
    regions_.ReleaseCapture();                   // from now on the mouse belongs to the question
}

void TrackerInterface::AskWithCare(const std::string& text, ControlCallback onYes, ControlCallback onNo) {
    Ask(text, onYes, onNo);
    defaultAnswer_ = kNo;
}

void TrackerInterface::IfSongMayGo(const std::string& question, ControlCallback goOn) {
    if (!state_.IsChanged()) {
        ControlRecord record;
        return goOn(record);
    }
    Ask(question + "\n" + DiskOp().SongLabel() + " has changed", {}, {}, DialogMode::Changed);
    m_pfnChoice = Bind<&TrackerInterface::OnChangedAnswer>(this);
    goOn_ = goOn;
}

void TrackerInterface::OnChangedAnswer(ControlRecord& record) {
    const ControlCallback goOn = std::exchange(goOn_, {});
    if (record.param == kSaveIt) DiskOp().SaveAndGoOn(goOn);
    else if (record.param == kDiscardIt) goOn(record);
}

void TrackerInterface::AskToQuit() {
    if (quitAsked_) return;
    if (state_.IsChanged()) IfSongMayGo(WithoutLeadingBlanks(kQuitText), Bind<&TrackerInterface::OnQuit>(this));
    else Ask(kQuitText, Bind<&TrackerInterface::OnQuit>(this));
    quitAsked_ = true;
}

void TrackerInterface::AskForZap() {
    Ask({}, {}, {}, DialogMode::Zap);
    m_pfnChoice = Bind<&TrackerInterface::OnZap>(this);
}

void TrackerInterface::Tell(const std::string& text) {
    if (QuestionScreen::FitsDialog(text)) waiting_.push_back({text, {}});
    else waiting_.push_back({{}, {text}});
    TellNextWaiting();
}

void TrackerInterface::TellReport(const std::string& heading, const std::vector<std::string>& lines) {
    waiting_.push_back({heading, lines});
    TellNextWaiting();
}

void TrackerInterface::TellNextWaiting() {
    if (state_.m_bDialogOpen || waiting_.empty()) return;
    const Message message = std::move(waiting_.front());
    waiting_.erase(waiting_.begin());
    Ask(message.heading, {}, {}, message.lines.empty() ? DialogMode::YesNo : DialogMode::Report);
    tellOnly_ = true;
    Question().SetReport(message.lines);
}

void TrackerInterface::Notify(const std::string& text) {
    noticeText_ = text;
    noticeStart_ = Now();
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

std::span<const QuestionAnswer> TrackerInterface::Answers() const {
    if (m_nDialogMode == DialogMode::Zap || m_nDialogMode == DialogMode::Save) return {};
    if (tellOnly_) return kOk;
    return m_nDialogMode == DialogMode::Changed ? std::span<const QuestionAnswer>(kChanged) : kYesNo;
}

void TrackerInterface::Answer(int index) {
    if (m_nDialogMode == DialogMode::Changed) AnswerChoice(index);
    else if (index == 0) AnswerYes();
    else AnswerNo();
}

void TrackerInterface::OnQuit(ControlRecord&) { state_.m_bQuit = true; }

void TrackerInterface::OnZap(ControlRecord& record) {
    if (record.param < 0 || record.param >= static_cast<int>(std::size(kZaps))) return;
    zapChoice_ = record.param;
    IfSongMayGo(kZaps[zapChoice_].question, Bind<&TrackerInterface::Zap>(this));
}

void TrackerInterface::Zap(ControlRecord&) { kZaps[zapChoice_].perform(state_); }

// While a text is edited, its letters answer nothing. Of the save question it is the name, which Enter takes.
bool TrackerInterface::QuestionTakes(int key) const {
    if (!state_.m_bDialogOpen) return false;
    const bool enter = key == kKeyEnter || key == kKeyRightEnter;
    return m_nDialogMode == DialogMode::Save ? enter : !IsEditingText();
}

// There is no Yes to the Zap: its choices are for the mouse alone.
void TrackerInterface::AnswerKey(int key) {
    constexpr int kPage = 10;                    // lines
    const bool enter = key == kKeyEnter || key == kKeyRightEnter;
    if (m_nDialogMode == DialogMode::Save) return AnswerYes();
    if (m_nDialogMode == DialogMode::Zap) return key == KeyOf('N') ? AnswerNo() : void();
    if (key == kKeyUp || key == kKeyDown) Question().OnWheel(key == kKeyUp ? 1 : -1);
    if (key == kKeyPageUp || key == kKeyPageDown) Question().OnWheel(key == kKeyPageUp ? kPage : -kPage);
    if (enter) return Answer(defaultAnswer_);
    if (m_nDialogMode == DialogMode::Changed && key == KeyOf('N')) return Answer(kCancelIt);   // as to Yes and No
    const auto answers = Answers();
    for (std::size_t i = 0; i < answers.size(); ++i)
        if (answers[i].key == key) return Answer(static_cast<int>(i));
}

}  // namespace vonta
