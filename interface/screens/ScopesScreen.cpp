#include "interface/screens/ScopesScreen.h"

#include <algorithm>
#include <cmath>

#include "interface/layout/PatternPictures.h"
#include "interface/layout/ScopesLayout.h"
#include "interface/TrackerInterface.h"
#include "interface/video/Wave.h"
#include "interface/widgets/Formatted.h"
#include "platform/Clock.h"

namespace vonta {
namespace {

using Self = ScopesScreen;

// "+" and "-".
constexpr ControlRow<Self> PlusMinus(int plusId, void (*press)(void*, ControlRecord&)) {
    return {plusId, press, 1, kRepeating, nullptr, 2, -2};
}

constexpr ControlRow<Self> kRows[] = {
    PlusMinus(kScopesPositionUp, Press<&Self::OnChange<&TrackerState::ChangePosition>>),
    {kScopesInsert, Press<&Self::OnOperation<&TrackerState::InsertPosition>>},
    {kScopesDelete, Press<&Self::OnOperation<&TrackerState::DeletePosition>>},
    PlusMinus(kScopesPatternUp, Press<&Self::OnChange<&TrackerState::ChangePatternAtPosition>>),
    PlusMinus(kScopesLengthUp, Press<&Self::OnChange<&TrackerState::ChangeLength>>),
    PlusMinus(kScopesRestartUp, Press<&Self::OnChange<&TrackerState::ChangeRestart>>),
    PlusMinus(kScopesBpmUp, Press<&Self::OnChange<&TrackerState::ChangeBpm>>),
    PlusMinus(kScopesTicksUp, Press<&Self::OnChange<&TrackerState::ChangeTempo>>),
    PlusMinus(kScopesAddUp, Press<&Self::OnChange<&TrackerState::ChangeCursorAdd>>),
    PlusMinus(kScopesShownUp, Press<&Self::OnChange<&TrackerState::ChangeShownPattern>>),
    PlusMinus(kScopesRowsUp, Press<&Self::OnChange<&TrackerState::ChangeRows>>),
    {kScopesExpand, Press<&Self::OnOperation<&TrackerState::ExpandPattern>>},
    {kScopesShrink, Press<&Self::OnOperation<&TrackerState::ShrinkPattern>>},
};

constexpr int kListX = 4, kListY = 32, kListPitch = 14, kLinesAround = 2;   // pixels; of the present line
constexpr int kPositionX = 8;
constexpr int kClockX = 233, kStoppedClockX = -2, kClockY = 113;
constexpr float kLevelFall = 1.0f / 600, kPeakFall = 1.0f / 4000;           // of the full level in a millisecond

const LayoutItem& Item(int id) { return ItemOf(kScopesLayout, id); }

// What the recess of an item encloses.
Rect Inside(const LayoutItem& item) { return {item.x + 2, item.y + 2, item.width - 4, item.height - 4}; }

}  // namespace

void ScopesScreen::PaintBackground() {
    PaintLayout(kScopesLayout);
    Player().GetMixer().scope.Watch();
    for (const int side : {0, 1}) PaintLevel(side);
    lastPaint_ = Ui().Now();
}

void ScopesScreen::PaintLevel(int side) {
    const auto at = static_cast<std::size_t>(side);
    const auto passed = static_cast<float>(std::min<std::uint32_t>(Ui().Now() - lastPaint_, 1000));
    const float now = ShownLevel(Player().GetMixer().scope.TakePeak(side));
    level_[at] = std::max({now, level_[at] - passed * kLevelFall, 0.0f});
    peak_[at] = std::max({now, peak_[at] - passed * kPeakFall, 0.0f});
    const Rect bar = Inside(Item(side == 0 ? kScopesLeftLevel : kScopesRightLevel));
    const auto along = [&](float level) { return static_cast<int>(level * static_cast<float>(bar.width)); };
    Surfaces().FillBack({bar.x, bar.y, along(level_[at]), bar.height}, Pictures().Colours().m_colLines);
    if (const int mark = along(peak_[at]); mark > 1)
        Surfaces().BlitToBack(bar.x + mark - 2, bar.y - 1, Pictures().LoadSkinBitmap(kPictureLevelPeak));
}

void ScopesScreen::PaintControls() {
    if (!HasPainted()) return;
    DeclareButtons(this, kScopesLayout, kRows);
    DeclareSlider();
    if (Regions().IsBlitMode()) return;
    PrintPatternList();
    PrintNumbers();
    PrintClock();
}

void ScopesScreen::DeclareSlider() {
    const LayoutItem& groove = Item(kScopesPositionSlider);
    const int length = static_cast<int>(CurrentSong().GetPatternPosLenght());
    const MouseRegions::SliderShape shape{groove.x, groove.y, groove.x + groove.width, groove.y + groove.height, length,
                                          0, State().m_nOrderPosition, true};
    const auto move = Bind<&Self::OnPositionSlider>(this);
    Regions().VSlider(shape, move, move, Look());
}

void ScopesScreen::OnPositionSlider(ControlRecord& record) {
    const auto last = static_cast<float>(CurrentSong().GetPatternPosLenght() - 1);
    const int position = static_cast<int>(std::lround(std::clamp(record.relY, 0.0f, 1.0f) * last));
    if (position != State().OrderPosition()) State().ChangePosition(position - State().OrderPosition());
}

void ScopesScreen::PrintPatternList() {
    const Font& font = Text().m_fontStd;
    const SkinColours& colours = Pictures().Colours();
    const int length = static_cast<int>(CurrentSong().GetPatternPosLenght());
    for (int line = -kLinesAround; line <= kLinesAround; ++line) {
        const int position = State().m_nOrderPosition + line, y = kListY + line * kListPitch;
        if (position < 0 || position >= length) continue;
        font.PrintColoured(kPositionX, y, colours.m_colDim, Formatted("%02X", static_cast<unsigned>(position)));
        font.PrintColoured(kListX, y, line == 0 ? colours.m_colHighlight : colours.m_colText,
                           Formatted("    %02X ", static_cast<unsigned>(CurrentSong().GetPatternPosIndex(position))));
    }
}

void ScopesScreen::PrintNumbers() {
    const Song& song = CurrentSong();
    const TrackerState& state = State();
    struct Number { int x, y; const char* format; int value; };
    const Number numbers[] = {
        {8, 77, "       %02X", static_cast<int>(song.GetPatternPosLenght())},
        {8, 93, "       %02X", static_cast<int>(song.GetPatternPosRestart())},
        {126, 53, "    %03i", static_cast<int>(song.StartBpm())},
        {126, 72, "     %02i", static_cast<int>(song.StartTempo())},
        {126, 92, "     %02i", state.m_nCursorAdd},
        {238, 50, "     %02X", state.m_nPatternNumber},
        {238, 70, "    %03X", state.m_pPattern->Rows()},
    };
    for (const Number& number : numbers)
        Text().m_fontStd.PrintColoured(number.x, number.y, Pictures().Colours().m_colText,
                                       Formatted(number.format, number.value));
    PrintPresentTempo();
}

// What sounds now, where a command of the song has made it something else than the song begins with.
void ScopesScreen::PrintPresentTempo() {
    const Song& song = CurrentSong();
    const auto bpm = static_cast<std::uint32_t>(Player().GetBPM());
    if (bpm == song.StartBpm() && song.GetTempo() == song.StartTempo()) return;
    const LayoutItem& field = Item(kScopesPresent);
    Text().m_fontStd.PrintColoured(field.x + 4, field.y, Pictures().Colours().m_colHighlight,
                                   Formatted("%03u/%02u", bpm, song.GetTempo()));
}

// While the song plays, and after it how long it has played.
void ScopesScreen::PrintClock() {
    const bool playing = Player().IsPlaying();
    if (playing) playedMs_ = Milliseconds() - Player().StartTime();
    const std::uint32_t seconds = playedMs_ / 1000;
    const std::string time = playing && Player().IsDesynced()
                                 ? "DESYNC!!"
                                 : Formatted("%02i:%02i:%02i", static_cast<int>(seconds / 3600),
                                             static_cast<int>(seconds / 60 % 60), static_cast<int>(seconds % 60));
    Text().m_fontStd.PrintColoured(playing ? kClockX : kStoppedClockX, kClockY, Pictures().Colours().m_colText,
                                   (playing ? "     " : " ") + time);
}

void ScopesScreen::PaintPixels() {
    for (const int side : {0, 1})
        DrawWave(Surfaces(), Inside(Item(side == 0 ? kScopesLeftWave : kScopesRightWave)),
                 Player().GetMixer().scope.OfOutput(side), Pictures().Colours().m_colLines);
}

}  // namespace vonta
