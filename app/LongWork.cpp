// Work that takes longer than a frame: the window shows how far it is, and Escape, a close request or a signal ends it.
#include <algorithm>

#include "app/Application.h"
#include "app/Interrupt.h"
#include "app/Messages.h"
#include "audio/Mixdown.h"
#include "platform/Clock.h"

namespace vonta {
namespace {

constexpr std::uint32_t kShowPeriodMs = 50;
// Below the two lines of the "Saving data..." picture.
constexpr Rect kBar{286, 337, 228, 4};

}  // namespace

class GMain::ShownProgress final : public MixdownProgress {
public:
    ShownProgress(GMain& app, std::uint32_t positions) : app_(app), positions_(std::max(positions, 1u)) {}

    bool OnBlock(const MixdownState& state) override {
        if (Interrupted()) return false;
        if (Milliseconds() - lastShown_ < kShowPeriodMs) return true;
        lastShown_ = Milliseconds();
        const auto done = static_cast<float>(state.position) / static_cast<float>(positions_);
        return app_.ShowProgress(std::clamp(done, 0.0f, 1.0f));
    }

private:
    GMain& app_;
    std::uint32_t positions_;
    std::uint32_t lastShown_ = 0;
};

void GMain::BeginLongWork() {
    inLongWork_ = true;
    stopLongWork_ = false;
}

// Escape only cuts it short.
void GMain::OpenCurtain() {
    BeginLongWork();
    m_pInterface->RunCurtain([this] {
        TakeEvents();
        return !stopLongWork_ && !Interrupted();
    });
    inLongWork_ = false;
}

int GMain::MixDown(const std::string& base, const MixdownOptions& options, std::string& error,
                   std::vector<std::string>& notes) {
    const MixdownLimits limits;
    ShownProgress progress(*this, m_pSndPlayer->GetSong().GetPatternPosLenght());
    BeginLongWork();
    const MixdownResult result = Mixdown(*m_pSndPlayer, base, options, limits, &progress);
    inLongWork_ = false;
    m_pInterface->ForgetKeys();                      // what was pressed meanwhile was not meant for the song
    m_pInput->SkipMouse();
    error = result.error;
    if (!result.dropped.empty()) error = result.dropped.front() + " cannot be written";
    if (result.end == MixdownEnd::JumpedBack) notes.push_back(kCircleText);
    if (result.end == MixdownEnd::TimeLimit)
        notes.push_back("it was cut after " + std::to_string(static_cast<int>(limits.maxMinutes)) + " minutes of sound");
    return result.ok && result.dropped.empty() ? 0 : 1;
}

bool GMain::ShowProgress(float fraction) {
    TakeEvents();
    if (!m_bActive) return !stopLongWork_;
    m_pInterface->Paint();
    const int done = static_cast<int>(static_cast<float>(kBar.width) * fraction);
    m_pVideo->FillBack(kBar, m_pVideo->PackColour(20, 24, 30));
    m_pVideo->FillBack({kBar.x, kBar.y, done, kBar.height}, m_pInterface->Pictures().Colours().m_colHighlight);
    m_pVideo->Present();
    return !stopLongWork_;
}

}  // namespace vonta
