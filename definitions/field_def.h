// What a field of a block or of a table row is: where its text stands, how it looks, where its value
// comes from and how its box is drawn.
#pragma once

#include "udo/class_names.h"
#include "udo/export.h"
#include "udo/slots.h"
#include "udo/udo.h"
#include "udo/udo_class.h"

#include <string>
#include <tuple>
#include <vector>

// A record of a definition file, linked from its block or table definition, or of the copy that a
// placed block keeps of its definition. The codes are interpreted by the placed field; lengths are
// in the units of the block. A slot that is not stored reads as 0 or empty, so that records written
// by an older editor stay readable.
class QELFMT_API TrFieldDefV1 : public LumUg::UDO {
public:
    static constexpr const char *className = QelFmt::kFieldDefV1Classname;

    // The stored layout. Parts in the field hold these indices: append, never renumber.
    static constexpr LumUg::StringSlot kId{
        0, "Id"}; // the key by which a placed field finds its definition
    static constexpr LumUg::StringSlot kRegistryString{
        1, "RegistryString"}; // setting that supplies the value
    static constexpr LumUg::StringSlot kBroadcastString{
        2, "BroadcastString"}; // name under which the value is shared with other fields
    static constexpr LumUg::StringSlot kPartAttrString{
        3, "PartAttrString"}; // part attribute that supplies or takes the value
    static constexpr LumUg::StringSlot kTextFontName{4, "TextFontName"};
    // The default text, one string a line.
    static constexpr LumUg::StringTail kDefaultString{5, "DefaultString"};

    static constexpr LumUg::DoubleSlot kTextAngle{0, "TextAngle"};
    static constexpr LumUg::DoubleSlot kTextAspect{1, "TextAspect"};
    static constexpr LumUg::DoubleSlot kLineSpace{2, "LineSpace"}; // factor
    static constexpr LumUg::DoubleSlot kMarginHeight{
        3, "MarginHeight"}; // above and below the text in its box
    static constexpr LumUg::DoubleSlot kMarginWidth{4, "MarginWidth"}; // left and right of it
    static constexpr LumUg::DoubleSlot kTextSize{5, "TextSize"};       // height of a character
    static constexpr LumUg::DoubleSlot kLocationX{
        6, "LocationX"}; // of the reference point, from the block's or the row's
    static constexpr LumUg::DoubleSlot kLocationY{7, "LocationY"};
    static constexpr LumUg::DoubleSlot kHeight{8, "Height"}; // of the box
    static constexpr LumUg::DoubleSlot kWidth{9, "Width"};
    static constexpr LumUg::DoubleSlot kAltTextAspect{10, "AltTextAspect"}; // of long values
    static constexpr LumUg::DoubleSlot kUserSymbolLength{11, "UserSymbolLength"};
    static constexpr LumUg::DoubleSlot kUserSymbolHeight{12, "UserSymbolHeight"};
    static constexpr LumUg::DoubleSlot kAltTextSize{13, "AltTextSize"}; // of long values
    static constexpr LumUg::DoubleSlot kCharSpaceFactor{14, "CharSpaceFactor"};

    static constexpr LumUg::IntSlot kUseDefaultInitially{0, "UseDefaultInitially"};
    static constexpr LumUg::IntSlot kBottomBorderPolicy{1, "BottomBorderPolicy"};
    static constexpr LumUg::IntSlot kLeftBorderPolicy{2, "LeftBorderPolicy"};
    static constexpr LumUg::IntSlot kMiddleBorderPolicy{
        3, "MiddleBorderPolicy"}; // between the lines of a value
    static constexpr LumUg::IntSlot kRightBorderPolicy{4, "RightBorderPolicy"};
    static constexpr LumUg::IntSlot kTopBorderPolicy{5, "TopBorderPolicy"};
    static constexpr LumUg::IntSlot kBroadcastTableType{6, "BroadcastTableType"};
    static constexpr LumUg::IntSlot kDefaultType{7, "DefaultType"};
    static constexpr LumUg::IntSlot kTextColor{8, "TextColor"};
    static constexpr LumUg::IntSlot kBorderColor{9, "BorderColor"};
    static constexpr LumUg::IntSlot kFlipText{10, "FlipText"};
    static constexpr LumUg::IntSlot kMultiline{11, "Multiline"}; // the value may have several lines
    static constexpr LumUg::IntSlot kRelativeOffsetType{
        12, "RelativeOffsetType"}; // what the location is relative to
    static constexpr LumUg::IntSlot kTextWidthType{13, "TextWidthType"};
    static constexpr LumUg::IntSlot kTextJustification{14, "TextJustification"};
    static constexpr LumUg::IntSlot kTextSite{15,
                                              "TextSite"}; // the point of the text that is placed
    static constexpr LumUg::IntSlot kIndentation{16, "Indentation"};
    static constexpr LumUg::IntSlot kSymbolFile{17, "SymbolFile"};
    static constexpr LumUg::IntSlot kAltTextSizeNumChars{
        18, "AltTextSizeNumChars"}; // from this length on
    static constexpr LumUg::IntSlot kZoneField{19, "ZoneField"};
    static constexpr LumUg::IntSlot kBroadcastType{
        20, "BroadcastType"}; // with the sheet or the whole part
    static constexpr LumUg::IntSlot kAltTextAspectNumChars{
        21, "AltTextAspectNumChars"}; // from this length on
    static constexpr LumUg::IntSlot kSyncAllDrawings{
        22, "SyncAllDrawings"}; // one value on all sheets of the part

    static constexpr std::tuple kLayout{kId,
                                        kRegistryString,
                                        kBroadcastString,
                                        kPartAttrString,
                                        kTextFontName,
                                        kDefaultString,
                                        kTextAngle,
                                        kTextAspect,
                                        kLineSpace,
                                        kMarginHeight,
                                        kMarginWidth,
                                        kTextSize,
                                        kLocationX,
                                        kLocationY,
                                        kHeight,
                                        kWidth,
                                        kAltTextAspect,
                                        kUserSymbolLength,
                                        kUserSymbolHeight,
                                        kAltTextSize,
                                        kCharSpaceFactor,
                                        kUseDefaultInitially,
                                        kBottomBorderPolicy,
                                        kLeftBorderPolicy,
                                        kMiddleBorderPolicy,
                                        kRightBorderPolicy,
                                        kTopBorderPolicy,
                                        kBroadcastTableType,
                                        kDefaultType,
                                        kTextColor,
                                        kBorderColor,
                                        kFlipText,
                                        kMultiline,
                                        kRelativeOffsetType,
                                        kTextWidthType,
                                        kTextJustification,
                                        kTextSite,
                                        kIndentation,
                                        kSymbolFile,
                                        kAltTextSizeNumChars,
                                        kZoneField,
                                        kBroadcastType,
                                        kAltTextAspectNumChars,
                                        kSyncAllDrawings};
    static_assert(LumUg::isDense(kLayout));

    TrFieldDefV1();
    explicit TrFieldDefV1(UgUDO *udo);
    TrFieldDefV1(const TrFieldDefV1 &) = default; // views the same record
    TrFieldDefV1 &operator=(const TrFieldDefV1 &) = default;
    ~TrFieldDefV1() override;

    std::string GetId() const { return get(kId); }
    void SetId(const std::string &value) { set(kId, value); }
    std::string GetRegistryString() const { return get(kRegistryString); }
    void SetRegistryString(const std::string &value) { set(kRegistryString, value); }
    std::string GetBroadcastString() const { return get(kBroadcastString); }
    void SetBroadcastString(const std::string &value) { set(kBroadcastString, value); }
    std::string GetPartAttrString() const { return get(kPartAttrString); }
    void SetPartAttrString(const std::string &value) { set(kPartAttrString, value); }
    std::string GetTextFontName() const { return get(kTextFontName); }
    void SetTextFontName(const std::string &value) { set(kTextFontName, value); }
    std::vector<std::string> GetDefaultString() const { return get(kDefaultString); }
    void SetDefaultString(const std::vector<std::string> &lines) { set(kDefaultString, lines); }

    double GetTextAngle() const { return get(kTextAngle); }
    void SetTextAngle(double value) { set(kTextAngle, value); }
    double GetTextAspect() const { return get(kTextAspect); }
    void SetTextAspect(double value) { set(kTextAspect, value); }
    double GetLineSpace() const { return get(kLineSpace); }
    void SetLineSpace(double value) { set(kLineSpace, value); }
    double GetMarginHeight() const { return get(kMarginHeight); }
    void SetMarginHeight(double value) { set(kMarginHeight, value); }
    double GetMarginWidth() const { return get(kMarginWidth); }
    void SetMarginWidth(double value) { set(kMarginWidth, value); }
    double GetTextSize() const { return get(kTextSize); }
    void SetTextSize(double value) { set(kTextSize, value); }
    double GetLocationX() const { return get(kLocationX); }
    void SetLocationX(double value) { set(kLocationX, value); }
    double GetLocationY() const { return get(kLocationY); }
    void SetLocationY(double value) { set(kLocationY, value); }
    double GetHeight() const { return get(kHeight); }
    void SetHeight(double value) { set(kHeight, value); }
    double GetWidth() const { return get(kWidth); }
    void SetWidth(double value) { set(kWidth, value); }
    double GetAltTextAspect() const { return get(kAltTextAspect); }
    void SetAltTextAspect(double value) { set(kAltTextAspect, value); }
    double GetUserSymbolLength() const { return get(kUserSymbolLength); }
    void SetUserSymbolLength(double value) { set(kUserSymbolLength, value); }
    double GetUserSymbolHeight() const { return get(kUserSymbolHeight); }
    void SetUserSymbolHeight(double value) { set(kUserSymbolHeight, value); }
    double GetAltTextSize() const { return get(kAltTextSize); }
    void SetAltTextSize(double value) { set(kAltTextSize, value); }
    double GetCharSpaceFactor() const { return get(kCharSpaceFactor); }
    void SetCharSpaceFactor(double value) { set(kCharSpaceFactor, value); }

    int GetUseDefaultInitially() const { return get(kUseDefaultInitially); }
    void SetUseDefaultInitially(int value) { set(kUseDefaultInitially, value); }
    int GetBottomBorderPolicy() const { return get(kBottomBorderPolicy); }
    void SetBottomBorderPolicy(int value) { set(kBottomBorderPolicy, value); }
    int GetLeftBorderPolicy() const { return get(kLeftBorderPolicy); }
    void SetLeftBorderPolicy(int value) { set(kLeftBorderPolicy, value); }
    int GetMiddleBorderPolicy() const { return get(kMiddleBorderPolicy); }
    void SetMiddleBorderPolicy(int value) { set(kMiddleBorderPolicy, value); }
    int GetRightBorderPolicy() const { return get(kRightBorderPolicy); }
    void SetRightBorderPolicy(int value) { set(kRightBorderPolicy, value); }
    int GetTopBorderPolicy() const { return get(kTopBorderPolicy); }
    void SetTopBorderPolicy(int value) { set(kTopBorderPolicy, value); }
    int GetBroadcastTableType() const { return get(kBroadcastTableType); }
    void SetBroadcastTableType(int value) { set(kBroadcastTableType, value); }
    int GetDefaultType() const { return get(kDefaultType); }
    void SetDefaultType(int value) { set(kDefaultType, value); }
    int GetTextColor() const { return get(kTextColor); }
    void SetTextColor(int value) { set(kTextColor, value); }
    int GetBorderColor() const { return get(kBorderColor); }
    void SetBorderColor(int value) { set(kBorderColor, value); }
    int GetFlipText() const { return get(kFlipText); }
    void SetFlipText(int value) { set(kFlipText, value); }
    int GetMultiline() const { return get(kMultiline); }
    void SetMultiline(int value) { set(kMultiline, value); }
    int GetRelativeOffsetType() const { return get(kRelativeOffsetType); }
    void SetRelativeOffsetType(int value) { set(kRelativeOffsetType, value); }
    int GetTextWidthType() const { return get(kTextWidthType); }
    void SetTextWidthType(int value) { set(kTextWidthType, value); }
    int GetTextJustification() const { return get(kTextJustification); }
    void SetTextJustification(int value) { set(kTextJustification, value); }
    int GetTextSite() const { return get(kTextSite); }
    void SetTextSite(int value) { set(kTextSite, value); }
    int GetIndentation() const { return get(kIndentation); }
    void SetIndentation(int value) { set(kIndentation, value); }
    int GetSymbolFile() const { return get(kSymbolFile); }
    void SetSymbolFile(int value) { set(kSymbolFile, value); }
    int GetAltTextSizeNumChars() const { return get(kAltTextSizeNumChars); }
    void SetAltTextSizeNumChars(int value) { set(kAltTextSizeNumChars, value); }
    int GetZoneField() const { return get(kZoneField); }
    void SetZoneField(int value) { set(kZoneField, value); }
    int GetBroadcastType() const { return get(kBroadcastType); }
    void SetBroadcastType(int value) { set(kBroadcastType, value); }
    int GetAltTextAspectNumChars() const { return get(kAltTextAspectNumChars); }
    void SetAltTextAspectNumChars(int value) { set(kAltTextAspectNumChars, value); }
    int GetSyncAllDrawings() const { return get(kSyncAllDrawings); }
    void SetSyncAllDrawings(int value) { set(kSyncAllDrawings, value); }

    // Copies every attribute of the source into this record, which is made when there is none.
    void Clone(const TrFieldDefV1 &source);
    // Whether a placed field's copy still agrees with the definition file. A view without a record
    // is unequal to everything.
    bool operator==(const TrFieldDefV1 &other) const;
    bool operator!=(const TrFieldDefV1 &other) const { return !(*this == other); }

    void InfoObject() override;
    LumUg::UDOClass *GetUDOClass() const override { return &mUDOClass; }
    static LumUg::UDO *CreateInstance();
    static LumUg::UDOClass mUDOClass;
};
