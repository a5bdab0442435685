// What a song or an instrument holds and the native files have no place for: a line each, with how often it occurs.
#pragma once

#include "formats/Loaders.h"

namespace vonta {

void ReportNativeLosses(const Song& song, LoadReport& report);
void ReportNativeLosses(const Instrument& instrument, LoadReport& report);

}  // namespace vonta
