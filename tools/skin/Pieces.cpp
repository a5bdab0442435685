#include "tools/skin/Pieces.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>

#include "interface/layout/PatternPictures.h"
#include "tools/skin/Painters.h"

namespace vonta::skin {
namespace {

constexpr int kWidth = 800, kRowHeight = 13;

struct Piece;
using Painter = void (*)(Canvas&, const FontSet&, const Piece&);

struct Piece {
    int number;
    int width, height;
    bool alpha;
    Painter paint;
    Colour colour = 0;
    std::string_view text = {};
};

// --- Lines and rows of the pattern -----------------------------------------------------------------------------

void PaintUprightLine(Canvas& canvas, const FontSet&, const Piece& piece) {
    canvas.Fill(0, 0, piece.width - 1, piece.height, kWellShade);
    canvas.Fill(piece.width - 1, 0, 1, piece.height, piece.colour);
}

void PaintLevelLine(Canvas& canvas, const FontSet&, const Piece& piece) {
    canvas.Fill(0, 0, piece.width, 1, kPanelDark);
    canvas.Fill(0, 1, piece.width, 1, piece.colour);
}

void PaintRow(Canvas& canvas, const FontSet&, const Piece& piece) {
    canvas.Fill(0, 0, piece.width, piece.height, piece.colour);
}

void PaintCursorRow(Canvas& canvas, const FontSet&, const Piece& piece) {
    canvas.Gradient(0, 0, piece.width, piece.height, piece.colour, Mix(piece.colour, kRow, 0.2));
    canvas.Fill(0, 0, piece.width, 1, kCyanDark);
    canvas.Fill(0, piece.height - 1, piece.width, 1, kCyanDark);
}

// The program cuts the block to the width of the column, so that it has no edges at its sides.
void PaintCursor(Canvas& canvas, const FontSet&, const Piece& piece) {
    canvas.Gradient(0, 0, piece.width, piece.height, kAmber, Mix(kAmber, kAmberDark, 0.4));
    canvas.Fill(0, 0, piece.width, 1, kAmberLight);
    canvas.Fill(0, piece.height - 1, piece.width, 1, kAmberLight);
}

void PaintRecording(Canvas& canvas, const FontSet&, const Piece& piece) {
    canvas.Fill(0, 1, piece.width, 4, kRed);
    canvas.Fill(0, 2, piece.width, 1, Mix(kRed, 0xFFFFFF, 0.35));
}

// --- Marks ------------------------------------------------------------------------------------------------------

void PaintLamp(Canvas& canvas, const FontSet&, const Piece& piece) {
    canvas.Fill(0, 1, piece.width, piece.height - 2, kWellShade);
    canvas.Fill(1, 0, piece.width - 2, piece.height, kWellShade);
    canvas.Fill(1, 1, piece.width - 2, piece.height - 2, piece.colour);
    canvas.Fill(1, 1, piece.width - 2, 1, Mix(piece.colour, 0xFFFFFF, 0.4));
}

// A channel that takes notes in turn: where there is no room the lamp stands alone. Which is next shows an arrow.
void PaintMark(Canvas& canvas, const FontSet&, const Piece& piece) {
    constexpr int kLampWidth = 6, kLampHeight = 5, kArrow = 8;
    canvas.Fill(0, 0, kLampWidth, kLampHeight, kWellShade);
    canvas.Fill(1, 1, kLampWidth - 2, kLampHeight - 2, piece.colour);
    if (piece.number != kPictureNextMark) return;
    for (int i = 0; i < 3; ++i) canvas.Fill(kArrow + i, i, 1, kLampHeight - 2 * i, piece.colour);
}

// The cell of a muted channel: a wave that lies flat. It is shown narrower by leaving out columns, so all are the same.
void PaintMutedCell(Canvas& canvas, const FontSet&, const Piece& piece) {
    const int middle = piece.height / 2 - 1;
    canvas.Gradient(0, 0, piece.width, piece.height, Mix(kWell, kWellShade, 0.5), kWell);
    canvas.Fill(0, middle - 1, piece.width, 4, kWellShade);
    canvas.Fill(0, middle, piece.width, 2, piece.colour);
}

// A flag at the head or the foot of a line that it stands on; the number tells which.
constexpr int kLoopStart = 45;
void PaintLoopFlag(Canvas& canvas, const FontSet&, const Piece& piece) {
    const bool start = piece.number == kLoopStart;
    const int mast = piece.width / 2, flag = 11;
    canvas.Fill(mast, 0, 1, piece.height, piece.colour);
    for (int i = 0; i < flag; ++i) {
        const int length = (flag - std::abs(2 * i - flag + 1)) / 2 + 3;
        const int y = start ? i : piece.height - flag + i;
        canvas.Fill(start ? mast + 1 : mast - length, y, length, 1, piece.colour);
    }
}

void PaintEnvelopeMark(Canvas& canvas, const FontSet&, const Piece& piece) {
    const int middle = piece.width / 2;
    for (int y = 5; y < piece.height; y += 3) canvas.Fill(middle, y, 1, 2, piece.colour);
    for (int i = 0; i < 4; ++i) canvas.Fill(i, i, piece.width - 2 * i, 1, piece.colour);
}

void PaintPoint(Canvas& canvas, const FontSet&, const Piece& piece) {
    canvas.Fill(0, 0, piece.width, piece.height, kWellShade);
    canvas.Fill(1, 1, piece.width - 2, piece.height - 2, piece.colour);
}

void PaintBadge(Canvas& canvas, const FontSet& fonts, const Piece& piece) {
    canvas.Fill(1, 0, piece.width - 2, piece.height, piece.colour);
    canvas.Fill(0, 1, piece.width, piece.height - 2, piece.colour);
    canvas.Text(fonts[kMini], (piece.width - fonts[kMini].WidthOf(piece.text) + 1) / 2, -3, piece.text, kOnAmber);
}

// --- Piano ------------------------------------------------------------------------------------------------------

void PaintWhiteKey(Canvas& canvas, const FontSet&, const Piece& piece) {
    canvas.Gradient(0, 0, piece.width, piece.height, Mix(piece.colour, kBackdrop, 0.18), piece.colour);
    canvas.Fill(piece.width - 1, 0, 1, piece.height, kPanelDark);
    canvas.Fill(0, 0, 1, piece.height, Mix(piece.colour, 0xFFFFFF, 0.5));
}

void PaintBlackKey(Canvas& canvas, const FontSet&, const Piece& piece) {
    canvas.Fill(0, 0, piece.width, piece.height, kWellShade);
    canvas.Gradient(1, 0, piece.width - 2, piece.height - 2, piece.colour, Mix(piece.colour, 0xFFFFFF, 0.08));
    canvas.Fill(1, piece.height - 6, piece.width - 2, 1, Mix(piece.colour, 0xFFFFFF, 0.35));
}

// --- Controls ---------------------------------------------------------------------------------------------------

void PaintHandle(Canvas& canvas, const FontSet&, const Piece& piece) {
    canvas.Fill(0, 0, piece.width, piece.height, kPanel);
    PaintPlate(canvas, 0, 0, piece.width, piece.height, State::Normal);
    const int middle = piece.height / 2;
    canvas.Fill(3, middle - 1, piece.width - 6, 1, kFaceDark);
    canvas.Fill(3, middle, piece.width - 6, 1, piece.colour);
}

// Of sliders that lie and stand: the grip is a dot.
void PaintSliderKnob(Canvas& canvas, const FontSet&, const Piece& piece) {
    canvas.Fill(0, 0, piece.width, piece.height, kPanel);
    PaintPlate(canvas, 0, 0, piece.width, piece.height, State::Normal);
    const int x = piece.width / 2 - 2, y = piece.height / 2 - 2;
    canvas.Fill(x - 1, y - 1, 6, 6, kFaceDark);
    canvas.Fill(x, y, 4, 4, piece.colour);
    canvas.Fill(x, y, 4, 1, Mix(piece.colour, 0xFFFFFF, 0.4));
}

void PaintSmallPlate(Canvas& canvas, const FontSet& fonts, const Piece& piece) {
    canvas.Fill(0, 0, piece.width, piece.height, kPanel);
    const State state = piece.colour == kAmber ? State::Pressed : State::Normal;
    PaintItem(canvas, fonts, {Look::SmallButton, kNoControl, 0, 0, piece.width, piece.height, piece.text}, state, 0, 0);
}

constexpr Colour kIvory = 0xDCDAD2, kEbony = 0x22262B;

const Piece kPieces[] = {
    {45, 20, 20, true, PaintLoopFlag, kAmber},
    {46, 20, 20, true, PaintLoopFlag, kAmber},
    {50, 7, 112, true, PaintEnvelopeMark, kCyan},
    {51, 7, 112, true, PaintEnvelopeMark, kCyan},
    {52, 7, 112, true, PaintEnvelopeMark, kAmber},
    {53, 6, 6, false, PaintPoint, kAmberLight},
    {54, 6, 6, false, PaintPoint, kCyan},
    {56, 24, 16, false, PaintSmallPlate, kFace, ">"},
    {57, 24, 16, false, PaintSmallPlate, kAmber, ">"},
    {58, 24, 16, false, PaintSmallPlate, kFace, "vol"},
    {59, 24, 16, false, PaintSmallPlate, kAmber, "vol"},
    {kPictureMark, 14, 8, true, PaintMark, kCyanDark},
    {kPictureNextMark, 14, 8, true, PaintMark, kCyanLight},
    {kPictureIdle, 7, 8, true, PaintLamp, kPanelLight},
    {kPictureActive, 7, 8, true, PaintLamp, kAmber},
    {70, 22, 11, true, PaintBadge, kCyan, "SYN"},
    {71, 22, 11, true, PaintBadge, kAmber, "MIDI"},
    {kPictureMutedChannel, 336, 50, false, PaintMutedCell, Mix(kRed, kWell, 0.35)},
    {kPictureCellLine, 1, 56, false, PaintUprightLine, kGroupEdge},
    {kPictureLevelPeak, 2, 12, false, PaintRow, kAmberLight},
    {kPictureTrackLine, 2, 352, false, PaintUprightLine, kBarRow},
    {74, kWidth, 2, false, PaintLevelLine, kPanelLight},
    {kPictureBeatRow, kWidth, kRowHeight, false, PaintRow, kBeatRow},
    {kPictureCursorRow, kWidth, kRowHeight, false, PaintCursorRow, kCursorRow},
    {kPictureBarRow, kWidth, kRowHeight, false, PaintRow, kBarRow},
    {77, 10, 55, false, PaintBlackKey, kEbony},
    {78, 14, 88, false, PaintWhiteKey, kIvory},
    {79, 10, 55, false, PaintBlackKey, kAmberDark},
    {80, 14, 88, false, PaintWhiteKey, kAmber},
    {kPictureCursor, 84, kRowHeight, false, PaintCursor},
    {120, kWidth, 6, true, PaintRecording},
    {190, 16, 16, true, PaintSliderKnob, kCyan},
    {191, 20, 25, true, PaintHandle, kAmber},
    {192, 14, 10, true, PaintHandle, kCyan},
    {193, 10, 14, true, PaintHandle, kCyan},
};

constexpr double kPi = 3.14159265358979;

}  // namespace

std::optional<Picture> PaintPiece(const FontSet& fonts, int number) {
    const auto piece = std::find_if(std::begin(kPieces), std::end(kPieces),
                                    [&](const Piece& each) { return each.number == number; });
    if (piece == std::end(kPieces)) return std::nullopt;
    Picture picture{Canvas(piece->width, piece->height), piece->alpha};
    piece->paint(picture.canvas, fonts, *piece);
    return picture;
}

Picture PaintKnob(Colour colour, int position) {
    constexpr double kMiddle = 8, kFrom = 0.75 * kPi, kSpan = 1.5 * kPi, kRing = 6.6, kBody = 4.6;
    constexpr int kSize = 16, kLast = 63;
    Picture knob{Canvas(kSize, kSize), true};
    cairo_t* pen = knob.canvas.Pen();
    const auto disc = [&](double radius, Colour ink) {
        knob.canvas.Ink(ink);
        cairo_arc(pen, kMiddle, kMiddle, radius, 0, 2 * kPi);
        cairo_fill(pen);
    };
    disc(8, kPanel);
    cairo_set_line_width(pen, 2);
    const auto arc = [&](double from, double to, Colour ink) {
        knob.canvas.Ink(ink);
        cairo_arc(pen, kMiddle, kMiddle, kRing, from, to);
        cairo_stroke(pen);
    };
    const double angle = kFrom + kSpan * position / kLast;
    arc(kFrom, kFrom + kSpan, kWellShade);
    arc(kFrom, std::max(angle, kFrom + 0.12), colour);
    disc(kBody, kFaceLight);
    disc(kBody - 0.8, kFace);
    knob.canvas.Ink(kText);
    cairo_set_line_width(pen, 1.6);
    cairo_move_to(pen, kMiddle + std::cos(angle) * 1.2, kMiddle + std::sin(angle) * 1.2);
    cairo_line_to(pen, kMiddle + std::cos(angle) * 4.4, kMiddle + std::sin(angle) * 4.4);
    cairo_stroke(pen);
    return knob;
}

}  // namespace vonta::skin
