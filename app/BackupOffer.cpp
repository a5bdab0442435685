// What an earlier run could not finish is offered at the start, one after the other. Whatever the answer, it is kept.
#include <ctime>
#include <string>

#include "app/Application.h"
#include "app/Messages.h"
#include "interface/screens/DiskOpScreen.h"

namespace vonta {
namespace {

constexpr const char* kQuestion = " Load the crash backup??";
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
    return !waiting_.empty();
}

void GMain::OfferNext() {
    if (waiting_.empty()) return;
    const WaitingBackup& next = waiting_.front();
    const std::string title = next.title.empty() ? kUntitled : Printable(next.title);
    m_pInterface->Ask(std::string(kQuestion) + "\n " + title + "\n " + ShownTime(next.Time()),
                      Bind<&GMain::OnOfferTaken>(this), Bind<&GMain::OnOfferDeclined>(this));
}

// The others wait for the next start: loading one of them now would replace this one.
void GMain::OnOfferTaken(ControlRecord&) {
    m_pInterface->DiskOp().LoadBackup(PutAside(waiting_.front()));
    waiting_.clear();
}

void GMain::OnOfferDeclined(ControlRecord&) {
    PutAside(waiting_.front());
    waiting_.erase(waiting_.begin());
    OfferNext();
}

}  // namespace vonta
