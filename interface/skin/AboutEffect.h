// The data of the About screen's picture: the sizes that the screen and the program that writes the data agree on.
//
// The table says for each pixel of the picture, the top row first, three bytes: u, v and light. A frame at time t shows
// the texture's pixel at (u + t, v + t'), both modulo kAboutTextureSize, its colour times light / 255. Over it lies the
// picture "aboutgfx" of the same size, whose clear pixels let the effect show.
#pragma once

namespace vonta {

constexpr int kAboutWidth = 236, kAboutHeight = 204;           // pixels
constexpr int kAboutTextureSize = 256;                         // pixels, wide and high; blue, green, red of each
constexpr int kAboutTableBytes = kAboutWidth * kAboutHeight * 3;
constexpr int kAboutTextureBytes = kAboutTextureSize * kAboutTextureSize * 3;

}  // namespace vonta
