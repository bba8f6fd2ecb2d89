// A persistent class of the tests' own: everything protected is open, and what the platform calls is
// written down.
#pragma once

#include "udo/udo.h"
#include "udo/udo_class.h"

#include <string>
#include <vector>

class Probe : public LumUg::UDO {
public:
    static constexpr const char *kClassName = "TEST_PROBE_V1";

    Probe() { ++s_alive; }
    explicit Probe(UgUDO *udo) : UDO(udo) { ++s_alive; }
    Probe(const Probe &other) : UDO(other) { ++s_alive; }
    Probe &operator=(const Probe &) = default;
    ~Probe() override { --s_alive; }

    void InfoObject() override { s_calls.push_back("info"); }
    void MemberDeletion(UgTypedObject *object) override { note("deleted", object); }
    void Update(UgTypedObject *object) override { note("updated", object); }
    LumUg::UDOClass *GetUDOClass() const override { return &mUDOClass; }
    static LumUg::UDO *CreateInstance() { return new Probe; }
    static LumUg::UDOClass mUDOClass;

    using UDO::attach;
    using UDO::children;
    using UDO::copySlots;
    using UDO::CreateUDO;
    using UDO::detach;
    using UDO::discard;
    using UDO::exchange;
    using UDO::firstChild;
    using UDO::get;
    using UDO::has;
    using UDO::sameSlots;
    using UDO::set;

    static inline int s_alive = 0; // wrappers
    static inline std::vector<std::string> s_calls;

private:
    static void note(const std::string &what, const UgTypedObject *object)
    {
        s_calls.push_back(what + (object ? " " + object->getName() : " null"));
    }
};

// A second class, to tell children apart by.
class OtherProbe : public LumUg::UDO {
public:
    LumUg::UDOClass *GetUDOClass() const override { return &mUDOClass; }
    static LumUg::UDO *CreateInstance() { return new OtherProbe; }
    static LumUg::UDOClass mUDOClass;
    using UDO::CreateUDO;
};

// A class without registration: its objects can be wrapped, never made.
class PlainProbe : public LumUg::UDO {
public:
    using UDO::CreateUDO;
    using UDO::UDO;
};
