#include "app/pack/PackFile.h"

namespace vonta {

void PackFile::Close() {
    file_.reset();
    entries_.clear();
}

}  // namespace vonta
