// Any file, taken as a mono wave of signed 8-bit values.
#pragma once

#include "formats/Loaders.h"

namespace vonta {

class LoaderRaw final : public SampleLoader {
public:
    std::unique_ptr<Sample> Load(const std::string& path, LoadReport& report) override;
    std::unique_ptr<Sample> Load(FileStream& stream, LoadReport& report);
    bool Check(const std::string& path) override;
};

}  // namespace vonta
