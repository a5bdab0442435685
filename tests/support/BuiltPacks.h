// The packs that this build has made, in VONTA_DATA_DIR.
#pragma once

#include <memory>
#include <string>

#include "interface/skin/Skin.h"

namespace vonta {

inline ResourcePacks OpenBuiltPacks(const std::string& data = VONTA_DATA_DIR) {
    const std::string skin = data + "/Skins/" + kDefaultSkinName;
    ResourcePacks packs;
    packs.m_pDataPack = std::make_unique<PackFile>(data + "/Vonta.dat");
    packs.m_pDefaultSkin = std::make_unique<PackFile>(skin);
    packs.m_pSkin = std::make_unique<PackFile>(skin);
    packs.m_nSkinVersion = GetSkinVersion(skin);
    return packs;
}

}  // namespace vonta
