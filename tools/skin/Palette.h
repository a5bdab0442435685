// The colours of the skin, as 0xRRGGBB: slate for what is still, amber for what is active, cyan for what is selected.
#pragma once

#include <cstdint>

namespace vonta::skin {

using Colour = std::uint32_t;

constexpr Colour kBackdrop = 0x161A1F;       // between the panels
constexpr Colour kPanel = 0x262C34;
constexpr Colour kPanelLight = 0x3A434E;     // the edges that catch the light
constexpr Colour kPanelDark = 0x12151A;      // and those in the shade
constexpr Colour kGroupEdge = 0x3B4550;

constexpr Colour kWell = 0x14181D;           // where values and lists stand
constexpr Colour kWellShade = 0x0B0D10;
constexpr Colour kWellLight = 0x39424D;

constexpr Colour kFaceTop = 0x3D4854;        // of a button
constexpr Colour kFace = 0x353F4A;
constexpr Colour kFaceBottom = 0x2E3741;
constexpr Colour kFaceLight = 0x5A6877;
constexpr Colour kFaceDark = 0x1D2329;

constexpr Colour kAmber = 0xF0A840;          // active
constexpr Colour kAmberLight = 0xFFCB7A;
constexpr Colour kAmberDark = 0xA86A18;
constexpr Colour kAmberDeep = 0x6E4612;
constexpr Colour kOnAmber = 0x241605;        // captions on amber

constexpr Colour kCyan = 0x58C4DA;           // selected
constexpr Colour kCyanLight = 0x9BE4F2;
constexpr Colour kCyanDark = 0x2C7688;
constexpr Colour kCyanDeep = 0x1D4652;

constexpr Colour kRed = 0xE2604C;
constexpr Colour kGreen = 0x7CC46A;

constexpr Colour kCaption = 0xC9D1DA;
constexpr Colour kLabel = 0x94A2B1;
constexpr Colour kTitle = 0xF1E3C8;

// What the program prints and draws in.
constexpr Colour kText = 0xDDE4EB;
constexpr Colour kHighlight = 0xFFE3B4;
constexpr Colour kDim = 0xA4B3C3;
constexpr Colour kLines = 0x6FD3E3;
constexpr Colour kPoints = 0xFFB347;
constexpr Colour kSelection = 0x45E6FF;

// The pattern.
constexpr Colour kRow = kWell;
constexpr Colour kBeatRow = 0x1C2228;
constexpr Colour kBarRow = 0x262E36;
constexpr Colour kCursorRow = 0x2B4754;

}  // namespace vonta::skin
