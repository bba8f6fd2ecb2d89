#ifndef NXOPEN_NXOBJECTMANAGER_HXX_INCLUDED
#define NXOPEN_NXOBJECTMANAGER_HXX_INCLUDED

#include "TaggedObject.hxx"

namespace NXOpen {

class DllExport NXObjectManager {
public:
    // The same object for a tag as long as the tag is alive; NXException when it is not.
    static TaggedObject *Get(tag_t tag);
};

} // namespace NXOpen

#endif
