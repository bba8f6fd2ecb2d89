// An object that has just been made and belongs to nobody yet.
#pragma once

#include "uf_obj.h"

namespace QelFmt {

// Deletes it again unless it was kept: what fails halfway leaves nothing on the sheet.
class NewObject {
public:
    explicit NewObject(tag_t object) : m_object(object) {}
    ~NewObject()
    {
        if (m_object != NULL_TAG) UF_OBJ_delete_object(m_object);
    }
    NewObject(NewObject &&) = delete; // neither copied nor moved: one owner

    void keep() { m_object = NULL_TAG; }

private:
    tag_t m_object;
};

} // namespace QelFmt
