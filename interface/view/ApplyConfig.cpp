#include "app/config/ConfigFile.h"
#include "app/config/ConfigSettings.h"
#include "interface/view/TrackerState.h"

namespace vonta {

void TrackerState::ApplyConfig(const std::string& startDirectory) {
    const auto settings = SettingsOf(config_);
    player_.SetMasterVolume(settings.masterAmp);
    player_.SetLatencyMs(settings.latencyMs);
    for (std::size_t i = 0; i < settings.midiOutDelayMs.size(); ++i)
        if (DrvMIDIOUT* output = player_.GetMixer().midiOut[i].get()) output->SetDelay(settings.midiOutDelayMs[i]);
    edits_.Steps().SetBudget(settings.undoMemory);
    SetVisibleChannels(settings.visibleChannels);
    pending.m_bHexMode = config_.patternNumberMode != 0;
    player_.SetInterpolation(settings.interpolation);
    LoadEnvironment(startDirectory + "/" + kEnvironmentFile, environment_);
}

}  // namespace vonta
