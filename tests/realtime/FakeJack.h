// A JACK library whose server is the test: it calls the program's process callback whenever the test says so.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/LibJack.h"

namespace vonta {

class FakeJack {
public:
    static constexpr jack_nframes_t kFrames = 256, kRate = 48000;
    static constexpr int kPorts = 32;

    // One at a time.
    static const LibJack& Library() {
        static const LibJack library = Make();
        return library;
    }
    static void Cycle() { process(kFrames, argument); }

private:
    static jack_client_t* Open(const char*, jack_options_t, jack_status_t*, ...) { return reinterpret_cast<jack_client_t*>(&argument); }

    static LibJack Make() {
        LibJack jack{};
        jack.clientOpen = Open;
        jack.clientClose = [](jack_client_t*) { return 0; };
        jack.activate = [](jack_client_t*) { return 0; };
        jack.deactivate = [](jack_client_t*) { return 0; };
        jack.connect = [](jack_client_t*, const char*, const char*) { return 0; };
        jack.free = [](void*) {};
        jack.getBufferSize = [](jack_client_t*) { return kFrames; };
        jack.getSampleRate = [](jack_client_t*) { return kRate; };
        jack.getPorts = [](jack_client_t*, const char*, const char*, unsigned long) { return names; };
        jack.onShutdown = [](jack_client_t*, JackShutdownCallback, void*) {};
        jack.portName = [](const jack_port_t*) { return "port"; };
        jack.portRegister = [](jack_client_t*, const char*, const char*, unsigned long, unsigned long) {
            return reinterpret_cast<jack_port_t*>(&buffer);
        };
        jack.portGetBuffer = [](jack_port_t*, jack_nframes_t) -> void* { return buffer; };
        jack.setProcessCallback = [](jack_client_t*, JackProcessCallback callback, void* me) {
            process = callback;
            argument = me;
            return 0;
        };
        jack.setBufferSizeCallback = [](jack_client_t*, JackBufferSizeCallback, void*) { return 0; };
        jack.setSampleRateCallback = [](jack_client_t*, JackSampleRateCallback, void*) { return 0; };
        jack.setThreadInitCallback = [](jack_client_t*, JackThreadInitCallback, void*) { return 0; };
        jack.setXrunCallback = [](jack_client_t*, JackXRunCallback, void*) { return 0; };
        for (int i = 0; i < kPorts; ++i) names[i] = "playback";
        return jack;
    }

    static inline JackProcessCallback process = nullptr;
    static inline void* argument = nullptr;
    static inline float buffer[kFrames];
    static inline const char* names[kPorts + 1] = {};
};

}  // namespace vonta
