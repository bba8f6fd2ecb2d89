// The platform makes new records in the work part. What replaces a record has to stand beside it.
#pragma once

#include "udo/udo.h"

#include "uf_obj.h"
#include "uf_part.h"
#include "ug_exception.hxx"

namespace QelFmt {

// Runs `make` with the record's part as the work part. A platform that refuses the change gets the
// new records in the work part as it is.
template <class Make> auto inPartOf(const LumUg::UDO &record, Make make)
{
    tag_t part = NULL_TAG;
    UgException::throwOnFailure(UF_OBJ_ask_owning_part(record.tag(), &part));
    const tag_t before = UF_ASSEM_ask_work_part();
    if (part == before || UF_ASSEM_set_work_part(part) != 0) return make();
    try {
        auto made = make();
        UgException::throwOnFailure(UF_ASSEM_set_work_part(before));
        return made;
    } catch (...) {
        UF_ASSEM_set_work_part(before);
        throw;
    }
}

} // namespace QelFmt
