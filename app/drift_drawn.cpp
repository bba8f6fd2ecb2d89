#include "app/drift_drawn.h"

#include "app/borders.h"
#include "app/drift_slots.h"
#include "app/indentation.h"

#include "content/entry.h"
#include "content/field.h"
#include "content/table.h"
#include "definitions/block_def.h"
#include "definitions/field_def.h"
#include "drawing/block.h"

#include "NXOpen/Annotations_SimpleDraftingAid.hxx"
#include "NXOpen/NXObjectManager.hxx"
#include "uf_drf.h"
#include "ug_displayable.hxx"
#include "ug_exception.hxx"
#include "ug_line.hxx"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace app {

namespace {

class DrawnField {
public:
    DrawnField(const TrFieldBase &field, const std::string &where, Differences &found)
        : m_field(field), m_def(field.GetDefinition()), m_where(where), m_found(found)
    {}

    void compare(const TrBlockDefV1 &block, bool inRow)
    {
        compareLayers(block);
        if (m_def.IsNull()) return;
        compareIndentation();
        compareLetters();
        compareUserSymbols();
        compareBorders(inRow);
        if (!inRow) comparePlace(); // rows stand on each other
    }

private:
    void differs(const char *what, const std::string &stored, const std::string &disk)
    {
        m_found.push_back({m_where, what, stored, disk});
    }
    void compareNumber(const char *what, double drawn, double defined)
    {
        if (std::abs(drawn - defined) > 1e-6) differs(what, numberText(drawn), numberText(defined));
    }

    void compareLayer(const UgDisplayableObject &object, int layer, const char *what)
    {
        compareNumber(what, object.getLayer(), layer);
    }
    // The library draws on the layers of the definition and leaves there what is drawn already.
    void compareLayers(const TrBlockDefV1 &block)
    {
        if (const UgDisplayableObject *note = m_field.GetNote())
            compareLayer(*note, block.GetTextLayer(), "layer of the note");
        for (const UgLine *line : m_field.GetBorders())
            compareLayer(*line, block.GetPatternLayer(), "layer of a border");
    }

    void compareIndentation()
    {
        compareNumber("indentation of the note", drawnIndentation(m_field), m_def.GetIndentation());
    }

    // What the library sets whenever it looks at the note with another definition. A size or an aspect for
    // long values depends on the value: they are left out.
    void compareLetters()
    {
        const UgDisplayableObject *note = m_field.GetNote();
        if (!note) return;
        int ints[NUM_INT_PARAMS];
        double reals[NUM_REAL_PARAMS];
        char radius[27] = "", diameter[27] = "";
        UgException::throwOnFailure(
            UF_DRF_ask_object_preferences(note->getTag(), ints, reals, radius, diameter));
        const double angle = m_def.GetTextAngle() + (m_def.GetFlipText() != 0 ? 180.0 : 0.0);
        const double turned = std::remainder(reals[UF_DRF_MPR_text_angle] - angle, 360.0);
        if (std::abs(turned) > 1e-6)
            differs("angle of the note", numberText(reals[UF_DRF_MPR_text_angle]),
                    numberText(angle));
        compareNumber("color of the note", ints[UF_DRF_MPI_text_color], m_def.GetTextColor());
        compareNumber("justification of the note", ints[UF_DRF_MPI_text_justification],
                      m_def.GetTextJustification());
        if (const int site = m_def.GetTextSite(); site >= 1 && site <= 9)
            compareNumber("site of the note", ints[UF_DRF_MPI_align_site], site);
        const bool ownSize = m_def.GetAltTextSizeNumChars() <= 0 || m_def.GetAltTextSize() == 0.0;
        if (ownSize && m_def.GetTextSize() > 0.0)
            compareNumber("size of the note", reals[UF_DRF_MPR_char_size], m_def.GetTextSize());
    }

    // Set with every text; a definition without a size leaves it.
    void compareUserSymbols()
    {
        const UgDisplayableObject *note = m_field.GetNote();
        if (!note) return;
        using namespace NXOpen;
        auto *aid =
            dynamic_cast<Annotations::SimpleDraftingAid *>(NXObjectManager::Get(note->getTag()));
        if (!aid) return;
        Annotations::UserSymbolPreferences::SizeType type;
        double length = 0.0, height = 0.0;
        aid->GetUserSymbolSize(&type, &length, &height);
        const bool sized = m_def.GetUserSymbolLength() > 0.0 && m_def.GetUserSymbolHeight() > 0.0;
        compareNumber("length of user symbols", length, sized ? m_def.GetUserSymbolLength() : 0.0);
        compareNumber("height of user symbols", height, sized ? m_def.GetUserSymbolHeight() : 0.0);
    }

    // A text in the middle of the height of its cell stands where its height at the time had it.
    void comparePlace()
    {
        const int site = m_def.GetTextSite();
        if (site >= 4 && site <= 6) return;
        const Point2 place = m_field.placeByDefinition();
        compareNumber("x", m_field.GetX(), place[0]);
        compareNumber("y", m_field.GetY(), place[1]);
    }

    void compareBorders(bool inRow)
    {
        const Borders flags = bordersOf(m_field), policies = policiesOf(m_def);
        for (std::size_t i = 0; i < kBorders; ++i)
            if (isDetermined(i, policies[i], inRow) && flags[i] != flagOf(policies[i]))
                differs(kBorderNames[i], flags[i] ? "on" : "off", flags[i] ? "off" : "on");
        const auto lines = m_field.GetBorders();
        const auto wanted =
            m_def.GetWidth() == 0.0
                ? 0U
                : static_cast<std::size_t>(std::count(flags.begin(), flags.end(), 1));
        if (lines.size() != wanted && !isFlat(inRow))
            differs("border lines", std::to_string(lines.size()), std::to_string(wanted));
        for (const UgLine *line : lines)
            compareNumber("color of a border", line->getColor(), m_def.GetBorderColor());
    }

    // A box without a height of its own, and without text, keeps the lines that it had.
    bool isFlat(bool inRow) const
    {
        if (m_def.GetWidth() == 0.0) return false;
        return (inRow || m_def.GetHeight() == 0.0) && m_field.CalcHeight() == 0.0;
    }

    const TrFieldBase &m_field;
    TrFieldDefV1 m_def;
    std::string m_where;
    Differences &m_found;
};

template <class Fields>
void compareAll(const Fields &fields, const std::string &where, const TrBlockDefV1 &def,
                Differences &found)
{
    for (const auto &field : fields) {
        const std::string label = where + "field " + field->GetFieldDefName();
        DrawnField(*field, label, found).compare(def, !where.empty());
    }
}

} // namespace

void compareDrawn(TrBlockBase &block, const TrBlockDefV1 &def, Differences &found)
{
    compareAll(block.getFields(), "", def, found);
    for (const auto &table : block.getTables()) {
        int row = 0;
        for (const auto &entry : table->getEntries())
            compareAll(entry->getFields(),
                       fmt::format("table {}, row {}, ", table->GetTableDefName(), ++row), def,
                       found);
    }
}

} // namespace app
