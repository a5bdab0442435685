#include "platform/JackDriver.h"

#include <algorithm>
#include <cstddef>

#include "platform/FaultGuard.h"
#include "platform/FlushToZero.h"

namespace vonta {
namespace {

constexpr const char* kClientName = "Vonta Tracker";
constexpr std::size_t kMinOutputs = 2, kMaxOutputs = 32;
constexpr float kFromInt32 = 1.0f / 2147483648.0f;

// "Output 1 left", "Output 1 right", "Output 2 left", ...
std::string PortName(std::size_t channel) {
    return "Output " + std::to_string(channel / 2 + 1) + (channel % 2 ? " right" : " left");
}

// Once, before the first block, so that no block pays for it.
void PrepareThread(void*) {
    thread_local const FlushToZero denormalsOff;
    InstallFaultHandlers();
}

}  // namespace

JackDriver::~JackDriver() {
    if (client_) jack_.clientClose(client_);
}

bool JackDriver::Init(void*) {
    client_ = jack_.clientOpen(kClientName, JackNoStartServer, nullptr);
    if (!client_) {
        error_ = "no JACK server answers";
        return false;
    }
    frames_ = jack_.getBufferSize(client_);
    rate_ = jack_.getSampleRate(client_);
    FindPlaybackPorts();
    return true;
}

void JackDriver::FindPlaybackPorts() {
    const char** names = jack_.getPorts(client_, nullptr, JACK_DEFAULT_AUDIO_TYPE, JackPortIsPhysical | JackPortIsInput);
    for (const char** name = names; name && *name && playback_.size() < kMaxOutputs; ++name) playback_.push_back(*name);
    if (names) jack_.free(names);
    playback_.resize(std::max(playback_.size(), kMinOutputs));
}

bool JackDriver::CreateBuffers(std::span<AsioBufferInfo> channels, int frames, AsioHost& host) {
    if (frames != GetPreferredSize()) {
        error_ = "the block size is the server's";
        return false;
    }
    host_ = &host;
    SetCallbacks();
    outputs_.resize(channels.size());
    for (std::size_t i = 0; i < channels.size(); ++i) {
        Output& output = outputs_[i];
        for (const std::size_t half : {0, 1}) {
            output.halves[half].assign(static_cast<std::size_t>(frames), 0);
            channels[i].buffers[half] = output.halves[half].data();
        }
        output.port = jack_.portRegister(client_, PortName(static_cast<std::size_t>(channels[i].channel)).c_str(),
                                         JACK_DEFAULT_AUDIO_TYPE, JackPortIsOutput, 0);
        if (!output.port) {
            error_ = "the JACK server refuses a port";
            return false;
        }
    }
    return true;
}

// All but the process callback come on threads of the library that are not JACK's own; what has not changed is
// announced too.
void JackDriver::SetCallbacks() {
    jack_.onShutdown(client_, [](void* me) { static_cast<JackDriver*>(me)->Lose(AsioLoss::DriverGone); }, this);
    jack_.setThreadInitCallback(client_, PrepareThread, nullptr);
    jack_.setProcessCallback(
        client_, [](jack_nframes_t frames, void* me) { return static_cast<JackDriver*>(me)->Process(frames); }, this);
    jack_.setBufferSizeCallback(client_, [](jack_nframes_t frames, void* me) {
        auto& driver = *static_cast<JackDriver*>(me);
        if (frames != driver.frames_) driver.Lose(AsioLoss::BlockSizeChanged);
        return 0;
    }, this);
    jack_.setSampleRateCallback(client_, [](jack_nframes_t rate, void* me) {
        auto& driver = *static_cast<JackDriver*>(me);
        if (rate != driver.rate_) driver.Lose(AsioLoss::RateChanged);
        return 0;
    }, this);
    jack_.setXrunCallback(client_, [](void* me) {
        ++static_cast<JackDriver*>(me)->underruns_;
        return 0;
    }, this);
}

// The ports go with the client.
void JackDriver::DisposeBuffers() { outputs_.clear(); }

bool JackDriver::Start() {
    if (jack_.activate(client_) != 0) {
        error_ = "the JACK server does not start the client";
        return false;
    }
    active_ = true;
    for (std::size_t i = 0; i < outputs_.size() && i < playback_.size(); ++i)
        if (!playback_[i].empty()) jack_.connect(client_, jack_.portName(outputs_[i].port), playback_[i].c_str());
    return true;
}

void JackDriver::Stop() {
    if (active_) jack_.deactivate(client_);
    active_ = false;
}

void JackDriver::Lose(AsioLoss loss) {
    AsioLoss none = AsioLoss::None;
    loss_.compare_exchange_strong(none, loss);
    host_->ResetRequest(loss_);
}

int JackDriver::Process(jack_nframes_t frames) {
    if (frames != frames_) Lose(AsioLoss::BlockSizeChanged);
    const bool play = loss_ == AsioLoss::None;
    half_ ^= 1;
    if (play) host_->BufferSwitch(half_);
    for (const Output& output : outputs_) {
        auto* out = static_cast<float*>(jack_.portGetBuffer(output.port, frames));
        if (!out) continue;
        if (play) {
            const auto& values = output.halves[half_];
            std::transform(values.begin(), values.end(), out, [](std::int32_t value) {
                return static_cast<float>(value) * kFromInt32;
            });
        } else {
            std::fill_n(out, frames, 0.0f);
        }
    }
    return 0;
}

}  // namespace vonta
