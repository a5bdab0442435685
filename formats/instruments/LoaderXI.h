// Extended Instruments: the records of an Extended Module's instrument behind a header of their own. A short file gives
// what it holds.
#pragma once

#include "formats/Loaders.h"

namespace vonta {

class LoaderXI final : public InstrumentLoader {
public:
    std::unique_ptr<Instrument> Load(const std::string& path, LoadReport& report) override;
    std::unique_ptr<Instrument> Load(FileStream& stream, LoadReport& report);
    bool Check(const std::string& path) override;
    bool Check(FileStream& stream);
};

}  // namespace vonta
