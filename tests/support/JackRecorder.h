// A JACK client that records what the ports it is connected to play, and counts xruns.
#pragma once

#include <jack/jack.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace vonta {

class JackRecorder {
public:
    JackRecorder(const std::vector<std::string>& sources, std::size_t frames) {
        client_ = jack_client_open("recorder", JackNoStartServer, nullptr);
        if (!client_) throw std::runtime_error("no JACK server to record from");
        tracks_.assign(sources.size(), std::vector<float>(frames));
        for (std::size_t i = 0; i < sources.size(); ++i)
            ports_.push_back(jack_port_register(client_, ("in " + std::to_string(i)).c_str(), JACK_DEFAULT_AUDIO_TYPE,
                                                JackPortIsInput, 0));
        jack_set_process_callback(
            client_, [](jack_nframes_t now, void* me) { return static_cast<JackRecorder*>(me)->Process(now); }, this);
        jack_set_xrun_callback(client_, [](void* me) { return ++static_cast<JackRecorder*>(me)->xruns_, 0; }, this);
        jack_activate(client_);
        for (std::size_t i = 0; i < sources.size(); ++i)
            if (jack_connect(client_, sources[i].c_str(), jack_port_name(ports_[i])) != 0) missing_ = sources[i];
    }
    ~JackRecorder() { jack_client_close(client_); }
    JackRecorder(const JackRecorder&) = delete;
    JackRecorder& operator=(const JackRecorder&) = delete;

    // Starts anew, and waits until so many frames have come; what was recorded of a track.
    void Record(std::size_t frames) {
        recorded_ = 0;
        wanted_ = std::min(frames, tracks_.empty() ? 0 : tracks_[0].size());
        const auto longest = std::chrono::steady_clock::now() + std::chrono::seconds(120);
        while (recorded_ < wanted_ && std::chrono::steady_clock::now() < longest)
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    std::vector<float> Track(std::size_t track) const {
        return {tracks_[track].begin(), tracks_[track].begin() + static_cast<std::ptrdiff_t>(recorded_.load())};
    }
    const std::string& Missing() const { return missing_; }   // a source that could not be connected
    int Connections(std::size_t track) const { return jack_port_connected(ports_[track]); }
    int Xruns() const { return xruns_; }
    jack_client_t* Client() { return client_; }

private:
    int Process(jack_nframes_t frames) {
        const std::size_t at = recorded_, now = std::min<std::size_t>(frames, wanted_ > at ? wanted_ - at : 0);
        if (now == 0) return 0;
        for (std::size_t i = 0; i < ports_.size(); ++i)
            std::copy_n(static_cast<const float*>(jack_port_get_buffer(ports_[i], frames)), now,
                        tracks_[i].begin() + static_cast<std::ptrdiff_t>(at));
        recorded_ = at + now;
        return 0;
    }

    jack_client_t* client_;
    std::vector<jack_port_t*> ports_;
    std::vector<std::vector<float>> tracks_;
    std::atomic<std::size_t> recorded_{0}, wanted_{0};
    std::atomic<int> xruns_{0};
    std::string missing_;
};

}  // namespace vonta
