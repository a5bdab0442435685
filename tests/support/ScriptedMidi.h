// A MIDI service whose devices, failures and messages a test writes down. What it is asked for stays to be read.
#pragma once

#include <deque>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/MidiService.h"

namespace vonta::test {

class ScriptedMidi final : public MidiService {
public:
    struct Output {
        std::string name;
        bool opens = true;
        std::size_t room = SIZE_MAX;               // messages that it takes; then Send is false
        std::vector<std::uint32_t> sent = {};
        bool open = false;
    };
    struct Input {
        std::string name;
        bool opens = true, starts = true;
        MidiInListener* listener = nullptr;        // while the port is open
        void Send(std::uint32_t message) const { listener->OnMidiIn(MidiInEvent::Message, message); }
    };
    std::deque<Output> outputs;                    // ports refer to them
    std::deque<Input> inputs;

    int OutputCount() const override { return static_cast<int>(outputs.size()); }
    int InputCount() const override { return static_cast<int>(inputs.size()); }
    std::string OutputName(int device) const override { return outputs.at(static_cast<std::size_t>(device)).name; }
    std::string InputName(int device) const override { return inputs.at(static_cast<std::size_t>(device)).name; }

    std::unique_ptr<MidiOutPort> OpenOutput(int device) override {
        Output& output = outputs.at(static_cast<std::size_t>(device));
        if (!output.opens) return nullptr;
        return std::make_unique<OutPort>(output);
    }
    std::unique_ptr<MidiInPort> OpenInput(int device, MidiInListener& listener) override {
        Input& input = inputs.at(static_cast<std::size_t>(device));
        if (!input.opens) return nullptr;
        return std::make_unique<InPort>(input, listener);
    }

private:
    struct OutPort final : MidiOutPort {
        explicit OutPort(Output& o) : output(o) { output.open = true; }
        ~OutPort() override { output.open = false; }
        bool Send(std::uint32_t message) override {
            if (output.sent.size() >= output.room) return false;
            output.sent.push_back(message);
            return true;
        }
        Output& output;
    };
    struct InPort final : MidiInPort {
        InPort(Input& i, MidiInListener& listener) : input(i) {
            input.listener = &listener;
            listener.OnMidiIn(MidiInEvent::Opened, 0);
        }
        ~InPort() override { std::exchange(input.listener, nullptr)->OnMidiIn(MidiInEvent::Closed, 0); }
        bool Start() override { return input.starts; }
        Input& input;
    };
};

}  // namespace vonta::test
