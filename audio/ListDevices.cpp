#include "audio/ListDevices.h"

#include "audio/CreateDevice.h"
#include "platform/AsioDriver.h"
#include "platform/WaveOut.h"

namespace vonta {
namespace {

// These two drivers show themselves as one device each, whatever stands behind them.
std::vector<std::string> ListWaveOuts() {
    std::vector<std::string> names;
    const auto system = CreateSystemWaveOut();
    WaveCaps caps;
    for (std::uint32_t i = 0, count = system->GetNumDevs(); i < count && system->GetDevCaps(i, caps); ++i)
        names.push_back(caps.name);
    return names;
}

std::vector<std::string> ListAsioDrivers() {
    std::vector<std::string> names;
    for (const AsioDriverRecord& driver : AsioDriverList()) names.push_back(driver.name);
    return names;
}

}  // namespace

std::vector<std::string> ListDevices(DeviceKind kind) {
    if (kind == DeviceKind::WaveOut) return ListWaveOuts();
    if (kind == DeviceKind::Asio) return ListAsioDrivers();
    std::vector<std::string> names;
    if (const auto device = CreateDevice(kind))
        for (int i = 0; i < device->GetNumDevices(); ++i) names.push_back(device->GetDeviceName(i));
    return names;
}

}  // namespace vonta
