#ifndef NXOPEN_TAGGEDOBJECT_HXX_INCLUDED
#define NXOPEN_TAGGEDOBJECT_HXX_INCLUDED

#include "../uf_defs.h"

namespace NXOpen {

class DllExport TaggedObject {
public:
    tag_t Tag() const { return m_tag; }
    virtual ~TaggedObject();

protected:
    explicit TaggedObject(tag_t tag) : m_tag(tag) {}
    TaggedObject(const TaggedObject &) = delete;
    TaggedObject &operator=(const TaggedObject &) = delete;

private:
    tag_t m_tag;
};

} // namespace NXOpen

#endif
