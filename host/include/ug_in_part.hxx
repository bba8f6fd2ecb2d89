#ifndef UG_IN_PART_HXX_INCLUDED
#define UG_IN_PART_HXX_INCLUDED

#include "ug_object.hxx"

class UgPart;

// An object that lives in a part.
class DllExport UgInPartObject : public virtual UgObject {
public:
    UgPart *getOwningPart() const;

protected:
    ~UgInPartObject() override;
};

#endif
