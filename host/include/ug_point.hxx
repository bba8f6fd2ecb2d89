#ifndef UG_POINT_HXX_INCLUDED
#define UG_POINT_HXX_INCLUDED

#include "point3.hxx"
#include "ug_displayable.hxx"

class UgPart;

class DllExport UgPoint : public UgDisplayableObject {
public:
    // In the given part, or the work part; in the current sheet's view.
    static UgPoint *create(const Point3 &position, UgPart *owner = nullptr);
    Point3 getPosition() const;

protected:
    UgPoint();
    ~UgPoint() override;
    friend class UgWrapperTable;
};

#endif
