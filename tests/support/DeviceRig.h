// What a sound device needs around it, and blocks to write.
#pragma once

#include <memory>
#include <vector>

#include "engine/mix/Mixer.h"

namespace vonta::test {

struct DeviceRig {
    struct Nobody final : TickHandler {
        bool OnTick() override { return false; }
    };

    // A block whose left side counts from 0 and whose right side from 100, with fractions that are to be cut off.
    static float* const* Ramp(int frames) {
        static std::vector<float> values;
        static float* outputs[1];
        values.clear();
        for (int i = 0; i < frames; ++i) {
            values.push_back(static_cast<float>(i) + 0.9f);
            values.push_back(static_cast<float>(i) + 100.9f);
        }
        outputs[0] = values.data();
        return outputs;
    }

    std::unique_ptr<Mixer> mixer = std::make_unique<Mixer>();
    Nobody nobody;
};

}  // namespace vonta::test
