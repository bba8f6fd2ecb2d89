#ifndef UG_DISPLAYABLE_HXX_INCLUDED
#define UG_DISPLAYABLE_HXX_INCLUDED

#include "ug_color.hxx"
#include "ug_typed.hxx"

class DllExport UgDisplayableObject : public UgTypedObject {
public:
    void setColor(UgColor color);
    UgColor getColor() const;
    void setLayer(int layer); // 1 to 256
    int getLayer() const;
    void setLineFont(int font); // kept as given
    int getLineFont() const;
    void setLineWidth(int width);
    int getLineWidth() const;

protected:
    explicit UgDisplayableObject(tag_t tag = NULL_TAG);
    ~UgDisplayableObject() override;
    friend class UgWrapperTable;
};

#endif
