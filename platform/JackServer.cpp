#include "platform/JackServer.h"

#include <jack/jack.h>

#include "platform/Library.h"

namespace vonta {
namespace {

constexpr const char* kWatchName = "Vonta Tracker watch";

struct LibJack {
    decltype(&jack_client_open) open;
    decltype(&jack_client_close) close;
    decltype(&jack_on_shutdown) onShutdown;
    decltype(&jack_set_error_function) setError;
    decltype(&jack_set_info_function) setInfo;
    bool usable;

    LibJack() {
        const Library library("libjack.so.0");
        usable = library.Bind(open, "jack_client_open") && library.Bind(close, "jack_client_close") &&
                 library.Bind(onShutdown, "jack_on_shutdown") && library.Bind(setError, "jack_set_error_function") &&
                 library.Bind(setInfo, "jack_set_info_function");
        if (!usable) return;
        // That there is no server is no error here, and nothing to write on the user's terminal.
        setError([](const char*) {});
        setInfo([](const char*) {});
    }
};

const LibJack& Jack() {
    static const LibJack library;
    return library;
}

}  // namespace

std::shared_ptr<const JackServer> JackServer::Connect() {
    if (!Jack().usable) return nullptr;
    const std::shared_ptr<JackServer> server(new JackServer);
    server->client_ = Jack().open(kWatchName, JackNoStartServer, nullptr);
    if (!server->client_) return nullptr;
    Jack().onShutdown(server->client_, [](void* gone) { *static_cast<std::atomic<bool>*>(gone) = true; },
                      &server->gone_);
    return server;
}

JackServer::~JackServer() {
    if (client_) Jack().close(client_);
}

}  // namespace vonta
