#include "platform/JackDriver.h"

namespace vonta {

const std::vector<AsioDriverRecord>& AsioDriverList() {
    static const std::vector<AsioDriverRecord> drivers{
        {"JACK", []() -> std::unique_ptr<AsioDriver> {
             const LibJack* jack = LibJack::Get();
             return jack ? std::make_unique<JackDriver>(*jack) : nullptr;
         }},
    };
    return drivers;
}

}  // namespace vonta
