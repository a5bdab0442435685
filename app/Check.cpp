#include "app/Check.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "app/CommandLine.h"
#include "app/Messages.h"
#include "app/OpenFile.h"

namespace vonta {
namespace {

using Paths = std::vector<std::string>;

void Tell(const std::string& path, const std::string& what) {
    std::printf("%s: %s\n", Printable(path).c_str(), Printable(what).c_str());
}

bool CheckFile(const std::string& path) {
    LoadReport report;
    report.maxLines = report.lines.max_size();
    const FileContent content = LoadFile(path, report);
    if (!content) {
        Tell(path, "cannot be loaded: " + report.error);
        return false;
    }
    for (const std::string& line : report.lines) Tell(path, line);
    for (const std::string& line : report.repairs) Tell(path, "repaired: " + line);
    if (content.hasUnknownChunks) Tell(path, kNewerPartsText);
    if (report.lines.empty() && report.repairs.empty() && !content.hasUnknownChunks) Tell(path, "ok");
    return true;
}

int Check(const Paths& paths) {
    int status = kDone;
    for (const std::string& path : paths)
        if (!CheckFile(path)) status = kFailed;
    return status;
}

}  // namespace

void AddCheckCommand(CLI::App& command, std::function<int()>& chosen) {
    const auto paths = std::make_shared<Paths>();
    command.add_option("FILE", *paths, "Songs, instruments and samples")->required()->type_name("")->expected(-1);
    command.callback([paths, &chosen] { chosen = [paths] { return Check(*paths); }; });
}

}  // namespace vonta
