#include "content/symbol.h"

#include "content/new_object.h"
#include "content/note_style.h"
#include "content/note_text.h"
#include "drawing/drawing.h"
#include "drawing/sheet_view.h"
#include "foundation/application.h"
#include "foundation/log.h"
#include "foundation/registry.h"

#include "uf_obj.h"
#include "ug_displayable.hxx"
#include "ug_exception.hxx"
#include "ug_session.hxx"

#include <algorithm>

namespace QelFmt {

namespace {

constexpr double kSmallestSize = 13.0;

bool isIdSymbol(const UgTypedObject &object)
{
    return object.askType() == UF_drafting_entity_type &&
           object.askSubtype() == UF_draft_id_symbol_subtype;
}

} // namespace

SymbolBase::SymbolBase() = default;
SymbolBase::SymbolBase(UgUDO *udo) : LumUg::UDO(udo) {}
SymbolBase::~SymbolBase() = default;

UgDisplayableObject *SymbolBase::GetSymbolObject() const { return nullptr; }
void SymbolBase::ReleaseSymbolObject() {}
double SymbolBase::GetX() const { return 0.0; }
void SymbolBase::SetX(double) {}
double SymbolBase::GetY() const { return 0.0; }
void SymbolBase::SetY(double) {}
void SymbolBase::SetSymbolObject(UgDisplayableObject *) {}

boost::shared_ptr<SymbolBase> SymbolBase::createSymbol()
{
    return boost::shared_ptr<SymbolBase>(new SymbolV1);
}

boost::shared_ptr<SymbolBase> SymbolBase::createSymbol(const Point3 &point,
                                                       const UgDisplayableObject *object)
{
    const boost::shared_ptr<SymbolBase> symbol = createSymbol();
    symbol->SetX(point[0]);
    NewObject fresh(symbol->tag());
    symbol->SetY(point[1]);
    if (object && isIdSymbol(*object))
        symbol->SetSymbolObject(const_cast<UgDisplayableObject *>(object));
    fresh.keep();
    return symbol;
}

boost::shared_ptr<SymbolBase> SymbolBase::checkAndUpgrade()
{
    return boost::shared_ptr<SymbolBase>(new SymbolV1(GetUdoObject()));
}

// --- on the sheet -----------------------------------------------------------------------------------

void SymbolBase::createSymbolGeometry(const Point3 &origin, UF_DRF_id_symbol_type_e type,
                                      Lines lines)
{
    lines.resize(2);
    QELFMT_INFO << "symbol line 1 = " << lines[0];
    QELFMT_INFO << "symbol line 2 = " << lines[1];
    double at[3] = {origin[0], origin[1], origin[2]};
    tag_t tag = NULL_TAG;
    UgException::throwOnFailure(
        UF_DRF_create_id_symbol(type, lines[0].c_str(), lines[1].c_str(), at, UF_DRF_without_leader,
                                UF_DRF_leader_attach_screen, nullptr, at, &tag));
    NewObject fresh(tag);
    SetX(origin[0]);
    SetY(origin[1]);
    setSymbol(tag);
    fresh.keep();
    putOnSheetOf(*this, tag);
}

void SymbolBase::createSymbolGeometry(UF_DRF_id_symbol_type_e type, Lines lines)
{
    createSymbolGeometry(Point3(GetX(), GetY(), 0.0), type, std::move(lines));
}

void SymbolBase::setSymbol(unsigned tag)
{
    SetSymbolObject(dynamic_cast<UgDisplayableObject *>(UgObject::find(tag)));
}

// The second line is passed only when it says something: a symbol with one line is drawn larger.
void SymbolBase::updateSymbolGeometry(Lines lines)
{
    const UgDisplayableObject *symbol = GetSymbolObject();
    if (!symbol) return;
    lines.resize(2);
    if (lines[1].empty()) lines.pop_back();
    replaceText(symbol->getTag(), lines);
}

// A symbol that the platform will not delete stays the record's.
void SymbolBase::deleteSymbolGeometry()
{
    UgDisplayableObject *symbol = GetSymbolObject();
    if (!symbol) return;
    ReleaseSymbolObject();
    if (const int failure = UF_OBJ_delete_object(symbol->getTag())) {
        SetSymbolObject(symbol);
        UgException::throwOnFailure(failure);
    }
}

// The longest line as it is seen decides; two lines need more room than one. The fraction is
// dropped.
int SymbolBase::calculateSymbolSize() const
{
    const UgDisplayableObject *symbol = GetSymbolObject();
    if (!symbol) return 0;
    const Lines lines = evaluateSymbolText(NoteText(symbol->getTag()).lines());
    std::size_t longest = 0;
    for (const std::string &line : lines) longest = std::max(longest, charactersIn(line));
    const double size = static_cast<double>(longest) * (lines.size() == 1 ? 4.3333 : 5.5);
    QELFMT_INFO << "symbol size = " << size;
    return static_cast<int>(size);
}

void SymbolBase::setSymbolPreferences(int idType, double textSize, double textAspect, UgColor color,
                                      int layer)
{
    UgDisplayableObject *symbol = GetSymbolObject();
    if (!symbol) return;
    AnnotationPreferences prefs(symbol->getTag());
    prefs.ints[UF_DRF_MPI_id_symbol_type] = idType;
    prefs.ints[UF_DRF_MPI_id_symbol_density] =
        Application::getRegistry()->readIntEntry("Format Defaults", "QEL_SymbolDensity", 1);
    prefs.reals[UF_DRF_MPR_id_symbol_size] =
        std::max(kSmallestSize, static_cast<double>(calculateSymbolSize()));
    if (textSize > 0.0) prefs.reals[UF_DRF_MPR_char_size] = textSize;
    if (textAspect > 0.0) prefs.reals[UF_DRF_MPR_aspect_ratio] = textAspect;
    prefs.write();
    symbol->setColor(color);
    symbol->setLayer(layer);
    UgSession::setLayerStatus(layer, 2);
}

std::string SymbolBase::zone() const
{
    return TrDrawing::getDrawing(0u)->zone(Point3(GetX(), GetY(), 0.0));
}

// --- the record -------------------------------------------------------------------------------------

SymbolV1::SymbolV1() = default;
SymbolV1::SymbolV1(UgUDO *udo) : SymbolBase(udo) {}
SymbolV1::~SymbolV1() = default;

LumUg::UDOClass *SymbolV1::GetUDOClass() const { return &mUDOClass; }
LumUg::UDO *SymbolV1::CreateInstance() { return new SymbolV1; }

double SymbolV1::GetX() const { return get(kX); }
void SymbolV1::SetX(double x) { set(kX, x); }
double SymbolV1::GetY() const { return get(kY); }
void SymbolV1::SetY(double y) { set(kY, y); }

UgDisplayableObject *SymbolV1::GetSymbolObject() const
{
    if (IsNull()) return nullptr;
    for (UgTypedObject *object : GetOwnedObjects(UF_drafting_entity_type))
        if (isIdSymbol(*object)) return dynamic_cast<UgDisplayableObject *>(object);
    return nullptr;
}

void SymbolV1::ReleaseSymbolObject() { DeleteOwnedObject(GetSymbolObject()); }

void SymbolV1::SetSymbolObject(UgDisplayableObject *symbol) { AddOwnedObjects({symbol}); }

} // namespace QelFmt
