#include "audio/CreateDevice.h"

#include "audio/DrvASIO.h"
#include "audio/DrvDSound.h"
#include "audio/DrvDiskWritter.h"
#include "audio/DrvNoSound.h"
#include "audio/DrvWaveOut.h"

namespace vonta {

std::unique_ptr<DrvSound> CreateDevice(DeviceKind kind) {
    switch (kind) {
        case DeviceKind::DirectSoundPrimary:
        case DeviceKind::DirectSoundSecondary: return std::make_unique<DrvDSound>(CreateSystemDirectSound());
        case DeviceKind::WaveOut: return std::make_unique<DrvWaveOut>(CreateSystemWaveOut());
        case DeviceKind::NoSound: return std::make_unique<DrvNoSound>();
        case DeviceKind::DiskWritter: return std::make_unique<DrvDiskWritter>();
        case DeviceKind::Asio: return std::make_unique<DrvASIO>();
        default: return nullptr;
    }
}

}  // namespace vonta
