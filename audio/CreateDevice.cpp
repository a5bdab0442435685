#include "audio/CreateDevice.h"

#include "audio/DrvASIO.h"
#include "audio/DrvDiskWritter.h"
#include "audio/DrvNoSound.h"

namespace vonta {

std::unique_ptr<DrvSound> CreateDevice(DeviceKind kind) {
    switch (kind) {
        case DeviceKind::NoSound: return std::make_unique<DrvNoSound>();
        case DeviceKind::DiskWritter: return std::make_unique<DrvDiskWritter>();
        case DeviceKind::Asio: return std::make_unique<DrvASIO>();
        default: return nullptr;
    }
}

}  // namespace vonta
