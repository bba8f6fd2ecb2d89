// The wrappers that the C++ layer hands out: one for each tag, made when it is first asked for.
#pragma once

#include "model/object.h"
#include "model/tag_table.h"

#include "uf_defs.h"

#include <unordered_set>

class UgObject;

// A wrapper outlives its object: whoever kept the pointer gets an exception from its members then,
// not a crash. Tags are never used again, so an entry never comes to mean something else.
class UgWrapperTable {
public:
    static UgWrapperTable &get();

    UgObject *find(tag_t tag); // null when no object of that tag lives

    // Wrappers that applications made and bound to a tag. They stand beside the table's own wrapper
    // of that tag and are only kept, so that their makers need not delete them.
    void keep(UgObject *wrapper) { m_kept.insert(wrapper); }
    void forget(UgObject *wrapper) { m_kept.erase(wrapper); }

private:
    UgObject *make(tag_t tag);
    static UgObject *makeFor(const host::Object &object);

    host::TagTable<UgObject *> m_wrappers;
    std::unordered_set<UgObject *> m_kept;
};
