#include "interface/screens/MainScreen.h"

#include <algorithm>

#include "interface/layout/MainLayout.h"
#include "interface/TrackerInterface.h"
#include "interface/view/ListItems.h"
#include "interface/widgets/Formatted.h"
#include "platform/Shared.h"

namespace vonta {
namespace {

using Self = MainScreen;

constexpr int kLastSampleScroll = 251;
constexpr int kBankBit = 8;
constexpr int kNumberX = 5;                      // of a row, from the left edge of its recess
constexpr int kInkAboveCentre = 1;               // a row's text stands one pixel higher than its cell
constexpr float kRainbowWidth = 0.0055555557f;   // of one pixel of a row

constexpr ControlRow<Self> kRows[] = {
    {kMainPlay, Press<&Self::OnPlay>, 0, kOnRelease, &Self::IsPlaying},
    {kMainRecord, Press<&Self::OnRecord>, 0, kOnRelease, &Self::IsRecording},
    {kMainSolo, Press<&Self::OnSolo>, 0, kOnRelease, &Self::IsSolo},
    {kMainSoloChannel, Press<&Self::OnSoloChannel>, 0, kOnRelease, &Self::IsSoloChannel},
    {kMainPanic, Press<&Self::OnPanic>},
    {kMainColours, Press<&Self::OnColours>, 0, kOnRelease, &Self::ShowsColours},
    {kMainWindowMode, Press<&Self::OnWindowMode>},
    {kMainBank, Press<&Self::OnBank>, 0, kOnRelease, &Self::IsBank},
    {kMainBlock, Press<&Self::OnBlock>, 0, kOnRelease, &Self::IsBlock, kListBlocks},
    {kMainMute, Press<&Self::OnMute>, 0, kOnRelease, &Self::IsMuted, kItemRows},
    {kMainSampleUp, Press<&Self::OnScrollSamples>, -1, kRepeating},
    {kMainSampleDown, Press<&Self::OnScrollSamples>, 1, kRepeating},
};

const LayoutItem& Item(int id) { return ItemOf(kMainLayout, id); }

int RowAt(const ControlRecord& record, int rows) { return std::clamp(record.y / kListRowHeight, 0, rows - 1); }
// Where the press began: a drag does not change the row that it works on.
int PressedRow(const ControlRecord& record, int rows) {
    return std::clamp((record.y - record.dragY) / kListRowHeight, 0, rows - 1);
}

}  // namespace

int MainScreen::ItemOfRow(int row) const {
    return State().frame.m_nBlock[static_cast<std::size_t>(Ui().CurrentList())] * kItemsOfBlock + row + 1;
}

int MainScreen::SampleOfRow(int row) const { return std::min(State().frame.m_nListScroll + row, kMaxSamples - 1); }

void MainScreen::PaintBackground() { PaintLayout(kMainLayout); }

void MainScreen::PaintControls() {
    if (!HasPainted()) return;
    DeclareButtons(this, kMainLayout, kRows);
    PaintItems();
    PaintSamples();

    const LayoutItem& title = Item(kMainTitle);
    ControlRecord record;
    record.events = kOnRightPress;
    Regions().TextField(title.x, title.y, title.x + title.width - 1, title.y + title.height - 1, CurrentSong().title,
                        Bind<&MainScreen::OnTitle>(this), {}, record);
    Text().m_fontStd.PrintClipped(title.x + 4, title.y + 1, (title.width - 8) / 8, CurrentSong().title);

    constexpr const char* kListNames[kListKinds] = {"Instr", "Synth", "FX"};
    const LayoutItem& name = Item(kMainListName);
    Text().m_fontStd.Print(name.x + 4, name.y, kListNames[Ui().CurrentList()]);
    const LayoutItem& octave = Item(kMainOctave);
    Text().m_fontStd.Print(octave.x + 4, octave.y, Formatted("%+4i", State().m_nOctaveOffset / 12));
}

void MainScreen::PaintItems() {
    for (int row = 0; row < kItemRows; ++row) PaintItem(row);
    const LayoutItem& items = Item(kMainItems);
    ControlRecord record;
    record.events = kOnLeftPress | kOnLeftHeld | kOnRightPress;
    record.useTicks = false;                     // the colour follows the mouse
    Regions().AddRegion(items.x + kNameMargin, items.y, items.x + items.width - 1, items.y + items.height - 1,
                        Bind<&MainScreen::OnItem>(this), {}, record);
    const LayoutItem& sources = Item(kMainSources);
    record.events = kOnLeftPress;
    Regions().AddRegion(sources.x, sources.y, sources.x + sources.width - 1, sources.y + sources.height - 1,
                        Bind<&MainScreen::OnSource>(this), {}, record);
}

void MainScreen::PaintItem(int row) {
    const ListKind list = Ui().CurrentList();
    const int item = ItemOfRow(row);
    if (item > kListItems[static_cast<std::size_t>(list)]) return;
    if (item == State().frame.m_nSelected[static_cast<std::size_t>(list)]) PaintMark(kMainItems, row);
    if (list == kListInstruments && item == State().frame.m_nSourceInstrument) PaintMark(kMainSources, row);
    const LayoutItem& items = Item(kMainItems);
    const int y = items.y + row * kListRowHeight - kInkAboveCentre;
    Text().m_fontStd.Print(Item(kMainSources).x + kNumberX, y, Formatted("%02X", item));
    PrintName(items, y, NameOfItem(State(), list, item),
              list == kListInstruments ? ColourOf(item) : Pictures().Colours().m_colText);
}

std::uint32_t MainScreen::ColourOf(int item) const {
    const Instrument* instrument = CurrentSong().GetInstrument(item - 1);
    if (!instrument || !Settings().Has(kShowInstrColors)) return Pictures().Colours().m_colText;
    const std::uint32_t rgb = Load(instrument->color);
    return Surfaces().PackVisible(static_cast<std::uint8_t>(rgb >> 16), static_cast<std::uint8_t>(rgb >> 8),
                                  static_cast<std::uint8_t>(rgb));
}

void MainScreen::PaintSamples() {
    const LayoutItem& samples = Item(kMainSamples);
    const LayoutItem& sources = Item(kMainSampleSources);
    const Instrument* instrument = State().SelectedInstrument();
    for (int row = 0; row < kSampleRows; ++row) {
        const int sample = SampleOfRow(row), y = samples.y + row * kListRowHeight - kInkAboveCentre;
        if (sample == State().frame.m_nSample) PaintMark(kMainSamples, row);
        if (sample == State().frame.m_nSourceSample) PaintMark(kMainSampleSources, row);
        Text().m_fontStd.Print(sources.x + kNumberX, y, Formatted("%02X", sample));
        const Sample* object = instrument ? instrument->GetSample(sample) : nullptr;
        if (object) PrintName(samples, y, object->name, Pictures().Colours().m_colText);
    }
    ControlRecord record;
    record.events = kOnLeftPress | kOnRightPress;
    Regions().AddRegion(samples.x + kNameMargin, samples.y, samples.x + samples.width - 1, samples.y + samples.height - 1,
                        Bind<&MainScreen::OnSample>(this), {}, record);
    record.events = kOnLeftPress;
    Regions().AddRegion(sources.x, sources.y, sources.x + sources.width - 1, sources.y + sources.height - 1,
                        Bind<&MainScreen::OnSampleSource>(this), {}, record);
    const LayoutItem& scroll = Item(kMainSampleScroll);
    Regions().VSlider({scroll.x, scroll.y, scroll.x + scroll.width - 1, scroll.y + scroll.height - 1,
                       kLastSampleScroll + 1, 0, State().frame.m_nListScroll, false},
                      Bind<&MainScreen::OnSampleSlider>(this), Bind<&MainScreen::OnSampleSlider>(this), Look());
}

void MainScreen::PaintMark(int list, int row) {
    if (!Regions().IsBlitMode()) return;
    const LayoutItem& recess = Item(list);
    const int y = recess.y + row * kListRowHeight;
    const int height = std::min(kListRowHeight, recess.y + recess.height - y);
    Surfaces().BlitRect(recess.x, y, Look().originX, Look().originY, recess.width, height,
                        static_cast<int>(Look().surface), false);
}

// A longer name in the narrower letters.
void MainScreen::PrintName(const LayoutItem& recess, int y, const std::string& name, std::uint32_t colour) {
    const int width = recess.width - kNameMargin;
    const Font& wide = Text().m_fontStd;
    const Font& font = wide.WidthOf(name) <= width ? wide : Text().m_fontSmall;
    font.PrintClipped(recess.x + kNameMargin, y, width / std::max(font.Advance(), 1), name, colour);
}

void MainScreen::OnItem(ControlRecord& record) {
    const ListKind list = Ui().CurrentList();
    const int item = ItemOfRow(PressedRow(record, kItemRows));
    if (record.rightPressed) {
        if (list == kListInstruments) EditInstrumentName(item - 1);
        return;
    }
    if (record.leftPressed) State().SelectItem(list, item);
    if (list == kListInstruments && Ui().ShiftHeld())
        State().SetInstrumentColour(item - 1, RainbowColour(static_cast<float>(record.x) * kRainbowWidth));
}

void MainScreen::OnSource(ControlRecord& record) {
    if (Ui().CurrentList() != kListInstruments) return;
    const int item = ItemOfRow(RowAt(record, kItemRows));
    if (!Ui().ShiftHeld()) State().pending.m_nSourceInstrument = item;
    else State().SetInstrumentColour(item - 1, kPlainInstrument);
}

void MainScreen::OnSample(ControlRecord& record) {
    const int sample = SampleOfRow(RowAt(record, kSampleRows));
    const int instrument = State().pending.m_nSelected[kListInstruments] - 1;
    if (record.rightPressed) EditSampleName(instrument, sample);
    else State().pending.m_nSample = sample;
}

// A name makes what it names.
void MainScreen::EditInstrumentName(int instrument) {
    Place at = State().Here();
    at.instrument = instrument;
    State().EnsureInstrument(instrument);
    Ui().StartTextEdit(kStepInstrumentName, at, InstrumentField(instrument, &Instrument::name));
}

void MainScreen::EditSampleName(int instrument, int sample) {
    Place at = State().Here();
    at.instrument = instrument;
    at.sample = sample;
    State().EnsureSample(instrument, sample);
    Ui().StartTextEdit(kStepSampleName, at, SampleField(instrument, sample, &Sample::name));
}

void MainScreen::OnSampleSource(ControlRecord& record) {
    State().pending.m_nSourceSample = SampleOfRow(RowAt(record, kSampleRows));
}

void MainScreen::OnScrollSamples(ControlRecord& record) {
    int& scroll = State().pending.m_nListScroll;
    scroll = std::clamp(scroll + record.param, 0, kLastSampleScroll);
}

void MainScreen::OnSampleSlider(ControlRecord& record) {
    const float place = std::clamp(record.relY, 0.0f, 1.0f);
    State().pending.m_nListScroll = static_cast<int>(place * static_cast<float>(kLastSampleScroll));
}

void MainScreen::OnTitle(ControlRecord&) {
    Ui().StartTextEdit(kStepTitle, State().Here(), SongField(&Song::title));
}

void MainScreen::OnPlay(ControlRecord&) {
    if (Player().IsPlaying()) Player().Stop(0, 1);
    else Player().Play(0);
}

void MainScreen::OnRecord(ControlRecord&) { State().pending.m_bEditMode = !State().pending.m_bEditMode; }
void MainScreen::OnSolo(ControlRecord&) { State().ToggleSolo(); }
void MainScreen::OnSoloChannel(ControlRecord&) { State().ToggleSoloChannel(); }
void MainScreen::OnPanic(ControlRecord&) { Player().Panic(); }
void MainScreen::OnColours(ControlRecord&) { Settings().flags ^= kShowInstrColors; }

void MainScreen::OnWindowMode(ControlRecord&) {
    Ui().ForgetKeys();                           // the device is let go: no release of a held key will come
    Ui().Host().RequestVideoRestart();
}

void MainScreen::OnBank(ControlRecord&) { State().ToggleBank(Ui().CurrentList()); }
void MainScreen::OnBlock(ControlRecord& record) { State().SetBlock(Ui().CurrentList(), record.param); }
void MainScreen::OnMute(ControlRecord& record) { ToggleItemMute(State(), Ui().CurrentList(), ItemOfRow(record.param)); }

bool MainScreen::IsPlaying(std::int32_t) const { return Player().IsPlaying(); }
bool MainScreen::IsRecording(std::int32_t) const { return State().frame.m_bEditMode; }
bool MainScreen::IsSolo(std::int32_t) const { return State().m_bSolo; }
bool MainScreen::IsSoloChannel(std::int32_t) const { return State().m_bSoloChannel; }
bool MainScreen::ShowsColours(std::int32_t) const { return Settings().Has(kShowInstrColors); }
bool MainScreen::IsMuted(std::int32_t row) const { return IsItemMuted(State(), Ui().CurrentList(), ItemOfRow(row)); }

bool MainScreen::IsBank(std::int32_t) const {
    return State().frame.m_nBlock[static_cast<std::size_t>(Ui().CurrentList())] & kBankBit;
}

bool MainScreen::IsBlock(std::int32_t block) const {
    return (State().frame.m_nBlock[static_cast<std::size_t>(Ui().CurrentList())] & ~kBankBit) == block;
}

}  // namespace vonta
