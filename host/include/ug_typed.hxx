#ifndef UG_TYPED_HXX_INCLUDED
#define UG_TYPED_HXX_INCLUDED

#include "ug_attributable.hxx"
#include "ug_extension.hxx"
#include "ug_in_part.hxx"

#include <string>

// An object with a type, a subtype and a name: everything in a part but the part.
class DllExport UgTypedObject : public virtual UgInPartObject,
                                public virtual UgAttributableObject,
                                public virtual UgExtensionObject {
public:
    int askType() const;
    int askSubtype() const;
    std::string getName() const;           // empty without a name
    void setName(const std::string &name); // at most 30 characters, kept as given

protected:
    UgTypedObject() = default;
    ~UgTypedObject() override;
    friend class UgWrapperTable;
};

#endif
