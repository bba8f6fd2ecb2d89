// The root of all objects. The host owns every wrapper that it hands out, one for each live tag.
#ifndef UG_OBJECT_HXX_INCLUDED
#define UG_OBJECT_HXX_INCLUDED

#include "uf_defs.h"

class DllExport UgObject {
public:
    // Null for NULL_TAG and for an unknown or dead tag.
    static UgObject *find(tag_t tag);

    tag_t getTag() const { return m_tag; }
    bool isAlive() const; // a condemned object is: it can still be read

protected:
    UgObject() = default;
    virtual ~UgObject();
    // Binds a wrapper that an application made. The object table keeps it from then on: whoever made
    // it need not delete it.
    void setTag(tag_t tag);

private:
    friend class UgWrapperTable;
    UgObject(const UgObject &) = delete;
    UgObject &operator=(const UgObject &) = delete;
    tag_t m_tag = NULL_TAG;
};

#endif
