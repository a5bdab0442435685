#include "interface/keys/KeyEffects.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "interface/TrackerInterface.h"

namespace vonta {
namespace {

constexpr int kSemitonesOfOctave = 12, kLowestOctave = -48, kHighestOctave = 24;
constexpr int kPage = 16;                        // rows of the larger cursor moves

// Where an action is refused, the key goes on to the next.
using Condition = bool (*)(TrackerInterface& ui);
using Effect = void (*)(TrackerInterface& ui, int index);   // index: of the action in its row

struct KeyEffect {
    int first, last;                             // actions
    Effect perform;
    Condition allowed = nullptr;                 // null: always
    bool anyModifiers = false;                   // compares the key alone
};

constexpr int kPlayWholeSong = 0;

bool InEditMode(TrackerInterface& ui) { return ui.State().pending.m_bEditMode; }
bool OnNoteColumn(TrackerInterface& ui) { return ui.State().pending.m_nCursorColumn == kColumnNote; }
bool OnDataColumn(TrackerInterface& ui) { return !OnNoteColumn(ui); }

int SignOf(int index) { return index == 0 ? 1 : -1; }   // of a pair that goes up first

template <void (TrackerState::*operation)()>
void Edit(TrackerInterface& ui, int) { (ui.State().*operation)(); }

template <auto operations>
void EditOneOf(TrackerInterface& ui, int index) { (ui.State().*operations[static_cast<std::size_t>(index)])(); }

using Operation = void (TrackerState::*)();
constexpr std::array<Operation, 9> kClipboardOperations{
    &TrackerState::CutTrack, &TrackerState::CopyTrack, &TrackerState::PasteTrack,
    &TrackerState::CutPattern, &TrackerState::CopyPattern, &TrackerState::PastePattern,
    &TrackerState::CutBlock, &TrackerState::CopyBlock, &TrackerState::PasteBlock};

template <std::uint8_t flags, bool record = false>
void Play(TrackerInterface& ui, int) { ui.State().Play(flags, record); }

// --- What is too long for a line of the table.

bool HasListItem(TrackerInterface& ui) {
    const ListKind list = ui.CurrentList();
    const int index = ui.State().pending.m_nSelected[list] - 1;
    if (list == kListInstruments) return ui.State().SelectedInstrument() != nullptr;
    if (list == kListSynths) return ui.State().CurrentSong().GetSynth(index) != nullptr;
    const FxSlotTable& effects = ui.State().Player().GetMixer().effects;
    return index >= 0 && index < kEffectSlots && effects[static_cast<std::size_t>(index)] != nullptr;
}

bool HasSample(TrackerInterface& ui) { return ui.CurrentList() == kListInstruments && ui.State().SelectedSample(); }

// The answers outlive the frame, so they belong to the state.
void DeleteInstrument(void* state, ControlRecord&) { static_cast<TrackerState*>(state)->requests.deleteInstrument = true; }
void DeleteSample(void* state, ControlRecord&) { static_cast<TrackerState*>(state)->requests.deleteSample = true; }

void DeleteSynth(void* state, ControlRecord&) {
    auto& tracker = *static_cast<TrackerState*>(state);
    tracker.requests.synth.slot = tracker.pending.m_nSelected[kListSynths] - 1;
    tracker.requests.synth.remove = true;
}

void DeleteEffect(void* state, ControlRecord&) {
    auto& tracker = *static_cast<TrackerState*>(state);
    tracker.requests.effect.slot = tracker.pending.m_nSelected[kListEffects] - 1;
    tracker.requests.effect.remove = true;
}

void AskToDeleteItem(TrackerInterface& ui, int) {
    struct Question { const char* text; void (*answer)(void*, ControlRecord&); };
    constexpr Question kQuestions[kListKinds] = {{"     Delete Instrument??", DeleteInstrument},
                                                 {"     Delete Synth??", DeleteSynth},
                                                 {"     Delete FX??", DeleteEffect}};
    const Question& question = kQuestions[ui.CurrentList()];
    ui.Ask(question.text, {&ui.State(), question.answer});
}

void AskToDeleteSample(TrackerInterface& ui, int) { ui.Ask("        Delete sample??", {&ui.State(), DeleteSample}); }

void SelectItemOfBlock(TrackerInterface& ui, int index) {
    const ListKind list = ui.CurrentList();
    ui.State().SelectItem(list, ui.State().pending.m_nBlock[list] * kItemsOfBlock + index + 1);
}

void SelectNeighbour(TrackerInterface& ui, int index) {
    const ListKind list = ui.CurrentList();
    ui.State().SelectItem(list, ui.State().pending.m_nSelected[list] + (index == 0 ? -1 : 1));
}

// Up, down, left, right. With Alt held they select: the first move after the press begins, the others extend.
void MoveCursor(TrackerInterface& ui, int index) {
    TrackerState& state = ui.State();
    const bool selecting = ui.AltHeld();
    if (selecting) (ui.TakeAltFresh() ? state.m_bSelStart : state.m_bSelExtend) = true;
    switch (index) {
    case 0: selecting ? void(++state.m_nRowUpsPending) : state.MoveRow(-1, true); break;
    case 1: selecting ? void(++state.m_nRowDownsPending) : state.MoveRow(1, true); break;
    case 2: selecting ? state.PrevTrack(false) : state.CursorLeft(); break;
    default: selecting ? state.NextTrack() : state.CursorRight(); break;
    }
}

void ChangeOctave(TrackerInterface& ui, int index) {
    int& offset = ui.State().m_nOctaveOffset;
    offset = std::clamp(offset + (index == 0 ? -kSemitonesOfOctave : kSemitonesOfOctave), kLowestOctave, kHighestOctave);
}

void ReadMacro(TrackerInterface& ui, int macro) {
    ui.State().ReadMacro(macro);
    ui.Host().SaveEnvironment();
}

// Track, pattern and block, down and up, first of the selected instrument alone and then of all.
void Transpose(TrackerInterface& ui, int index) {
    constexpr Scope kScopes[] = {Scope::Track, Scope::Pattern, Scope::Block};
    constexpr int kRows = 2 * static_cast<int>(std::size(kScopes));
    ui.State().Transpose(kScopes[index % kRows / 2], index < kRows, index % 2 == 0 ? -1 : 1);
}

constexpr int kMainScreen = -1, kZapQuestion = -2;

template <auto& menus>
void ShowMenu(TrackerInterface& ui, int index) {
    const int slot = menus[index];
    if (slot == kZapQuestion) return ui.AskForZap();
    if (slot != kMainScreen) return ui.ToggleScreen(slot);
    ui.ShowScreen(kScreenPattern);
    ui.ShowScreen(kScreenLeftOptions);
}

constexpr int kMenus[] = {kScreenAdvancedEdit, kScreenAbout, kScreenConfig, kScreenDiskOp, kScreenHelp,
                          kScreenInstrumentEditor, kScreenInstrumentExtended, kScreenPattern, kScreenSampleEditor,
                          kMainScreen};
constexpr int kMoreMenus[] = {kScreenGame, kScreenVisual, kScreenSongInfo, kZapQuestion, kScreenMultiFx,
                              kScreenInstrumentFilter, kScreenMixer, kScreenTrackEditor, kScreenSynth};

template <int firstAction>
void AskSampleEditor(TrackerInterface& ui, int index) {
    ui.GetScreen(kScreenSampleEditor).OnAction(firstAction + index);
}

void TakeTheKey(TrackerInterface&, int) {}

// In the order in which a key is tried.
constexpr KeyEffect kEffects[] = {
    {0, 0, Play<kPlayWholeSong>},
    {1, 1, Play<kPlayPattern>},
    {2, 2, Edit<&TrackerState::StopOrRecord>},
    {3, 4, [](TrackerInterface& ui, int i) { ui.State().MoveRow(i == 0 ? -kPage : kPage, false); }},
    {5, 6, [](TrackerInterface& ui, int i) { ui.State().SetRow(i == 0 ? 0 : ui.State().PatternRows() - 1); }},
    {7, 7, Edit<&TrackerState::NextTrack>},
    {8, 8, [](TrackerInterface& ui, int) { ui.State().PrevTrack(true); }},
    {9, 9, Edit<&TrackerState::DeleteAtCursor>, InEditMode},
    {10, 10, Edit<&TrackerState::InsertCell>, InEditMode},
    {11, 11, Edit<&TrackerState::DeleteBack>, InEditMode},
    {12, 20, EditOneOf<kClipboardOperations>},
    {21, 27, [](TrackerInterface& ui, int i) { ui.State().m_nOctaveOffset = kLowestOctave + kSemitonesOfOctave * i; }},
    {28, 29, [](TrackerInterface& ui, int i) { ui.State().ChangeCursorAdd(SignOf(i)); }},
    {30, 30, Edit<&TrackerState::EnterNoteOff>, InEditMode},
    {31, 32, [](TrackerInterface& ui, int i) { ui.State().ChangePosition(SignOf(i)); }},
    {33, 34, [](TrackerInterface& ui, int i) { ui.State().ChangePatternAtPosition(SignOf(i)); }},
    {35, 38, [](TrackerInterface& ui, int i) { ui.State().SetBlock(ui.CurrentList(), i); }},
    {40, 47, SelectItemOfBlock},
    {48, 48, AskToDeleteItem, HasListItem},
    {49, 49, AskToDeleteSample, HasSample},
    {50, 51, SelectNeighbour},
    {52, 52, Edit<&TrackerState::ToggleSolo>},
    {114, 114, Edit<&TrackerState::ToggleSoloChannel>},
    {53, 53, Play<kPlayFromHere>},
    {54, 54, Edit<&TrackerState::PlayCell>, OnNoteColumn},
    {55, 55, Edit<&TrackerState::PlayRow>},
    {94, 97, MoveCursor, nullptr, true},
    {98, 113, [](TrackerInterface& ui, int i) { ui.State().EnterDigit(i); }, OnDataColumn},
    {115, 118, [](TrackerInterface& ui, int i) { ui.State().SetRow(kPage * i); }},
    {183, 189, AskSampleEditor<183>, [](TrackerInterface& ui) { return ui.IsVisible(kScreenSampleEditor); }},   // some share a key with the next
    {119, 134, [](TrackerInterface& ui, int i) { ui.State().JumpToTrack(i); }},
    {135, 135, [](TrackerInterface& ui, int) { ui.State().ClearAtCursor(true, true, true); }, InEditMode},
    {136, 136, [](TrackerInterface& ui, int) { ui.State().ClearAtCursor(false, true, true); }, InEditMode},
    {137, 137, [](TrackerInterface& ui, int) { ui.State().ClearAtCursor(false, false, true); }, InEditMode},
    {138, 138, Edit<&TrackerState::InsertLine>, InEditMode},
    {139, 139, Edit<&TrackerState::DeleteLine>, InEditMode},
    {140, 140, Play<kPlayPattern, true>},
    {141, 150, ShowMenu<kMenus>},
    {201, 209, ShowMenu<kMoreMenus>},
    {151, 160, [](TrackerInterface& ui, int i) { ui.State().WriteMacro(i); }, InEditMode},
    {161, 170, ReadMacro},
    {171, 182, Transpose},
    {190, 192, TakeTheKey},
    {193, 194, ChangeOctave},
    {195, 195, Play<kPlayPattern | kPlayFromHere>},
    {196, 199, [](TrackerInterface& ui, int i) { ui.State().SetBlock(kListInstruments, 4 + i); }},
    {200, 200, [](TrackerInterface& ui, int) { ui.State().ToggleBank(kListInstruments); }},
};

}  // namespace

int PerformKeyAction(TrackerInterface& ui, int key) {
    for (const KeyEffect& effect : kEffects)
        for (int action = effect.first; action <= effect.last; ++action) {
            if (!ui.MatchAction(key, action, !effect.anyModifiers)) continue;
            if (effect.allowed && !effect.allowed(ui)) continue;
            effect.perform(ui, action - effect.first);
            return action;
        }
    return -1;
}

}  // namespace vonta
