#include "interface/screens/QuestionScreen.h"

#include <algorithm>
#include <string>
#include <vector>

#include "interface/screens/DiskOpScreen.h"
#include "interface/screens/ScrolledText.h"
#include "interface/TrackerInterface.h"
#include "interface/video/Latin1.h"
#include "interface/widgets/Formatted.h"

namespace vonta {
namespace {

using Self = QuestionScreen;

constexpr ControlRow<Self> kZapRows[] = {
    {kZapSong, Press<&Self::OnChoice>, 0, kOnRelease, nullptr, kZapChoices},
};

constexpr std::int32_t Number(SaveFormat format) { return static_cast<std::int32_t>(format); }

constexpr ControlRow<Self> kSaveRows[] = {
    {kSaveNative, Press<&Self::OnFormat>, Number(SaveFormat::Native), kOnRelease, &Self::IsFormat},
    {kSaveWav, Press<&Self::OnFormat>, Number(SaveFormat::Wav), kOnRelease, &Self::IsFormat},
    {kSaveXm, Press<&Self::OnFormat>, Number(SaveFormat::Xm), kOnRelease, &Self::IsFormat},
    {kSaveMod, Press<&Self::OnFormat>, Number(SaveFormat::Mod), kOnRelease, &Self::IsFormat},
    {kSaveOther, Press<&Self::OnFormat>, Number(SaveFormat::Other)},
    {kSaveLossless, Press<&Self::OnCompress>, 0, kOnRelease, &Self::IsCompress},
    {kSaveVorbis, Press<&Self::OnCompress>, 1, kOnRelease, &Self::IsCompress},
    {kSaveBits8, Press<&Self::OnBits>, 8, kOnRelease, &Self::IsBits},
    {kSaveBits16, Press<&Self::OnBits>, 16, kOnRelease, &Self::IsBits},
    {kSaveBits24, Press<&Self::OnBits>, 24},
    {kSaveBits32, Press<&Self::OnBits>, 32, kOnRelease, &Self::IsBits},
    {kSaveRateDown, Press<&Self::OnRate>, -1, kRepeating},
    {kSaveRateUp, Press<&Self::OnRate>, 1, kRepeating},
    {kSaveByParts, Press<&Self::OnByParts>, 0, kOnRelease, &Self::IsByParts},
    {kSaveGo, Press<&Self::OnYes>},
    {kSaveCancel, Press<&Self::OnNo>},
};

constexpr int kUnofferedBits = 24;

constexpr int kTextX = 4, kTextY = 28, kLineHeight = 14;
constexpr int kHang = 2;                         // blanks before what continues a line of the report
constexpr int kPlainRow = 4;                     // of the dialog's picture, below its edge: nothing is drawn there
constexpr int kButtonTextY = 2;

}  // namespace

const ScreenLayout& QuestionScreen::Layout() const {
    switch (Ui().Mode()) {
    case DialogMode::Zap: return kZapLayout;
    case DialogMode::Save: return kSaveLayout;
    case DialogMode::Report: return kReportLayout;
    default: return kDialogLayout;
    }
}

void QuestionScreen::PaintBackground() { PaintLayout(Layout()); }

void QuestionScreen::PaintControls() {
    if (!HasPainted()) return;
    switch (Ui().Mode()) {
    case DialogMode::Zap: DeclareButtons(this, kZapLayout, kZapRows, kZapLayout.x, kZapLayout.y); break;
    case DialogMode::Save: PaintSave(); break;
    case DialogMode::Report: PaintReport(); break;
    default:
        PaintText();
        PaintAnswers();
    }
}

// Two stand where the picture has its buttons, any other number side by side in the middle.
LayoutItem QuestionScreen::PlaceOfAnswer(int index) const {
    const int count = static_cast<int>(Ui().Answers().size());
    if (count == 2) return ItemOf(kDialogLayout, index == 0 ? kDialogYes : kDialogNo);
    LayoutItem item = ItemOf(kDialogLayout, kDialogYes);
    const int gap = (kDialogLayout.width - count * item.width) / (count + 1);
    item.x = gap + index * (item.width + gap);
    return item;
}

void QuestionScreen::PaintAnswers() {
    const auto answers = Ui().Answers();
    if (Regions().IsBlitMode() && answers.size() != 2) PaintAnswerFaces();
    const Font& font = Text().m_fontSmall;
    for (int i = 0; i < static_cast<int>(answers.size()); ++i) {
        const LayoutItem place = PlaceOfAnswer(i), item = MovedBy(place, kDialogLayout.x, kDialogLayout.y);
        ControlRecord record;
        record.param = i;
        PressedLook look = Look();
        look.originX += place.x - ItemOf(kDialogLayout, kDialogYes).x;
        if (answers.size() == 2) look = Look();
        Regions().Button(item, Bind<&QuestionScreen::OnAnswer>(this), look, record);
        const char* caption = answers[static_cast<std::size_t>(i)].caption;
        const SkinColours& colours = Pictures().Colours();
        font.PrintColoured(item.x + (item.width - font.WidthOf(caption)) / 2, item.y + kButtonTextY,
                           i == Ui().DefaultAnswer() ? colours.m_colPoints : colours.m_colText, caption);
    }
}

// The picture's two buttons give way to as many as there are answers.
void QuestionScreen::PaintAnswerFaces() {
    const LayoutItem& yes = ItemOf(kDialogLayout, kDialogYes);
    const LayoutItem& no = ItemOf(kDialogLayout, kDialogNo);
    const int left = kDialogLayout.x + yes.x, top = kDialogLayout.y + yes.y;
    const int picture = Pictures().LoadSkinBitmap(kDialogLayout.bitmap);
    Surfaces().BlitRect(left, top, Look().originX, Look().originY + yes.y - kPlainRow, no.x + no.width - yes.x,
                        yes.height, picture, false);
    for (int i = 0; i < static_cast<int>(Ui().Answers().size()); ++i) {
        const int moved = PlaceOfAnswer(i).x - yes.x;
        Surfaces().BlitRect(left + moved, top, Look().originX + moved, Look().originY, yes.width, yes.height, picture, false);
    }
}

bool QuestionScreen::FitsDialog(const std::string& text) {
    return static_cast<int>(BreakLines(text, kDialogColumns).size()) <= kDialogLines;
}

// Lines that begin with blanks stand where these put them, others are centred.
void QuestionScreen::PaintText() {
    const Font& font = Text().m_fontStd;
    const int width = kDialogLayout.width - 2 * kTextX;
    std::vector<std::string> lines = BreakLines(Ui().QuestionText(), kDialogColumns);
    if (static_cast<int>(lines.size()) > kDialogLines) lines.resize(kDialogLines);
    int y = kDialogLayout.y + kTextY - (static_cast<int>(lines.size()) - 1) * kLineHeight / 2;
    for (const std::string& line : lines) {
        const int indent = line.starts_with(' ') ? 0 : (width - font.WidthOf(line)) / 2;
        font.Print(kDialogLayout.x + kTextX + std::max(indent, 0), y, line);
        y += kLineHeight;
    }
}

void QuestionScreen::SetReport(const std::vector<std::string>& lines) {
    const int columns = (ItemOf(kReportLayout, kReportText).width - 8) / 8;
    std::string text;
    for (const std::string& line : lines) {
        const char* before = "";
        for (const std::string& part : BreakLines(line, columns - kHang)) {
            text += before + part + '\n';
            before = "  ";
        }
    }
    report_.SetText(text, columns);
}

void QuestionScreen::PaintReport() {
    const auto at = [](int id) { return MovedBy(ItemOf(kReportLayout, id), kReportLayout.x, kReportLayout.y); };
    const LayoutItem heading = at(kReportHeading), recess = at(kReportText), up = at(kReportUp), down = at(kReportDown),
                     slider = at(kReportScroll);
    const int columns = (heading.width - 8) / 8;
    Text().m_fontStd.PrintClipped(heading.x + 4, heading.y, columns, Ui().QuestionText());
    report_.Paint(Text().m_fontStd, {recess, up, down, slider}, Regions(), Look());
    Regions().Button(at(kReportOk), Bind<&QuestionScreen::OnAnswer>(this), Look());
}

bool QuestionScreen::OnWheel(int notches) {
    report_.Scroll(-notches);
    return true;
}

void QuestionScreen::PaintSave() {
    DeclareButtons(this, kSaveLayout, kSaveRows, kSaveLayout.x, kSaveLayout.y);
    const auto at = [](int id) { return MovedBy(ItemOf(kSaveLayout, id), kSaveLayout.x, kSaveLayout.y); };
    PaintName(at(kSaveName));
    const LayoutItem suffix = at(kSaveSuffix), rate = at(kSaveRate);
    Text().m_fontStd.PrintClipped(suffix.x + 4, suffix.y, 4, SuffixOf(Ui().DiskOp().Choice().m_nSaveFormat),
                                  Pictures().Colours().m_colDim);
    Text().m_fontStd.Print(rate.x + 4, rate.y, Formatted("%6i", Ui().DiskOp().Choice().m_nMixRate));
}

// The end of a name that is longer than its field: there it is typed.
void QuestionScreen::PaintName(const LayoutItem& field) {
    const Font& font = Text().m_fontStd;
    std::string& name = State().m_szSongName;
    const int room = (field.width - 8) / 8, over = std::max(CountCharacters(name) - room, 0);
    const std::string shown = name.substr(BytesOf(name, over));
    if (Ui().IsTextSelected() && Regions().IsBlitMode())
        Surfaces().FillBack({field.x + 3, field.y + 1, font.WidthOf(shown) + 2, field.height - 2},
                            Surfaces().Dimmed(Pictures().Colours().m_colSelection, 6));
    ControlRecord record;
    record.events = kOnLeftPress | kOnRightPress;
    Regions().TextField(field.x, field.y, field.x + field.width - 1, field.y + field.height - 1, name,
                        Bind<&QuestionScreen::OnName>(this), {}, record);
    font.Print(field.x + 4, field.y, shown);
}

void QuestionScreen::OnAnswer(ControlRecord& record) { Ui().Answer(record.param); }
void QuestionScreen::OnYes(ControlRecord&) { Ui().AnswerYes(); }
void QuestionScreen::OnNo(ControlRecord&) { Ui().AnswerNo(); }
void QuestionScreen::OnChoice(ControlRecord& record) { Ui().AnswerChoice(record.param); }

void QuestionScreen::OnName(ControlRecord&) { Ui().StartTextEdit(State().m_szSongName); }

void QuestionScreen::OnFormat(ControlRecord& record) {
    const auto format = static_cast<SaveFormat>(record.param);
    if (format != SaveFormat::Other) Ui().DiskOp().Choice().m_nSaveFormat = format;
}

void QuestionScreen::OnCompress(ControlRecord& record) { Ui().DiskOp().Choice().m_bCompress = record.param != 0; }

void QuestionScreen::OnBits(ControlRecord& record) {
    if (record.param != kUnofferedBits) Ui().DiskOp().Choice().m_nMixBits = record.param;
}

void QuestionScreen::OnRate(ControlRecord& record) { Ui().DiskOp().Choice().StepRate(record.param); }

void QuestionScreen::OnByParts(ControlRecord&) {
    bool& byParts = Ui().DiskOp().Choice().m_bMixByParts;
    byParts = !byParts;
}

bool QuestionScreen::IsFormat(std::int32_t format) const { return Number(Ui().DiskOp().Choice().m_nSaveFormat) == format; }
bool QuestionScreen::IsCompress(std::int32_t compress) const { return Ui().DiskOp().Choice().m_bCompress == (compress != 0); }
bool QuestionScreen::IsBits(std::int32_t bits) const { return Ui().DiskOp().Choice().m_nMixBits == bits; }
bool QuestionScreen::IsByParts(std::int32_t) const { return Ui().DiskOp().Choice().m_bMixByParts; }

}  // namespace vonta
