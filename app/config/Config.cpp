#include "app/config/Config.h"

#include "app/config/ConfigText.h"

namespace vonta {

int Config::Load(const std::string& cfgName, const std::string& keybName) {
    return LoadConfigText(cfgName, *this) && LoadKeyTable(keybName, keyTable) ? 0 : 1;
}

int Config::Save(const std::string& cfgName, const std::string& keybName) const {
    return SaveConfigText(cfgName, *this) && SaveKeyTable(keybName, keyTable) ? 0 : 1;
}

}  // namespace vonta
