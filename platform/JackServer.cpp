#include "platform/JackServer.h"

#include "platform/LibJack.h"

namespace vonta {
namespace {

constexpr const char* kWatchName = "Vonta Tracker watch";

}  // namespace

std::shared_ptr<const JackServer> JackServer::Connect() {
    const LibJack* jack = LibJack::Get();
    if (!jack) return nullptr;
    const std::shared_ptr<JackServer> server(new JackServer);
    server->client_ = jack->clientOpen(kWatchName, JackNoStartServer, nullptr);
    if (!server->client_) return nullptr;
    jack->onShutdown(server->client_, [](void* gone) { *static_cast<std::atomic<bool>*>(gone) = true; },
                     &server->gone_);
    return server;
}

JackServer::~JackServer() {
    if (client_) LibJack::Get()->clientClose(client_);
}

}  // namespace vonta
