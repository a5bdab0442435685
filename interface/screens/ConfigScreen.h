// The configuration: each row changes a value of Config and what depends on it at once. Only Save writes the file.
#pragma once

#include <string>

#include "interface/screens/Screen.h"

namespace vonta {

class ConfigScreen final : public Screen {
public:
    using Screen::Screen;
    void PaintBackground() override;
    void PaintControls() override;

    void OnStep(ControlRecord& record);          // param: the value's number, negative plus one to go down
    void OnNumbers(ControlRecord& record);
    void OnFormerFiles(ControlRecord& record);
    bool KeepsFormerFiles(std::int32_t) const;
    void OnFlag(ControlRecord& record);
    void OnSave(ControlRecord& record);
    void OnExit(ControlRecord& record);
    bool ShowsNumbers(std::int32_t mode) const;
    bool HasFlag(std::int32_t flag) const;

private:
    friend struct ConfigValues;                  // the rows: what a step does, and how the value is shown

    void PrintField(int id, const std::string& text);
    void TakeLatency();
    template <class Port>
    void PaintLight(int id, const Port* port);   // whether a message has just passed
    float MasterVolume() const;                  // what sounds and what the song holds
    std::string DeviceText() const;

    bool latencyStepped_ = false;                // by the user: LATENCY follows the device from then on
    int output_ = 0;                             // MIDI output whose delay is shown
};

}  // namespace vonta
