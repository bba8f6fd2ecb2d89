#include "session_inner.h"

#include "uf.h"

namespace host {

Session &Session::get()
{
    // Never destroyed: destructors of other static objects may still call the platform.
    static Session *const session = new Session;
    return *session;
}

Session::Session() : m_inner(std::make_unique<Inner>(*this)) {}

// --- tags ---------------------------------------------------------------------------------------

Tag Session::newTag() { return m_inner->nextTag++; }

Object *Session::find(Tag tag) { return m_inner->find(tag); }

Object &Session::require(Tag tag)
{
    if (Object *object = find(tag)) return *object;
    throw Failure{UF_err_unknown_tag, {}};
}

Part *Session::findPart(Tag tag)
{
    const auto found = m_inner->partsByTag.find(tag);
    return found == m_inner->partsByTag.end() ? nullptr : found->second;
}

Part &Session::requirePart(Tag tag)
{
    if (Part *part = findPart(tag)) return *part;
    throw Failure{UF_err_unknown_tag, {}};
}

// --- classes ------------------------------------------------------------------------------------

ClassId Session::createClass(const std::string &name, const std::string &friendlyName)
{
    UdoClassRecord &record = classRecord(classIdForStored(name));
    if (record.registered) throw Failure{UF_err_class_exists, name};
    record.friendlyName = friendlyName;
    record.registered = true;
    return record.id;
}

UdoClassRecord &Session::classRecord(ClassId id)
{
    if (id < kFirstClassId || id - kFirstClassId >= m_inner->classes.size())
        throw Failure{UF_err_unknown_class_id, {}};
    return m_inner->classes[id - kFirstClassId];
}

UdoClassRecord *Session::findClass(std::string_view name)
{
    const auto found = m_inner->classIds.find(name);
    return found == m_inner->classIds.end() ? nullptr : &classRecord(found->second);
}

ClassId Session::classIdForStored(const std::string &name)
{
    const auto id = static_cast<ClassId>(kFirstClassId + m_inner->classes.size());
    const auto [place, isNew] = m_inner->classIds.try_emplace(name, id);
    if (isNew) {
        UdoClassRecord record;
        record.id = id;
        record.name = name;
        m_inner->classes.push_back(std::move(record));
    }
    return place->second;
}

// --- settings -----------------------------------------------------------------------------------

void Session::reset()
{
    while (!m_parts.empty()) closePart(*m_parts.back());
    drafting = {};
    customerSymbolFile = false;
    strictDrawingInfo = false;
    rejectUnknownFonts = false;
    interfaceAvailable = true;
    strictLimits = false;
    patternSwitches = {0, 0, 0};
    infoWindow.clear();
    infoWindowOpen = false;
    syslog.clear();
    clock = nullptr;
    zeroLengthRefusals = 0;
    highlighted.clear();
    lastPartMessage.clear();
    recordingChanges = false;
    changes.clear();
}

} // namespace host
