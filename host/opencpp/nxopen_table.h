// The objects of the newer interface: one for each tag, as long as the process.
#pragma once

#include "uf_defs.h"

#include <unordered_map>

namespace NXOpen {

class TaggedObject;

class ObjectTable {
public:
    static ObjectTable &get();
    TaggedObject *find(tag_t tag); // host::Failure when no object of that tag lives

private:
    static TaggedObject *make(tag_t tag);

    std::unordered_map<tag_t, TaggedObject *> m_objects;
};

} // namespace NXOpen
