// Reads a module of 31 instruments.
#pragma once

#include "formats/Loaders.h"

namespace vonta {

class LoaderMOD final : public ModuleLoader {
public:
    std::unique_ptr<Song> Load(FileStream& stream, LoadReport& report) override;
    bool Check(FileStream& stream) override;
};

}  // namespace vonta
