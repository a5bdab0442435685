// A JACK server of the test's own, without a sound card, and another program on it: the synthesizer and the keyboard
// that ours plays and is played by.
#pragma once

#include <gtest/gtest.h>
#include <jack/jack.h>
#include <jack/midiport.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <chrono>
#include <functional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "platform/Clock.h"

namespace vonta::test {

// True as soon as `done` is; false if it is not within some seconds, even on a busy machine.
inline bool Await(const std::function<bool()>& done, int seconds = 20) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
    while (!done()) {
        if (std::chrono::steady_clock::now() > end) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}

// Every client of this process goes to the server while it runs. Throws, which fails the test, if there can be none.
class JackServerProcess {
public:
    JackServerProcess() : name_("vonta-test-" + std::to_string(getpid())) {
        jack_set_error_function([](const char*) {});
        jack_set_info_function([](const char*) {});
        setenv("JACK_DEFAULT_SERVER", name_.c_str(), 1);
        pid_ = fork();
        if (pid_ == 0) Run();
        if (pid_ < 0 || !Await([] { return Answers(); })) throw std::runtime_error("jackd (package jackd2) does not start");
    }
    ~JackServerProcess() {
        Stop();
        unsetenv("JACK_DEFAULT_SERVER");
    }
    JackServerProcess(const JackServerProcess&) = delete;
    JackServerProcess& operator=(const JackServerProcess&) = delete;

    void Stop() {
        if (pid_ <= 0) return;
        kill(pid_, SIGTERM);
        waitpid(pid_, nullptr, 0);
        pid_ = 0;
    }

private:
    // The new process: ends with the test, also when that crashes.
    [[noreturn]] void Run() {
        prctl(PR_SET_PDEATHSIG, SIGTERM);
        setenv("JACK_NO_AUDIO_RESERVATION", "1", 1);
        if (!freopen("/dev/null", "w", stdout) || !freopen("/dev/null", "w", stderr)) _exit(1);
        // Patient with clients, since nothing here runs in real time.
        execlp("jackd", "jackd", "--no-realtime", "--timeout", "10000", "--name", name_.c_str(), "-d", "dummy", "-r",
               "48000", "-p", "256", nullptr);
        _exit(1);
    }
    static bool Answers() {
        jack_client_t* client = jack_client_open("probe", JackNoStartServer, nullptr);
        if (client) jack_client_close(client);
        return client;
    }

    std::string name_;
    pid_t pid_ = 0;
};

// What came at the synthesizer: the bytes of a message, packed, and the time of the process cycle.
struct Received {
    std::uint32_t message, time;
};

// The ports "Peer:synth" and "Peer:keys".
class JackPeer {
public:
    JackPeer() : client_(jack_client_open("Peer", JackNoStartServer, nullptr)) {
        if (!client_) throw std::runtime_error("no JACK client");
        synth_ = jack_port_register(client_, "synth", JACK_DEFAULT_MIDI_TYPE, JackPortIsInput, 0);
        keys_ = jack_port_register(client_, "keys", JACK_DEFAULT_MIDI_TYPE, JackPortIsOutput, 0);
        jack_set_process_callback(client_, Process, this);
        jack_activate(client_);
    }
    ~JackPeer() { jack_client_close(client_); }
    JackPeer(const JackPeer&) = delete;
    JackPeer& operator=(const JackPeer&) = delete;

    std::vector<Received> All() const {
        return {received_.begin(), received_.begin() + static_cast<long>(receivedCount_.load())};
    }
    std::vector<std::uint32_t> Messages() const {
        std::vector<std::uint32_t> messages;
        for (const Received& each : All()) messages.push_back(each.message);
        return messages;
    }
    std::size_t Count() const { return receivedCount_; }

    // All bytes are one event of one cycle; returns once the cycle has taken it.
    void Press(const std::vector<std::uint8_t>& bytes) {
        outgoing_ = bytes;
        waiting_ = true;
        if (!Await([this] { return !waiting_; })) throw std::runtime_error("the JACK server stands still");
    }

    // Ports of clients whose name starts so.
    std::vector<std::string> PortsOf(const std::string& clientName) const {
        std::vector<std::string> names;
        const char** ports = jack_get_ports(client_, ("^" + clientName).c_str(), JACK_DEFAULT_MIDI_TYPE, 0);
        for (const char** port = ports; port && *port; ++port) names.emplace_back(*port);
        jack_free(ports);
        return names;
    }

private:
    static int Process(jack_nframes_t frames, void* peer) {
        static_cast<JackPeer*>(peer)->Receive(frames);
        static_cast<JackPeer*>(peer)->Send(frames);
        return 0;
    }
    void Receive(jack_nframes_t frames) {
        void* buffer = jack_port_get_buffer(synth_, frames);
        for (jack_nframes_t i = 0; i < jack_midi_get_event_count(buffer); ++i) {
            jack_midi_event_t event;
            if (jack_midi_event_get(&event, buffer, i) != 0 || receivedCount_ == received_.size()) continue;
            Received& place = received_[receivedCount_];
            place = {0, Milliseconds()};
            for (std::size_t byte = 0; byte < event.size; ++byte)
                place.message |= std::uint32_t{event.buffer[byte]} << 8 * byte;
            ++receivedCount_;
        }
    }
    void Send(jack_nframes_t frames) {
        void* buffer = jack_port_get_buffer(keys_, frames);
        jack_midi_clear_buffer(buffer);
        if (!waiting_) return;
        jack_midi_event_write(buffer, 0, outgoing_.data(), outgoing_.size());
        waiting_ = false;
    }

    jack_client_t* client_;
    jack_port_t *synth_ = nullptr, *keys_ = nullptr;
    std::array<Received, 1 << 14> received_{};
    std::atomic<std::size_t> receivedCount_{0};
    std::vector<std::uint8_t> outgoing_;           // the process callback's while waiting_
    std::atomic<bool> waiting_{false};
};

}  // namespace vonta::test
