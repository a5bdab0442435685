#include "audio/DrvASIO.h"

#include <emmintrin.h>

#include "platform/Clock.h"
#include "platform/Debug.h"

namespace vonta {
namespace {

constexpr float kHeadroom = 1.0f / 131072.0f;        // full scale of the mix comes out at a quarter of the driver's
constexpr std::uint32_t kPretendedMove = 8192;       // bytes: as much as the largest piece
constexpr std::size_t kMaxDrivers = 16, kMaxNameLength = 32;
constexpr double kMinRate = 1000, kMaxRate = 1e6;    // Hz: inside, a tick is a sound number of frames

static_assert(kPretendedMove == kMaxBlockFrames * kDeviceFrameBytes);

constexpr std::uint32_t kLongestSilentTickMs = 100;
constexpr StereoBuffer kSilence{};

constexpr const char* kNoDriverError = "No ASIO Driver Error";   // where the driver itself has nothing to complain of

// By AsioLoss.
constexpr const char* kLosses[] = {"", "it has gone", "its sample rate has changed", "its block size has changed",
                                   "it does not answer any more"};

// Truncated. The instruction is defined for every value, where a cast is not.
template <class Value>
Value Truncated(double value) { return static_cast<Value>(_mm_cvttsd_si32(_mm_set_sd(value))); }

template <class Value, auto scale>
void WriteSide(const float* side, int frames, void* buffer, int at) {
    Value* out = static_cast<Value*>(buffer) + at;
    for (int i = 0; i < frames; ++i)
        out[i] = Truncated<Value>(static_cast<double>(side[2 * i] * kHeadroom) * scale);
}

}  // namespace

int DrvASIO::Init(void* windowHandle, int, int deviceIndex, Mixer& mixer, TickHandler* tickHandler) {
    place_ = {windowHandle, deviceIndex, &mixer, tickHandler};
    return Open();
}

bool DrvASIO::Restore() {
    Close();
    return Open();
}

bool DrvASIO::Open() {
    const auto index = static_cast<std::size_t>(place_.deviceIndex);
    if (place_.deviceIndex < 0 || index >= std::min(drivers_.size(), kMaxDrivers)) return false;
    driver_ = drivers_[index].open();
    const char* failure = OpenDriver();
    if (!failure) return true;
    std::string reason = driver_ ? driver_->GetErrorMessage() : std::string();
    if (reason.empty()) reason = kNoDriverError;
    DebugOutput("\t- ERROR: ASIO driver %s: %s%s\n", drivers_[index].name.substr(0, kMaxNameLength).c_str(), failure,
                reason.c_str());
    Close();
    return false;
}

// What failed, or null.
const char* DrvASIO::OpenDriver() {
    if (!driver_) return "it is not installed. ";
    if (!driver_->Init(place_.windowHandle)) return "it does not open: ";
    const int outputs = driver_->GetNumOutputs();
    bufferSize_ = driver_->GetPreferredSize();
    const double rate = driver_->GetSampleRate();
    if (outputs < 2) return "it has no pair of outputs. ";
    if (bufferSize_ < 1) return "it has no block size. ";
    if (!(rate >= kMinRate && rate <= kMaxRate)) return "its sample rate is out of range. ";
    for (int channel = 0; channel < outputs; ++channel) bufferInfos_.push_back({.channel = channel});
    if (!driver_->CreateBuffers(bufferInfos_, bufferSize_, *this)) return "it gives no buffers: ";

    sampleType_ = driver_->GetSampleType(0);
    if (sampleType_ == kAsioInt16LSB) writeSide_ = WriteSide<std::int16_t, 32767.49999>;
    if (sampleType_ == kAsioInt32LSB) writeSide_ = WriteSide<std::int32_t, 2147483647.49999>;
    starter_.Open(&silentPace_);
    driverStarted_ = driver_->Start();
    if (!driverStarted_) return "it does not start: ";
    place_.mixer->sampleRate = static_cast<std::uint32_t>(rate);
    lossTold_ = false;
    return nullptr;
}

void DrvASIO::Close() {
    starter_.Close();
    if (!driver_) return;
    if (driverStarted_) driver_->Stop();
    driver_->DisposeBuffers();
    driver_.reset();
    driverStarted_ = false;
    bufferInfos_.clear();
    writeSide_ = nullptr;
}

bool DrvASIO::IsLost() {
    const bool lost = !driver_ || starter_.IsLost();
    if (lost && !lossTold_) DebugOutput("\t- ERROR: ASIO driver: %s\n", kLosses[static_cast<int>(starter_.Loss())]);
    lossTold_ = lossTold_ || lost;
    return lost;
}

// The first tick after a start may give fewer frames than a piece has: then the rest is one more piece.
void DrvASIO::BufferSwitch(int index) {
    for (int done = 0; done < bufferSize_;) {
        const int piece = std::min(bufferSize_ - done, kMaxBlockFrames);
        int got = 0;
        starter_.Tick([&] {
            if (!IsSupported()) return false;
            const bool ends = RunCycle(piece);
            got = framesTaken_;
            Deliver(index, done, got, false);
            return ends;
        });
        if (got == 0) Deliver(index, done, got = piece, true);
        done += got;
    }
}

bool DrvASIO::RunCycle(int frames) {
    framesTaken_ = 0;
    framesLeft_ = frames;
    const bool ends = place_.tickHandler->OnTick();
    framesLeft_ = 0;
    return ends;
}

void DrvASIO::Deliver(int index, int at, int frames, bool silent) {
    if (!IsSupported()) return;
    for (std::size_t pair = 0; pair < Pairs(); ++pair)
        for (const std::size_t side : {0, 1})
            writeSide_((silent ? kSilence : outputs_[pair]).data() + side, frames,
                       bufferInfos_[2 * pair + side].buffers[index], at);
}

bool DrvASIO::SilentPace::OnTick() {
    const std::uint32_t now = Milliseconds(), elapsed = std::min(now - last_, kLongestSilentTickMs);
    last_ = now;
    for (int due = static_cast<int>(device_.place_.mixer->sampleRate * elapsed / 1000); due > 0;) {
        if (device_.RunCycle(std::min(due, kMaxBlockFrames))) return true;
        if (device_.framesTaken_ == 0) break;
        due -= device_.framesTaken_;
    }
    return false;
}

void DrvASIO::WriteBlock(float* const* outputs, int frames, std::uint32_t) {
    frames = std::min(frames, framesLeft_);
    if (frames <= 0) return;
    for (std::size_t pair = 0; pair < Pairs(); ++pair)
        std::copy_n(outputs[pair], 2 * frames, outputs_[pair].begin() + 2 * framesTaken_);
    framesTaken_ += frames;
    framesLeft_ -= frames;
}

int DrvASIO::GetPosition(std::uint32_t* bytes) {
    position_ += kPretendedMove;
    *bytes = position_;
    return 1;
}

}  // namespace vonta
