#include "edit/OrderList.h"

#include <algorithm>

namespace vonta {
namespace {

int LengthOf(const Song& song) { return static_cast<int>(song.GetPatternPosLenght()); }

void SetEntry(Editor& editor, int position, int pattern) {
    if (position < 0 || position >= kMaxPositions) return;
    using List = decltype(Song::patternList);
    const auto entry = [position](List& list) { return &list[static_cast<std::size_t>(position)]; };
    editor.Set(Inside<std::uint8_t>(SongField(&Song::patternList), entry),
               static_cast<std::uint8_t>(std::clamp(pattern, 0, kMaxPatterns - 1)));
}

}  // namespace

void SetOrderEntry(Editor& editor, const Place& at, int pattern) {
    const Editor::StepScope step(editor, kStepOrder, at);
    SetEntry(editor, at.position, pattern);
}

void InsertPosition(Editor& editor, const Place& at) {
    const Song& song = editor.GetSong();
    const int length = LengthOf(song);
    if (length >= kMaxLength) return;
    const Editor::StepScope step(editor, kStepInsertPosition, at);
    for (int i = length; i > at.position; --i) SetEntry(editor, i, song.GetPatternPosIndex(i - 1));
    SetSongLength(editor, at, length + 1);
}

void DeletePosition(Editor& editor, const Place& at) {
    const Song& song = editor.GetSong();
    const int length = LengthOf(song);
    if (length <= 1) return;
    const Editor::StepScope step(editor, kStepDeletePosition, at);
    for (int i = at.position; i + 1 < length; ++i) SetEntry(editor, i, song.GetPatternPosIndex(i + 1));
    SetEntry(editor, length - 1, 0);
    SetSongLength(editor, at, length - 1);
}

void SetSongLength(Editor& editor, const Place& at, int positions) {
    const Editor::StepScope step(editor, kStepLength, at);
    editor.Set(SongField(&Song::length), static_cast<std::uint32_t>(std::clamp(positions, 1, kMaxLength)));
    SetRestart(editor, at, static_cast<int>(editor.GetSong().GetPatternPosRestart()));
}

void SetRestart(Editor& editor, const Place& at, int position) {
    const Editor::StepScope step(editor, kStepRestart, at);
    const int last = std::max(0, LengthOf(editor.GetSong()) - 1);
    editor.Set(SongField(&Song::restartPos), static_cast<std::uint32_t>(std::clamp(position, 0, last)));
}

}  // namespace vonta
