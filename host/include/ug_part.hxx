#ifndef UG_PART_HXX_INCLUDED
#define UG_PART_HXX_INCLUDED

#include "ug_attributable.hxx"
#include "ug_typed.hxx"

#include <string>

class DllExport UgPart : public virtual UgAttributableObject {
public:
    bool isMillimeters() const;
    std::string getFullName() const;
    UgTypedObject *iterateFirst() const;                     // in order of creation
    UgTypedObject *iterateNext(UgTypedObject *object) const; // null at the end

protected:
    UgPart() = default;
    ~UgPart() override;
    friend class UgWrapperTable;
};

#endif
