// The driver "JACK": the program as a client of the running JACK server, one port for each playback port of the
// server's hardware, and connected to it. Block size and rate are the server's. Starts no server.
//
// The client stays in the server's graph from Start to Stop, whether the host plays or not, so that connections that
// the user makes hold.
#pragma once

#include <atomic>
#include <string>
#include <vector>

#include "platform/AsioDriver.h"
#include "platform/LibJack.h"

namespace vonta {

class JackDriver final : public AsioDriver {
public:
    explicit JackDriver(const LibJack& jack) : jack_(jack) {}
    ~JackDriver() override;

    bool Init(void* sysRef) override;
    std::string GetErrorMessage() override { return error_; }
    int GetNumOutputs() override { return static_cast<int>(playback_.size()); }
    int GetPreferredSize() override { return static_cast<int>(frames_); }
    double GetSampleRate() override { return rate_; }
    std::int32_t GetSampleType(int) override { return kAsioInt32LSB; }
    bool CreateBuffers(std::span<AsioBufferInfo> channels, int frames, AsioHost& host) override;
    void DisposeBuffers() override;
    bool Start() override;
    void Stop() override;
    std::uint32_t GetUnderruns() const override { return underruns_; }

private:
    struct Output {
        jack_port_t* port = nullptr;
        std::vector<std::int32_t> halves[2];
    };

    void FindPlaybackPorts();
    void SetCallbacks();
    void Lose(AsioLoss loss);
    int Process(jack_nframes_t frames);

    const LibJack& jack_;
    jack_client_t* client_ = nullptr;
    jack_nframes_t frames_ = 0, rate_ = 0;           // of the server, when the client was opened
    std::vector<std::string> playback_;              // the hardware's ports; empty names where it has fewer than two
    std::vector<Output> outputs_;
    AsioHost* host_ = nullptr;
    std::string error_;
    bool active_ = false;
    std::atomic<std::uint32_t> underruns_{0};        // of the whole graph: the server tells no client apart
    std::atomic<AsioLoss> loss_{AsioLoss::None};
    int half_ = 0;                                   // JACK's thread
};

}  // namespace vonta
