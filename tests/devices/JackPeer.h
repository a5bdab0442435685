// Another program on a JACK server: the synthesizer and the keyboard that ours plays and is played by.
#pragma once

#include <jack/jack.h>
#include <jack/midiport.h>

#include <array>
#include <atomic>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/Clock.h"
#include "tests/support/Await.h"

namespace vonta::test {

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
