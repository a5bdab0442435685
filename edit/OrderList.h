// The list of patterns that makes the song's course.
#pragma once

#include "edit/Editor.h"
#include "edit/StepNames.h"

namespace vonta {

constexpr int kMaxLength = 255;                  // positions

// `at` tells the position.
void SetOrderEntry(Editor& editor, const Place& at, int pattern);
void InsertPosition(Editor& editor, const Place& at);        // it and those behind move on; nothing beyond the maximum
void DeletePosition(Editor& editor, const Place& at);        // never the only one
void SetSongLength(Editor& editor, const Place& at, int positions);   // and the restart position stays inside
void SetRestart(Editor& editor, const Place& at, int position);

}  // namespace vonta
