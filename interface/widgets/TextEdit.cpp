#include <algorithm>
#include <utility>

#include "edit/Numbers.h"
#include "interface/TrackerInterface.h"

namespace vonta {
namespace {

bool IsContinuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

int CharactersOf(std::string_view utf8) {
    return static_cast<int>(std::count_if(utf8.begin(), utf8.end(), [](char byte) { return !IsContinuation(byte); }));
}

bool IsPrintable(std::string_view utf8) {
    constexpr unsigned char kDelete = 0x7F;
    return !utf8.empty() && std::all_of(utf8.begin(), utf8.end(), [](char byte) {
        const auto value = static_cast<unsigned char>(byte);
        return value >= ' ' && value != kDelete;
    });
}

}  // namespace

void TrackerInterface::StartTextEdit(std::string& text, bool selected) {
    StopTextEdit();
    editedText_ = &text;
    textSelected_ = selected;
}

void TrackerInterface::StartTextEdit(StepName name, const Place& at, Field<std::string> text) {
    std::string* field = text.find(state_.Edits().GetSong());
    if (!field) return;
    StartTextEdit(*field);
    songText_ = {name, at, std::move(text), *field, state_.NewGesture()};
}

// The name of the save question is edited for as long as it is open, whatever else is pressed there.
void TrackerInterface::KeepNameEdited() {
    if (state_.m_bDialogOpen && m_nDialogMode == DialogMode::Save && !IsEditingText()) StartTextEdit(state_.m_szSongName);
}

void TrackerInterface::StopTextEdit() {
    KeepTyped();
    songText_.reset();
    editedText_ = nullptr;
    textSelected_ = m_bEndTextEdit = false;
}

// What has been typed since the last frame joins the step of this edit.
void TrackerInterface::KeepTyped() {
    if (!songText_) return;
    Journal& steps = state_.Edits().Steps();
    const std::uint32_t outer = steps.Gesture();
    steps.SetGesture(songText_->gesture);
    vonta::KeepTyped(state_.Edits(), songText_->name, songText_->at, songText_->field,
                     std::exchange(songText_->former, *editedText_));
    steps.SetGesture(outer);
}

// There is no commit: what is typed stands in the model's own field at once.
void TrackerInterface::OnCharacter(std::string_view utf8) {
    if (!editedText_ || m_bEndTextEdit) return;
    if (utf8 == "\b") return OnBackspace();
    if (utf8 == "\r" || utf8 == "\x1b") return EndTextEdit();
    if (!IsPrintable(utf8)) return;
    if (std::exchange(textSelected_, false)) editedText_->clear();
    if (CharactersOf(*editedText_) + CharactersOf(utf8) <= kMaxTextLength) *editedText_ += utf8;
}

void TrackerInterface::OnBackspace() {
    if (!editedText_ || m_bEndTextEdit) return;
    if (std::exchange(textSelected_, false)) return editedText_->clear();
    while (!editedText_->empty() && IsContinuation(editedText_->back())) editedText_->pop_back();
    if (!editedText_->empty()) editedText_->pop_back();
}

}  // namespace vonta
