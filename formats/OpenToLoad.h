// The first step of a loader that is given a path.
#pragma once

#include <string>

#include "formats/Loaders.h"
#include "formats/streams/FileStream.h"

namespace vonta {

inline bool OpenToLoad(DiskStream& stream, const std::string& path, LoadReport& report) {
    if (stream.Open(path, "rb")) return true;
    report.Fail("%s", stream.Error().c_str());
    return false;
}

}  // namespace vonta
