#include "nxhost/control.h"

#include "calls.h"
#include "session.h"
#include "uf.h"
#include "ug_exception.hxx"
#include "ug_extension.hxx"

#include <unordered_map>
#include <utility>

using host::Session;

namespace nxhost {

namespace {

// Everything here works on the model directly: what a test looks at is not a call of the platform.
template <class F> auto raising(F &&body) -> decltype(body())
{
    try {
        return body();
    } catch (const host::Failure &failure) {
        throw UgException(failure.code);
    }
}

std::vector<std::string_view> linesOf(std::string_view text)
{
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        lines.push_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

// The lines of `text` that are more often there than in `other`, each behind the sign.
std::string surplus(std::string_view text, std::string_view other, const char *sign)
{
    std::unordered_map<std::string_view, int> spare;
    for (const std::string_view line : linesOf(other)) ++spare[line];
    std::string result;
    for (const std::string_view line : linesOf(text))
        if (--spare[line] < 0) result.append(sign).append(line).append("\n");
    return result;
}

} // namespace

void reset()
{
    host::forgetFaults();
    host::keepCallRecord(false);
    Session::get().reset();
    host::forgetCallCounts();
    host::forgetBadFrees();
}

// --- what was written -------------------------------------------------------------------------------

std::string takeInfoWindow() { return std::exchange(Session::get().infoWindow, {}); }

bool infoWindowOpened() { return Session::get().infoWindowOpen; }

std::string takeSyslog() { return std::exchange(Session::get().syslog, {}); }

std::string lastPartMessage() { return Session::get().lastPartMessage; }

// --- faults and calls -------------------------------------------------------------------------------

void failCall(const std::string &function, int code, unsigned nth)
{
    host::failNextCall(function, code, nullptr, nth);
}

void onCall(const std::string &function, std::function<void()> action, unsigned nth)
{
    host::failNextCall(function, 0, std::move(action), nth);
}

void clearFaults() { host::forgetFaults(); }

bool faultsPending() { return host::anyFaultPending(); }

std::size_t callCount(const std::string &function) { return host::timesCalled(function); }

std::size_t totalCalls() { return host::timesAnyCalled(); }

void clearCallCounts() { host::forgetCallCounts(); }

void recordCalls(bool on) { host::keepCallRecord(on); }

const std::vector<std::string> &recordedCalls() { return host::callRecord(); }

void recordChanges(bool on)
{
    Session::get().recordingChanges = on;
    if (!on) Session::get().changes.clear();
}

const std::vector<std::string> &recordedChanges() { return Session::get().changes; }

// --- memory handed out ------------------------------------------------------------------------------

std::size_t outstandingAllocations() { return host::memoryState().allocations; }

std::size_t outstandingDataBlocks() { return host::memoryState().dataBlocks; }

std::size_t badFrees() { return host::memoryState().badFrees; }

// --- switches ---------------------------------------------------------------------------------------

void setStrictDrawingInfo(bool strict) { Session::get().strictDrawingInfo = strict; }

void setRejectUnknownFonts(bool reject) { Session::get().rejectUnknownFonts = reject; }

void setStrictLimits(bool strict) { Session::get().strictLimits = strict; }

void setInterfaceAvailable(bool available) { Session::get().interfaceAvailable = available; }

void setClock(std::function<double()> elapsed_seconds)
{
    Session::get().clock = std::move(elapsed_seconds);
}

// --- looking in -------------------------------------------------------------------------------------

std::string difference(const std::string &before, const std::string &after)
{
    return surplus(before, after, "- ") + surplus(after, before, "+ ");
}

std::size_t countObjects(tag_t part)
{
    return raising([&] {
        std::size_t count = 0;
        for (const auto &[ordinal, object] : Session::get().requirePart(part).objects)
            count += object->status == host::Status::alive && !object->as<host::View>() &&
                     !object->as<host::FontTable>();
        return count;
    });
}

int ownedObjectSelection(const std::string &class_name)
{
    const host::UdoClassRecord *record = Session::get().findClass(class_name);
    return record && record->registered ? record->selection : 0;
}

bool usesCustomerSymbolFile() { return Session::get().customerSymbolFile; }

std::size_t zeroLengthRefusals() { return Session::get().zeroLengthRefusals; }

// --- driving ----------------------------------------------------------------------------------------

void runInfoCallback(tag_t udo)
{
    raising([&] {
        Session &session = Session::get();
        const auto &data = session.requireBody<host::Udo>(udo, UF_err_wrong_class);
        if (const auto callback = session.classRecord(data.classId).onInfo) callback(udo);
    });
}

void touch(tag_t object)
{
    raising([&] { Session::get().touch(object); });
}

void updatePart(tag_t part)
{
    raising([&] { Session::get().updatePart(Session::get().requirePart(part)); });
}

UgTypedObject *createDerived(const std::string &class_name)
{
    return UgDerivedClassManager::find(class_name).createInstance();
}

} // namespace nxhost
