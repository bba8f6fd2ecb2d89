#include "definitions/table_def.h"

#include "definitions/block_def.h"
#include "definitions/field_list.h"
#include "definitions/pairwise.h"
#include "definitions/point_text.h"
#include "definitions/require.h"
#include "drawing/block.h"
#include "drawing/links_to.h"
#include "foundation/application.h"
#include "foundation/info_lines.h"
#include "foundation/log.h"
#include "foundation/registry.h"

namespace {

using Def = TrTableDefV1;

constexpr std::tuple kEqualityOrder{Def::kId,
                                    Def::kSymbol1Value,
                                    Def::kSymbol2Value,
                                    Def::kEntryListString,
                                    Def::kSymbolFontName,
                                    Def::kSymbolColor,
                                    Def::kSymbolType,
                                    Def::kSymbolIdType,
                                    Def::kLocationX,
                                    Def::kLocationY,
                                    Def::kDirection,
                                    Def::kSymbolTextSize,
                                    Def::kSymbolLayer,
                                    Def::kSymbolSize,
                                    Def::kSymbolTextAspect};

constexpr std::tuple kCloneOrder = Def::kLayout;

static_assert(std::tuple_size_v<decltype(kEqualityOrder)> ==
              std::tuple_size_v<decltype(Def::kLayout)>);

} // namespace

TrTableDefV1::TrTableDefV1() = default;
TrTableDefV1::TrTableDefV1(UgUDO *udo) : UDO(udo) {}
TrTableDefV1::~TrTableDefV1() = default;

// --- the fields of a row --------------------------------------------------------------------------

std::vector<TrFieldDefV1> TrTableDefV1::GetFieldDefinitions() const
{
    return QelFmt::asValues(children(kFields));
}

TrFieldDefV1 TrTableDefV1::GetFieldDefinition(const std::string &id) const
{
    return QelFmt::fieldOfId(GetFieldDefinitions(), id);
}

void TrTableDefV1::AddFieldDefinition(const TrFieldDefV1 &field)
{
    attach(kFields.linkType, field);
}

void TrTableDefV1::RemoveFieldDefinition(const TrFieldDefV1 &field)
{
    TrFieldDefV1 removed(field);
    discard(kFields.linkType, removed);
}

// --- the symbol texts of the site -----------------------------------------------------------------

std::string TrTableDefV1::GetSymbol1ValueOverride() const
{
    return symbolValueOverride("symbol1Value", GetSymbol1Value());
}

std::string TrTableDefV1::GetSymbol2ValueOverride() const
{
    return symbolValueOverride("symbol2Value", GetSymbol2Value());
}

std::string TrTableDefV1::symbolValueOverride(const std::string &key,
                                              const std::string &fallback) const
{
    const boost::shared_ptr<TrBlockDefV1> block = GetBlockDef();
    QelFmt::require(block != nullptr,
                    "TrTableDefV1: symbol texts are asked of a table that stands on no drawing");
    const std::string section = block->GetId() + "-" + GetId() + " Overrides";
    QELFMT_INFO << "Looking for section " << section;
    const std::string value =
        QelFmt::Application::getRegistry()->readStringEntry(section, key, fallback);
    QELFMT_INFO << key << " = " << value;
    return value;
}

// The definition of the placed block that this record hangs below. The way up follows the first
// record that links to each; that of a definition file ends without a block.
boost::shared_ptr<TrBlockDefV1> TrTableDefV1::GetBlockDef() const
{
    for (tag_t current = tag(); current != NULL_TAG;) {
        const LinksTo above(current);
        if (above.links().empty()) break;
        current = above.links().front().assoc_ug_tag;
        auto *udo = dynamic_cast<UgUDO *>(UgObject::find(current));
        const std::string class_name = LumUg::GetUDOClassName(udo);
        if (class_name == QelFmt::kBlockV1Classname) {
            QELFMT_INFO << "found a block UDO";
            return TrBlockV1(udo).GetDefinition();
        }
        QELFMT_INFO << "was not a block UDO(" << class_name << " - " << udo->askClassId()
                    << "), so next!";
    }
    return {};
}

// --- copies and comparison ----------------------------------------------------------------------------

void TrTableDefV1::Clone(const TrTableDefV1 &source)
{
    QelFmt::require(!source.IsNull(), "TrTableDefV1::Clone: the source has no record");
    copySlots(source, kCloneOrder);
    for (const TrFieldDefV1 &field : source.GetFieldDefinitions()) {
        TrFieldDefV1 copy;
        copy.Clone(field);
        AddFieldDefinition(copy);
    }
}

// Without a log line of its own: those of the fields tell enough.
bool TrTableDefV1::operator==(const TrTableDefV1 &other) const
{
    return !IsNull() && !other.IsNull() && sameSlots(other, kEqualityOrder) &&
           QelFmt::pairwise(GetFieldDefinitions(), other.GetFieldDefinitions(), std::equal_to<>());
}

// --- what every record says of itself -----------------------------------------------------------------

void TrTableDefV1::InfoObject()
{
    QelFmt::InfoLines info;
    info.line("ID", GetId());
    info.line("Symbol Line 1 Value", GetSymbol1Value());
    info.line("Symbol Line 2 Value", GetSymbol2Value());
    info.line("Symbol Type", GetSymbolType());
    info.line("Symbol Color", GetSymbolColor());
    info.line("Relative Location", QelFmt::pointText(GetLocationX(), GetLocationY()));
    // The listing's words: on the sheet, rows of direction 0 are stacked downwards.
    info.line("Direction", GetDirection() != 0 ? "Down" : "Up");
    info.flush();
    info.text("Field Definitions:").flush();
    for (TrFieldDefV1 &field : GetFieldDefinitions()) field.InfoObject();
}

LumUg::UDO *TrTableDefV1::CreateInstance() { return new TrTableDefV1; }
