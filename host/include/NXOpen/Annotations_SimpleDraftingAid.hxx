#ifndef NXOPEN_ANNOTATIONS_SIMPLEDRAFTINGAID_HXX_INCLUDED
#define NXOPEN_ANNOTATIONS_SIMPLEDRAFTINGAID_HXX_INCLUDED

#include "TaggedObject.hxx"

#include <string>
#include <vector>

namespace NXOpen {
class ObjectTable;
}

namespace NXOpen::Annotations {

class DllExport UserSymbolPreferences {
public:
    enum SizeType { SizeTypeLengthHeight = 0, SizeTypeScaleAspectRatio = 1 };
};

// Notes and labels; ID symbols stand beside this class.
class DllExport SimpleDraftingAid : public TaggedObject {
public:
    ~SimpleDraftingAid() override;
    void GetUserSymbolSize(UserSymbolPreferences::SizeType *size_type, double *length_or_scale,
                           double *height_or_aspect_ratio);
    void SetUserSymbolSize(UserSymbolPreferences::SizeType size_type, double length_or_scale,
                           double height_or_aspect_ratio);

    // The displayed text of one stored line: references to attributes resolved.
    std::string GetEvaluatedText(const std::string &stored_line) const;

protected:
    explicit SimpleDraftingAid(tag_t tag) : TaggedObject(tag) {}
    friend class NXOpen::ObjectTable;
};

} // namespace NXOpen::Annotations

#endif
