// The song that ships with the program: under two minutes, eighteen tracks, written in the tables of DemoSong.cpp.
#pragma once

#include <memory>

#include "song/Song.h"

namespace vonta {

std::unique_ptr<Song> ComposeDemoSong();

}  // namespace vonta
