// Extended Modules. What the song has no place for is dropped and told in the report; so is what a short file lacks
// behind its patterns. A file that is cut in its header or its patterns is refused.
#pragma once

#include "formats/Loaders.h"

namespace vonta {

class LoaderXM final : public ModuleLoader {
public:
    std::unique_ptr<Song> Load(FileStream& stream, LoadReport& report) override;
    bool Check(FileStream& stream) override;
};

}  // namespace vonta
