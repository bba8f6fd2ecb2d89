// Objects of a sheet to its display list.
#include "display/render.h"

#include "display/frame.h"
#include "display/id_symbol.h"
#include "display/note_text.h"
#include "display/pens.h"
#include "display/text_box.h"
#include "model/session.h"

namespace host::display {

namespace {

constexpr int kHiddenLayer = 4;
constexpr double kInch = 25.4;

// A size code is metric or in inches by itself; a free size is in the sheet's units.
double millimetresOfSize(const Sheet &sheet)
{
    return sheet.sizeState == 1 || (sheet.sizeState == 2 && sheet.units == 2) ? kInch : 1.0;
}

class ListBuilder {
public:
    ListBuilder(const Part &part, const Frame &sheet, DisplayList &list)
        : m_part(part), m_sheet(sheet), m_list(list)
    {}

    void add(const Object &object)
    {
        if (object.status != Status::alive || object.appearance.blanked || hidden(object)) return;
        m_fonts = ownFonts();
        if (const auto *line = object.as<Line>()) addLine(*line, object.appearance, m_sheet);
        if (const auto *arc = object.as<Arc>()) addArc(*arc, object.appearance, m_sheet);
        if (const auto *area = object.as<Area>()) addArea(*area, object.appearance, m_sheet);
        if (const auto *note = object.as<Note>()) addNote(*note, object.appearance, m_sheet);
        if (const auto *symbol = object.as<IdSymbol>()) addSymbol(*symbol, object.appearance);
        if (const auto *pattern = object.as<Pattern>()) addPattern(*pattern);
    }

private:
    bool hidden(const Object &object) const
    {
        const int layer = object.appearance.layer;
        return layer >= 1 && layer <= 256 &&
               m_part.layerStatus[static_cast<std::size_t>(layer)] == kHiddenLayer;
    }

    const std::vector<std::string> *ownFonts() const
    {
        const Object *table = Session::get().find(m_part.fontTable);
        const auto *fonts = table ? table->as<FontTable>() : nullptr;
        return fonts ? &fonts->names : nullptr;
    }

    std::string fontName(int index) const
    {
        if (!m_fonts || index < 1 || static_cast<std::size_t>(index) > m_fonts->size()) return {};
        return (*m_fonts)[static_cast<std::size_t>(index - 1)];
    }

    // A width is a pen and not a length: it is the same at every scale.
    static Pen penOf(const Appearance &look)
    {
        return {penWidth(look.lineWidth), look.lineFont, look.color};
    }

    // A text without a colour of its own has the object's.
    static int textColor(const Lettering &lettering, const Appearance &look)
    {
        constexpr int foreground = 7;
        return lettering.color == foreground ? look.color : lettering.color;
    }

    void addLine(const Line &line, const Appearance &look, const Frame &frame)
    {
        m_list.items.push_back(LineItem{penOf(look), frame(line.start), frame(line.end)});
    }

    void addArc(const Arc &arc, const Appearance &look, const Frame &frame)
    {
        double from = frame.turn() + arc.startAngle;
        double to = frame.turn() + arc.endAngle;
        if (frame.mirrors()) {
            from = frame.turn() - arc.endAngle;
            to = frame.turn() - arc.startAngle;
        }
        m_list.items.push_back(
            ArcItem{penOf(look), frame(arc.centre), frame.length(arc.radius), from, to});
    }

    void addArea(const Area &area, const Appearance &look, const Frame &frame)
    {
        FillItem fill{look.color, {}};
        for (const auto &outline : area.outlines) {
            auto &placed = fill.outlines.emplace_back();
            for (const Vec3 &point : outline) placed.push_back(frame(point));
        }
        m_list.items.push_back(std::move(fill));
    }

    void addNote(const Note &note, const Appearance &look, const Frame &frame)
    {
        TextBox box{
            {}, note.lettering, frame(note.origin), fontName(note.lettering.font), ++m_group};
        for (const std::string &line : note.lines) box.lines.push_back(shown(line));
        box.lettering.color = textColor(note.lettering, look);
        box.lettering.size = frame.length(note.lettering.size);
        box.lettering.angle += frame.turn() + (note.orientation == 1 ? 90.0 : 0.0);
        appendText(box, m_list.items);
    }

    void addSymbol(const IdSymbol &symbol, const Appearance &look)
    {
        SymbolLook seen{symbol.type,
                        m_sheet(symbol.origin),
                        symbol.size,
                        {penWidth(symbol.density), look.lineFont, look.color},
                        symbol.lettering,
                        shown(symbol.upper),
                        shown(symbol.lower),
                        fontName(symbol.lettering.font),
                        ++m_group};
        seen.lettering.color = textColor(symbol.lettering, look);
        seen.lettering.size = m_sheet.length(symbol.lettering.size);
        appendSymbol(seen, m_list.items);
    }

    // The pattern's own layer has decided; its shapes keep the layers of the part they came from.
    void addPattern(const Pattern &pattern)
    {
        if (!pattern.master) return;
        const Frame frame = m_sheet.placed(pattern);
        m_fonts = &pattern.master->fonts;
        for (const PatternShape &shape : pattern.master->shapes) {
            if (shape.appearance.blanked) continue;
            if (const auto *line = std::get_if<Line>(&shape.geometry))
                addLine(*line, shape.appearance, frame);
            if (const auto *arc = std::get_if<Arc>(&shape.geometry))
                addArc(*arc, shape.appearance, frame);
            if (const auto *area = std::get_if<Area>(&shape.geometry))
                addArea(*area, shape.appearance, frame);
            if (const auto *note = std::get_if<Note>(&shape.geometry))
                addNote(*note, shape.appearance, frame);
        }
    }

    std::string shown(const std::string &line) const
    {
        // Nearly no line refers to anything.
        if (line.find('<') == std::string::npos) return visibleText(line);
        return visibleText(Session::get().evaluated(m_part, line));
    }

    const Part &m_part;
    const Frame m_sheet;
    DisplayList &m_list;
    const std::vector<std::string> *m_fonts = nullptr; // names that indexes refer to
    unsigned m_group = 0;                              // a note, also one within a pattern
};

} // namespace

DisplayList displayList(tag_t sheet)
{
    Object *object = Session::get().find(sheet);
    const Sheet *info = object ? object->as<Sheet>() : nullptr;
    if (!info)
        throw RenderError("The tag " + std::to_string(sheet) +
                          " is no drawing sheet; pass the tag of a sheet of an open part.");

    const SheetSize size = sizeOf(*info);
    const double sizeUnit = millimetresOfSize(*info);
    DisplayList list{object->name, size.width * sizeUnit, size.height * sizeUnit, {}};
    const Part &part = *object->part;
    ListBuilder builder(part, Frame(info->units == 2 ? kInch : 1.0), list);
    if (const auto inView = part.byView.find(info->view); inView != part.byView.end())
        for (const auto &[ordinal, member] : inView->second) builder.add(*member);
    return list;
}

} // namespace host::display
