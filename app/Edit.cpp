#include "app/Edit.h"

#include <CLI/CLI.hpp>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "app/Application.h"
#include "app/CommandLine.h"
#include "app/EndWatch.h"
#include "app/Interrupt.h"
#include "platform/DisplayLoss.h"

namespace vonta {
namespace {

struct EditRequest {
    std::string file;
    bool noCurtain = false;
};

int Edit(const EditRequest& request) {
    TrackerOptions options;
    if (!request.file.empty()) options.file = std::filesystem::absolute(request.file).string();
    options.curtain = !request.noCurtain;
    std::optional<EndWatch> watch;
    options.onTidyUp = [&watch](int status) { watch->TidyUpBegins(status); };
    GMain app(std::move(options));
    watch.emplace([&app] { return app.Rescue(); });
    WatchEveryEnd();
    TellOfDisplayLoss(InterruptFromWithin);
    if (app.Init() != 0) return kFailed;
    const int status = app.Run();
    app.Shutdown(status == kDone);
    return status;
}

}  // namespace

void AddEditCommand(CLI::App& command, std::function<int()>& chosen) {
    const auto request = std::make_shared<EditRequest>();
    command.add_option("FILE", request->file, "A song, instrument or sample to open")->type_name("");
    command.add_flag("--no-curtain", request->noCurtain, "Start and end at once, without the opening picture");
    command.callback([request, &chosen] { chosen = [request] { return Edit(*request); }; });
}

}  // namespace vonta
