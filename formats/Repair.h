// The self-check of what was loaded, with a line in report.repairs for what it had to bring inside its limits.
#pragma once

#include "formats/Loaders.h"

namespace vonta {

void Repair(Song& song, LoadReport& report);
void Repair(Instrument& instrument, LoadReport& report);

}  // namespace vonta
