#ifndef UG_LINE_HXX_INCLUDED
#define UG_LINE_HXX_INCLUDED

#include "point3.hxx"
#include "ug_displayable.hxx"

class UgPart;

// A line of length zero is refused: create and both setters throw UgException.
class DllExport UgLine : public UgDisplayableObject {
public:
    static UgLine *create(const Point3 &start, const Point3 &end, UgPart *owner = nullptr);
    Point3 getStartPoint() const;
    Point3 getEndPoint() const;
    void setStartPoint(const Point3 &start);
    void setEndPoint(const Point3 &end);

protected:
    UgLine() = default;
    ~UgLine() override;
    friend class UgWrapperTable;
};

#endif
