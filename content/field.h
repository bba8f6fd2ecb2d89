// A text field of a block or of a table row, as it stands on a sheet.
#pragma once

#include "udo/export.h"
#include "udo/slots.h"
#include "udo/udo.h"

#include "point2.hxx"
#include "point3.hxx"

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

#include <optional>
#include <string>
#include <tuple>
#include <vector>

class TrBlockBase;
class TrEntryBase;
class TrFieldDefV1;
class UgAttributableObject;
class UgDisplayableObject;
class UgLine;

// The box of a field: p0 on its base, then round. The height may be negative.
struct Rect {
    Point3 p0, p1, p2, p3;
};

// What both generations store alike. Parts in the field hold these indices: append, never renumber.
struct FieldSlots {
    static constexpr LumUg::StringSlot kFieldDefName{0, "FieldDefName"};
    static constexpr LumUg::DoubleSlot kX{0, "X"}; // of the note's origin, as last placed
    static constexpr LumUg::DoubleSlot kY{1, "Y"};
    static constexpr LumUg::IntSlot kHasBottomBorder{0, "HasBottomBorder"};
    static constexpr LumUg::IntSlot kHasLeftBorder{1, "HasLeftBorder"};
    static constexpr LumUg::IntSlot kHasMiddleBorder{2, "HasMiddleBorder"};
    static constexpr LumUg::IntSlot kHasRightBorder{3, "HasRightBorder"};
    static constexpr LumUg::IntSlot kHasTopBorder{4, "HasTopBorder"};
    static constexpr LumUg::IntSlot kNumberOfLines{5,
                                                   "NumberOfLines"}; // absent until it has a value
    static constexpr std::tuple kLayout{kFieldDefName,
                                        kX,
                                        kY,
                                        kHasBottomBorder,
                                        kHasLeftBorder,
                                        kHasMiddleBorder,
                                        kHasRightBorder,
                                        kHasTopBorder,
                                        kNumberOfLines};
    static_assert(LumUg::isDense(kLayout));
};

// A view on the record of one field. The record owns the note that shows the value and the lines of
// the borders, and links to the field's definition inside the private copy that its block keeps;
// the lines of the value are attributes "VALUE0", "VALUE1", ... of the record. Whoever hands out a
// field tells it where the base point of its block or row is.
class QELFMT_API TrFieldBase : public LumUg::UDO, public FieldSlots {
public:
    using Value = std::vector<std::string>; // a line each
    using BaseLocationCmd = boost::function<std::vector<double>()>;

    TrFieldBase();
    explicit TrFieldBase(UgUDO *udo);
    ~TrFieldBase() override;

    // --- what a generation stores ---------------------------------------------------------------
    virtual std::string GetFieldDefName() const;
    virtual void SetFieldDefName(const std::string &name);
    virtual double GetX() const;
    virtual void SetX(double x);
    virtual double GetY() const;
    virtual void SetY(double y);
    virtual int GetHasBottomBorder() const;
    virtual void SetHasBottomBorder(int on);
    virtual int GetHasLeftBorder() const;
    virtual void SetHasLeftBorder(int on);
    virtual int GetHasMiddleBorder() const;
    virtual void SetHasMiddleBorder(int on);
    virtual int GetHasRightBorder() const;
    virtual void SetHasRightBorder(int on);
    virtual int GetHasTopBorder() const;
    virtual void SetHasTopBorder(int on);
    virtual int GetNumberOfLines() const;
    virtual void SetNumberOfLines(int lines);
    virtual void ModifyValue(const Value &lines);
    virtual void SetDefinition(const TrFieldDefV1 &def);
    virtual void RecreateNote();
    virtual TrFieldDefV1 GetDefinition() const; // unbound when there is none
    virtual int GetIsEditable() const;
    virtual void SetIsEditable(int editable);
    virtual void RemoveDraftingObjects(bool keepNote); // released, not deleted
    virtual Value GetNoteValue() const;                // the note's lines as stored; empty: no note
    virtual boost::shared_ptr<TrBlockBase> GetBlock() const; // empty when it stands in none
    virtual std::vector<UgLine *> GetBorders() const;
    virtual UgDisplayableObject *GetNote() const; // null when there is none
    virtual void SetNote(UgDisplayableObject *note);
    virtual void RemoveNote();                              // released, not deleted
    virtual void ModifyBorder(const Rect &rect, int which); // 0 bottom, left, middle, right, 4 top

    // --- placement ------------------------------------------------------------------------------
    double CalcHeight() const;        // of the text and its two margins
    void locate();                    // by the definition, relative to the base point
    Point2 placeByDefinition() const; // where locate() would put it; the field has a definition
    void Move();                      // the note to the stored point
    // The borders of a box of signed height; nothing while it has no width or no height.
    void UpdateBorders(double h);
    // The borders of a field that stands in a block: as high as its cell, or as its text in a cell
    // without a height; downwards where the text hangs below its point.
    void fitBorders();
    BaseLocationCmd &getBaseLocationCmd() { return m_baseLocationCmd; }

    // --- value ----------------------------------------------------------------------------------
    Value GetValue() const; // never without a line
    Value EvaluateNoteValue(const Value &lines) const;
    bool IsSameValue(const Value &lines) const; // as the note's stored text
    void InitValues();                          // of a new field, from its definition
    void RebroadcastValue();
    // What the definition would give the field now, wherever it comes from.
    Value defaultValue() const;

    // --- against a new definition, and older generations ------------------------------------------
    void UpdateDefinition(const TrFieldDefV1 &def);
    // Makes this field the keeper of the definition it links to, for a definition that is about to
    // lose its block. The next SetDefinition deletes it.
    void keepDefinition();
    // A view on this record when it is current, else the record that replaces it.
    boost::shared_ptr<TrFieldBase> checkAndUpgrade();
    boost::shared_ptr<TrFieldBase> upgrade();

protected:
    // A note for a value; an empty value has none.
    void CreateNote(const Value &lines);
    UgDisplayableObject *CreateUgNote(const Value &lines);
    void UpdateNote(const Value &lines);
    void rewriteNote(const Value &lines);
    void SetToDefaultValue();

    void BroadcastValue(UgAttributableObject *target, const Value &lines);
    Value GetBroadcastValue(UgAttributableObject *target) const;
    // The point that carries a sheet's attributes, made when missing; 0 is the current sheet. Null
    // when no sheet is current.
    UgAttributableObject *GetBroadcastPoint(unsigned drawingTag) const;
    UgAttributableObject *findBroadcastPoint(unsigned drawingTag) const; // null when missing
    bool getSyncAllDrawings() const;

    struct Borders;               // field_border.cpp
    Borders *m_borders = nullptr; // while all sides are being drawn

    boost::shared_ptr<TrEntryBase> owningEntry() const; // empty for a field of a block
    void broadcast(const Value &lines);
    bool hasBorders() const;
    bool hasInitialValue() const;

private:
    void setNotePrefs();
    void FlipNote();
    std::string getBlockId() const;

    std::vector<double> baseLocation() const;
    void putOnTextLayer(UgDisplayableObject &note) const;
    void setUserSymbolSize(double length, double height);
    void refreshNotePrefs();
    void deleteSurplusBorders(const Borders &borders);
    std::string broadcastTitle() const;
    Value valueOnOtherSheets() const;
    Value registryValue() const;
    Value computeDefault(bool addMissing) const;
    Value attributeDefault(const Value &registryLines, bool addMissing) const;
    UgAttributableObject *attributeSource(int defaultType, bool addMissing) const;

    BaseLocationCmd m_baseLocationCmd;
};

// The current generation.
class QELFMT_API TrFieldV1 : public TrFieldBase {
public:
    static constexpr LumUg::IntSlot kIsEditable{6, "IsEditable", 1};
    static constexpr LumUg::LinkSlot kDefinition{LumUg::kDefinitionLink, 0, "Definition"};
    // Only after the block has lost the definition that the field was made from.
    static constexpr LumUg::ChildList<TrFieldDefV1> kKeptDefinition{LumUg::kChildLink,
                                                                    "KeptDefinition"};
    static constexpr std::tuple kLayout =
        std::tuple_cat(FieldSlots::kLayout, std::tuple{kIsEditable, kDefinition, kKeptDefinition});
    static_assert(LumUg::isDense(kLayout));

    TrFieldV1();
    explicit TrFieldV1(UgUDO *udo);
    ~TrFieldV1() override;

    LumUg::UDOClass *GetUDOClass() const override;
    void ModifyValue(const Value &lines) override;
    void SetDefinition(const TrFieldDefV1 &def) override;
    void RecreateNote() override;
    TrFieldDefV1 GetDefinition() const override;
    int GetIsEditable() const override;
    void SetIsEditable(int editable) override;
    void RemoveDraftingObjects(bool keepNote) override;
    boost::shared_ptr<TrBlockBase> GetBlock() const override;
    UgDisplayableObject *GetNote() const override;
    void SetNote(UgDisplayableObject *note) override;
    void ModifyBorder(const Rect &rect, int which) override;

    static LumUg::UDO *CreateInstance();
    static LumUg::UDOClass mUDOClass;

private:
    using StoredLines = std::vector<std::optional<std::string>>; // an attribute each, or none

    void changeValue(const Value &lines);
    void restore(int count, const StoredLines &attributes, bool hadNote, const Value &noteLines);
    void followRestored(TrEntryBase &entry) const;
    void storeLines(const Value &lines);
    void keepInAttributes(const Value &lines); // all of them
    void deleteNote();
    void modifyBorder(Borders &borders, const Rect &rect, int which);
    void drawBorder(Borders &borders, const Point3 &start, const Point3 &end);
    void chooseStyle(Borders &borders) const;
};

// The older generation: it can be read and upgraded, not edited.
class QELFMT_API ZemFieldV1 : public TrFieldBase {
public:
    static constexpr std::tuple kLayout = FieldSlots::kLayout;

    ZemFieldV1();
    explicit ZemFieldV1(UgUDO *udo);
    ~ZemFieldV1() override;

    LumUg::UDOClass *GetUDOClass() const override;
    UgDisplayableObject *GetNote() const override; // of the platform's object

    static LumUg::UDO *CreateInstance();
    static LumUg::UDOClass mUDOClass;
};
