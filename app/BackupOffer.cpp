// What an earlier run could not finish is offered at the start, one after the other. Whatever the answer, it is kept.
#include <algorithm>
#include <ctime>
#include <string>

#include "app/Application.h"
#include "app/Messages.h"
#include "interface/screens/DiskOpScreen.h"

namespace vonta {
namespace {

constexpr const char* kQuestion = " Load the crash backup??";
constexpr const char* kWorkQuestion = " Load the unsaved work??";
constexpr const char* kUntitled = "(no title)";

std::string ShownTime(std::time_t time) {
    std::tm parts{};
    char text[32] = "";
    if (localtime_r(&time, &parts)) std::strftime(text, sizeof text, "%Y-%m-%d  %H:%M:%S", &parts);
    return text;
}

}  // namespace

// False if nothing waits.
bool GMain::FindWaiting() {
    waiting_ = WaitingBackups(BackupPlaces(m_szStartDir, options_.file));
    works_ = FindLeftWork(m_szStartDir);
    RemoveOldWork(works_, std::time(nullptr));
    std::erase_if(works_, [](const LeftWork& work) { return work.declined; });
    return !waiting_.empty() || !works_.empty();
}

void GMain::OfferNext() {
    if (waiting_.empty()) return OfferNextWork();
    const WaitingBackup& next = waiting_.front();
    const std::string title = next.title.empty() ? kUntitled : Printable(next.title);
    m_pInterface->Ask(std::string(kQuestion) + "\n " + title + "\n " + ShownTime(next.Time()),
                      Bind<&GMain::OnOfferTaken>(this), Bind<&GMain::OnOfferDeclined>(this));
}

// The others wait for the next start: loading one of them now would replace this one.
void GMain::OnOfferTaken(ControlRecord&) {
    m_pInterface->DiskOp().LoadBackup(PutAside(waiting_.front()));
    waiting_.clear();
    works_.clear();
}

void GMain::OnOfferDeclined(ControlRecord&) {
    PutAside(waiting_.front());
    waiting_.erase(waiting_.begin());
    OfferNext();
}

void GMain::OfferNextWork() {
    if (works_.empty()) return;
    const LeftWork& next = works_.front();
    const std::string title = next.song.empty() ? kUntitled : Printable(next.song);
    const std::string edits = std::to_string(next.edits) + (next.edits == 1 ? " edit" : " edits");
    m_pInterface->Ask(std::string(kWorkQuestion) + "\n " + title + ", " + edits + "\n " + ShownTime(next.time),
                      Bind<&GMain::OnWorkTaken>(this), Bind<&GMain::OnWorkDeclined>(this));
}

// What was left stays where it is: the song is not saved yet.
void GMain::OnWorkTaken(ControlRecord&) {
    LoadReport report;
    auto song = LoadLeftWork(works_.front(), report);
    if (song) {
        Decline(works_.front());
        m_pInterface->DiskOp().TakeRecovered(std::move(song), report);
    } else {
        m_pInterface->Tell("The unsaved work was not loaded: " + report.error);
    }
    works_.clear();
}

void GMain::OnWorkDeclined(ControlRecord&) {
    Decline(works_.front());
    works_.erase(works_.begin());
    OfferNextWork();
}

}  // namespace vonta
