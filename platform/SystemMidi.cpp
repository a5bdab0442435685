// The MIDI service of the system: JACK or ALSA, both through RtMidi.
#include <unistd.h>

#include <algorithm>
#include <span>
#include <system_error>
#include <utility>

#include "platform/JackServer.h"
#include "platform/MidiSender.h"
#include "platform/MidiService.h"
#include "platform/RtMidiClient.h"
#include "platform/ShortMessage.h"

namespace vonta {
namespace {

using Direction = RtMidiClient::Direction;

constexpr const char* kAlsaSequencer = "/dev/snd/seq";

// What sending needs belongs to the sender, whose thread outlives the port if the system hangs.
class OutPort final : public MidiOutPort {
public:
    OutPort(std::shared_ptr<RtMidiClient> client, std::shared_ptr<const JackServer> server)
        : sender_([client = std::move(client), server = std::move(server)](std::uint32_t message) {
              if (!server || server->Answers()) client->Send(message);   // RtMidi waits for ever for a lost server
          }) {}
    bool Send(std::uint32_t message) override { return sender_.Send(message); }

private:
    MidiSender sender_;
};

class InPort final : public MidiInPort {
public:
    InPort(RtMidiApi api, std::string portName, std::string ownName, MidiInListener& listener)
        : portName_(std::move(portName)), ownName_(std::move(ownName)), listener_(listener),
          client_(std::make_unique<RtMidiClient>(api, Direction::In)) {
        listener_.OnMidiIn(MidiInEvent::Opened, 0);
    }
    ~InPort() override {
        client_.reset();
        listener_.OnMidiIn(MidiInEvent::Closed, 0);
    }
    bool Start() override {
        client_->SetCallback(OnBytes, this);
        return client_->Open(portName_, ownName_);
    }

private:
    static void OnBytes(double, const unsigned char* bytes, std::size_t size, void* self) {
        if (const auto message = PackShortMessage(std::span(bytes, size)))
            static_cast<InPort*>(self)->listener_.OnMidiIn(MidiInEvent::Message, *message);
    }

    std::string portName_, ownName_;
    MidiInListener& listener_;
    std::unique_ptr<RtMidiClient> client_;
};

class SystemMidi final : public MidiService {
public:
    SystemMidi() = default;                              // of no devices
    SystemMidi(RtMidiApi api, std::shared_ptr<const JackServer> server)
        : api_(api), server_(std::move(server)), outputs_(RtMidiClient(api, Direction::Out).PortNames()),
          inputs_(RtMidiClient(api, Direction::In).PortNames()) {}

    int OutputCount() const override { return static_cast<int>(outputs_.size()); }
    int InputCount() const override { return static_cast<int>(inputs_.size()); }
    std::string OutputName(int device) const override { return Name(outputs_, device); }
    std::string InputName(int device) const override { return Name(inputs_, device); }

    std::unique_ptr<MidiOutPort> OpenOutput(int device) override {
        if (OutputName(device).empty()) return nullptr;
        auto client = std::make_shared<RtMidiClient>(api_, Direction::Out);
        if (!client->Open(OutputName(device), "MIDI Out " + std::to_string(device))) return nullptr;
        try {
            return std::make_unique<OutPort>(std::move(client), server_);
        } catch (const std::system_error&) {             // no thread to be had
            return nullptr;
        }
    }
    std::unique_ptr<MidiInPort> OpenInput(int device, MidiInListener& listener) override {
        if (InputName(device).empty()) return nullptr;
        return std::make_unique<InPort>(api_, InputName(device), "MIDI In " + std::to_string(device), listener);
    }

private:
    static std::string Name(const std::vector<std::string>& names, int device) {
        return device >= 0 && std::cmp_less(device, names.size()) ? names[static_cast<std::size_t>(device)] : "";
    }

    RtMidiApi api_ = RTMIDI_API_UNSPECIFIED;
    std::shared_ptr<const JackServer> server_;           // null with ALSA
    std::vector<std::string> outputs_, inputs_;          // as found at the start
};

}  // namespace

std::unique_ptr<MidiService> CreateSystemMidi() {
    if (auto server = JackServer::Connect()) {
        auto midi = std::make_unique<SystemMidi>(RTMIDI_API_UNIX_JACK, std::move(server));
        if (midi->OutputCount() || midi->InputCount()) return midi;
    }
    // Asked for first, since the libraries write their complaint on the terminal.
    if (access(kAlsaSequencer, R_OK | W_OK) == 0) return std::make_unique<SystemMidi>(RTMIDI_API_LINUX_ALSA, nullptr);
    return std::make_unique<SystemMidi>();
}

}  // namespace vonta
