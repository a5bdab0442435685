#include "interface/screens/QuestionScreen.h"

#include <algorithm>
#include <string>
#include <vector>

#include "interface/screens/DiskOpScreen.h"
#include "interface/screens/ScrolledText.h"
#include "interface/TrackerInterface.h"
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
constexpr int kMaxLines = 3;
constexpr int kPlainRow = 4;                     // of the dialog's picture, below its edge: nothing is drawn there
constexpr int kButtonTextY = 2;

}  // namespace

const ScreenLayout& QuestionScreen::Layout() const {
    switch (Ui().Mode()) {
    case DialogMode::Zap: return kZapLayout;
    case DialogMode::Save: return kSaveLayout;
    default: return kDialogLayout;
    }
}

void QuestionScreen::PaintBackground() { PaintLayout(Layout()); }

void QuestionScreen::PaintControls() {
    if (!HasPainted()) return;
    switch (Ui().Mode()) {
    case DialogMode::Zap: DeclareButtons(this, kZapLayout, kZapRows, kZapLayout.x, kZapLayout.y); break;
    case DialogMode::Save: PaintSave(); break;
    default:
        PaintText();
        if (Ui().IsTelling()) PaintOnlyAnswer();
        else PaintAnswers();
    }
}

void QuestionScreen::PaintAnswers() {
    const auto at = [](int id) { return MovedBy(ItemOf(kDialogLayout, id), kDialogLayout.x, kDialogLayout.y); };
    PaintAnswer(at(kDialogYes), Bind<&QuestionScreen::OnYes>(this), Look(), "Yes");
    PaintAnswer(at(kDialogNo), Bind<&QuestionScreen::OnNo>(this), Look(), "No");
}

void QuestionScreen::PaintAnswer(const LayoutItem& item, ControlCallback onClick, const PressedLook& look,
                                 const char* caption) {
    Regions().Button(item, onClick, look);
    const Font& font = Text().m_fontSmall;
    font.Print(item.x + (item.width - font.WidthOf(caption)) / 2, item.y + kButtonTextY, caption);
}

// There is nothing to choose: the picture's two buttons give way to one in the middle.
void QuestionScreen::PaintOnlyAnswer() {
    const LayoutItem& yes = ItemOf(kDialogLayout, kDialogYes);
    const LayoutItem& no = ItemOf(kDialogLayout, kDialogNo);
    const int left = kDialogLayout.x + yes.x, top = kDialogLayout.y + yes.y;
    const int middle = kDialogLayout.x + (kDialogLayout.width - yes.width) / 2;
    PressedLook look = Look();
    look.originX += middle - left;
    if (Regions().IsBlitMode()) {
        const int picture = Pictures().LoadSkinBitmap(kDialogLayout.bitmap);
        Surfaces().BlitRect(left, top, Look().originX, Look().originY + yes.y - kPlainRow, no.x + no.width - yes.x,
                            yes.height, picture, false);
        Surfaces().BlitRect(middle, top, look.originX, look.originY, yes.width, yes.height, picture, false);
    }
    PaintAnswer(MovedBy(yes, kDialogLayout.x + middle - left, kDialogLayout.y), Bind<&QuestionScreen::OnYes>(this), look, "OK");
}

// Texts that begin with blanks stand where these put them, others are centred.
void QuestionScreen::PaintText() {
    const Font& font = Text().m_fontStd;
    const int width = kDialogLayout.width - 2 * kTextX;
    const std::string& text = Ui().QuestionText();
    std::vector<std::string> lines = BreakLines(text, width / std::max(font.Advance(), 1));
    if (static_cast<int>(lines.size()) > kMaxLines) lines.resize(kMaxLines);
    int y = kDialogLayout.y + kTextY - (static_cast<int>(lines.size()) - 1) * kLineHeight / 2;
    for (const std::string& line : lines) {
        const int indent = text.starts_with(' ') ? 0 : (width - font.WidthOf(line)) / 2;
        font.Print(kDialogLayout.x + kTextX + std::max(indent, 0), y, line);
        y += kLineHeight;
    }
}

void QuestionScreen::PaintSave() {
    DeclareButtons(this, kSaveLayout, kSaveRows, kSaveLayout.x, kSaveLayout.y);
    const LayoutItem name = MovedBy(ItemOf(kSaveLayout, kSaveName), kSaveLayout.x, kSaveLayout.y);
    ControlRecord record;
    record.events = kOnLeftPress | kOnRightPress;
    Regions().TextField(name.x, name.y, name.x + name.width - 1, name.y + name.height - 1, State().m_szSongName,
                        Bind<&QuestionScreen::OnName>(this), {}, record);
    Text().m_fontStd.PrintClipped(name.x + 4, name.y, (name.width - 8) / 8, State().m_szSongName);
    const LayoutItem rate = MovedBy(ItemOf(kSaveLayout, kSaveRate), kSaveLayout.x, kSaveLayout.y);
    Text().m_fontStd.Print(rate.x + 4, rate.y, Formatted("%6i", Ui().DiskOp().Choice().m_nMixRate));
}

void QuestionScreen::OnYes(ControlRecord&) { Ui().AnswerYes(); }
void QuestionScreen::OnNo(ControlRecord&) { Ui().AnswerNo(); }
void QuestionScreen::OnChoice(ControlRecord& record) { Ui().AnswerChoice(record.param); }

void QuestionScreen::OnName(ControlRecord&) {
    State().m_szSongName = WithoutSuffix(State().m_szSongName, FileKind::Song);
    Ui().StartTextEdit(State().m_szSongName);
}

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
