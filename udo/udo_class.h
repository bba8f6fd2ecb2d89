// The registration of one persistent class: its stored name, and the factory that turns a stored
// object back into its wrapper.
#pragma once

#include "udo/export.h"
#include "udo/udo.h"

#include "uf_udobj.h"

#include <memory>
#include <string>

namespace LumUg {

// One static object a class, all in registrations.cpp, built while the library is loaded. The class
// name is part of the stored file format; class ids live as long as the process.
class QELFMT_API UDOClass {
public:
    using Factory = UDO *(*)();

    // Registers the class and its three callbacks with the platform, opening a session first when
    // none is; a name that is registered already only lends its id. A failing platform call raises
    // UgException and leaves the name out of the directory.
    UDOClass(std::string class_name, std::string friendly_name, Factory factory);

    static UDOClass *GetClass(const std::string &class_name); // null when not registered
    unsigned GetClassId() const { return m_class_id; }        // 0 until registered

    // True when a class of that name is registered here and the UDO is of it.
    static bool sameClass(const UgUDO *udo, const std::string &class_name);
    // Does nothing for a name that is not registered.
    static void setOwnedObjSelection(const std::string &class_name,
                                     UF_UDOBJ_owned_object_selection_e mode);

private:
    friend class UDO;
    // The caller owns the result; null for a class that is not registered here.
    static UDO *CreateInstance(const UgUDO *udo);
    static const UDOClass *ofId(unsigned class_id); // null like above
    static const UDOClass *of(const UgUDO &udo);    // null like above
    UDO *wrap(const UgUDO &udo) const;
    // A wrapper without an object, which tells what its class is.
    const UDO &sample() const;

    Factory m_factory;
    unsigned m_class_id;
    mutable std::unique_ptr<UDO> m_sample;
};

// The class name of a UDO; a failing platform call raises UgException.
QELFMT_API std::string GetUDOClassName(UgUDO *udo);

} // namespace LumUg
