// A small ID symbol (a balloon with one or two lines of text) that stands for a table row.
#pragma once

#include "udo/export.h"
#include "udo/slots.h"
#include "udo/udo.h"

#include "point3.hxx"
#include "uf_drf.h"
#include "ug_color.hxx"

#include <boost/shared_ptr.hpp>

#include <string>
#include <tuple>
#include <vector>

class Point2;
class UgDisplayableObject;

namespace QelFmt {

// A view on the record of one symbol: its row links to the record, and the record owns the symbol
// drawn on the sheet.
class QELFMT_API SymbolBase : public LumUg::UDO {
public:
    using Lines = std::vector<std::string>; // two; missing ones are empty

    SymbolBase();
    explicit SymbolBase(UgUDO *udo);
    ~SymbolBase() override;

    // --- what a generation stores ---------------------------------------------------------------
    virtual UgDisplayableObject *GetSymbolObject() const; // null when there is none
    virtual void ReleaseSymbolObject();                   // not deleted
    virtual double GetX() const;
    virtual void SetX(double x);
    virtual double GetY() const;
    virtual void SetY(double y);
    virtual void SetSymbolObject(UgDisplayableObject *symbol);

    static boost::shared_ptr<SymbolBase> createSymbol(); // of the current generation, unbound
    // An ID symbol becomes the symbol's object; anything else is left alone.
    static boost::shared_ptr<SymbolBase> createSymbol(const Point3 &point,
                                                      const UgDisplayableObject *object);

    void createSymbolGeometry(const Point3 &origin, UF_DRF_id_symbol_type_e type, Lines lines);
    void createSymbolGeometry(UF_DRF_id_symbol_type_e type, Lines lines); // at the stored origin
    void updateSymbolGeometry(Lines lines);
    void deleteSymbolGeometry();
    // The size follows the text that is seen. The two numbers are the text's size and aspect.
    void setSymbolPreferences(int idType, double textSize, double textAspect, UgColor color,
                              int layer);
    std::string zone() const; // of the current sheet that the symbol lies in
    // A view on this record: there is one generation.
    boost::shared_ptr<SymbolBase> checkAndUpgrade();

private:
    int calculateSymbolSize() const;
    void setSymbol(unsigned tag);
};

class QELFMT_API SymbolV1 : public SymbolBase {
public:
    // The stored layout. Parts in the field hold these indices: append, never renumber.
    static constexpr LumUg::DoubleSlot kX{0, "X"}; // of the origin on the sheet
    static constexpr LumUg::DoubleSlot kY{1, "Y"};
    static constexpr std::tuple kLayout{kX, kY};
    static_assert(LumUg::isDense(kLayout));

    SymbolV1();
    explicit SymbolV1(UgUDO *udo);
    ~SymbolV1() override;

    LumUg::UDOClass *GetUDOClass() const override;
    UgDisplayableObject *GetSymbolObject() const override;
    void ReleaseSymbolObject() override;
    double GetX() const override;
    void SetX(double x) override;
    double GetY() const override;
    void SetY(double y) override;
    void SetSymbolObject(UgDisplayableObject *symbol) override;

    static LumUg::UDO *CreateInstance();
    static LumUg::UDOClass mUDOClass;
};

// The lines with their references to attributes resolved; a missing attribute is added, empty.
QELFMT_API std::vector<std::string> evaluateSymbolText(const std::vector<std::string> &lines);

} // namespace QelFmt
