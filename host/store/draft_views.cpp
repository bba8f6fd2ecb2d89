// Sheets and their views: what stands on a sheet must not vanish because one of the two is lost.
#include "draft.h"

#include "pack.h"

#include <algorithm>

namespace host::store {

namespace {

using Kind = Finding::Kind;

class SheetStep {
public:
    explicit SheetStep(Draft &draft) : m_draft(draft)
    {
        for (const auto &[ordinal, piece] : draft.pieces) {
            if (piece.row.kind != "sheet") continue;
            m_names.insert(std::string(piece.row.name));
            if (m_numbers.empty()) m_numbers = piece.row.numbers;
        }
    }

    void run()
    {
        findViews();
        giveSheetsTheirViews();
        giveViewsTheirSheets();
        const auto current = static_cast<Ordinal>(m_draft.part.currentSheet);
        if (current && !m_draft.find(current, "sheet")) {
            if (m_draft.find(current))
                m_draft.say(Kind::damage, 0, "the part's current sheet is no sheet",
                            "no sheet is current");
            else
                m_draft.say(Kind::damage, 0, "the part's current sheet is not there",
                            "no sheet is current");
            m_draft.part.currentSheet = 0;
        }
    }

private:
    // Every view that an object stands in. One that is lost is made again: it has no values of its own.
    void findViews()
    {
        std::vector<Ordinal> lost;
        for (auto &[ordinal, piece] : m_draft.pieces) {
            const auto view = static_cast<Ordinal>(piece.row.view);
            if (!view || m_draft.find(view, "view")) continue;
            if (m_draft.isLost(view)) {
                lost.push_back(view);
                continue;
            }
            m_draft.tell(Kind::damage, ordinal, "its view is not there", "it stands in no view");
            piece.row.view = 0;
        }
        for (const Ordinal view : lost) {
            if (m_draft.find(view)) continue;
            m_draft.make(view, "view");
            m_draft.remade[view] = "a view is made in its place";
        }
    }

    // First those that agree.
    void giveSheetsTheirViews()
    {
        std::vector<Ordinal> others;
        for (const auto &[sheet, piece] : m_draft.pieces) {
            if (piece.row.kind != "sheet") continue;
            const auto view = static_cast<Ordinal>(piece.row.refers);
            const Piece *there = m_draft.find(view, "view");
            if (there && (!there->row.refers || there->row.refers == piece.row.ordinal))
                pair(sheet, view);
            else
                others.push_back(sheet);
        }
        for (const Ordinal sheet : others) giveView(sheet);
    }

    void giveView(Ordinal sheet)
    {
        const auto told = static_cast<Ordinal>(m_draft.find(sheet)->row.refers);
        if (m_draft.isLost(told) && !m_draft.find(told)) {
            m_draft.remade[told] = "a view is made in its place";
            m_draft.make(told, "view");
            return pair(sheet, told);
        }
        for (const auto &[view, piece] : m_draft.pieces) {
            if (piece.row.kind != "view" || m_paired.count(view) ||
                piece.row.refers != static_cast<std::int64_t>(sheet))
                continue;
            m_draft.tell(Kind::damage, sheet, "it names another view than the one that names it",
                         "its view is " + m_draft.name(view));
            return pair(sheet, view);
        }
        m_draft.tell(Kind::damage, sheet, "it has no view of its own", "it gets a new one");
        const Ordinal view = m_draft.newOrdinal();
        m_draft.make(view, "view");
        pair(sheet, view);
    }

    void giveViewsTheirSheets()
    {
        std::vector<Ordinal> alone;
        for (const auto &[ordinal, piece] : m_draft.pieces)
            if (piece.row.kind == "view" && !m_paired.count(ordinal)) alone.push_back(ordinal);
        for (const Ordinal view : alone) {
            // A sheet is made just before its view.
            const auto told = static_cast<Ordinal>(m_draft.find(view)->row.refers);
            const Ordinal likely = told ? told : view - 1;
            const bool lost = likely && !m_draft.find(likely) && (!told || m_draft.isLost(told));
            const Ordinal sheet = lost ? likely : m_draft.newOrdinal();
            const std::string made = makeSheet(sheet, view);
            if (lost)
                m_draft.remade[sheet] = made;
            else
                m_draft.tell(Kind::damage, view, "it belongs to no sheet", made);
            pair(sheet, view);
        }
    }

    void pair(Ordinal sheet, Ordinal view)
    {
        Piece &of = *m_draft.find(view);
        Piece &on = *m_draft.find(sheet);
        of.row.refers = static_cast<std::int64_t>(sheet);
        on.row.refers = static_cast<std::int64_t>(view);
        if (of.row.name.empty()) of.row.name = m_draft.keep(std::string(on.row.name) + "@0");
        m_paired.insert(view);
    }

    // Of the size of another sheet, or A3. What it was called stands in the name of its view.
    std::string makeSheet(Ordinal ordinal, Ordinal view)
    {
        std::string name(m_draft.find(view)->row.name);
        if (name.ends_with("@0")) name.resize(name.size() - 2);
        for (int n = 1; name.empty() || m_names.count(name); ++n)
            name = "SALVAGED" + std::to_string(n);
        m_names.insert(name);
        Piece &sheet = m_draft.make(ordinal, "sheet");
        sheet.row.name = m_draft.keep(name);
        if (m_numbers.empty()) m_numbers = m_draft.keep(newNumbers());
        sheet.row.numbers = m_numbers;
        return "a sheet \"" + name + "\" is made in its place: give it its size";
    }

    std::string newNumbers() const
    {
        const Sheet sheet;
        std::string numbers;
        Packer out(numbers);
        out.integer(sheet.sizeState), out.integer(sheet.sizeCode);
        out.real(0.0), out.real(0.0), out.real(sheet.scale);
        out.integer(static_cast<int>(m_draft.part.units)), out.integer(sheet.projection);
        return numbers;
    }

    Draft &m_draft;
    std::set<std::string> m_names;
    std::string_view m_numbers; // size and units of a sheet
    std::set<Ordinal> m_paired; // views with their sheets
};

} // namespace

void mendSheetsAndViews(Draft &draft) { SheetStep(draft).run(); }

namespace {

// Only the part's own; without that the first one.
void dropOtherFontTables(Draft &draft)
{
    Ordinal kept = 0;
    if (draft.find(static_cast<Ordinal>(draft.part.fontTable), "font_table"))
        kept = static_cast<Ordinal>(draft.part.fontTable);
    std::vector<Ordinal> others;
    for (const auto &[ordinal, piece] : draft.pieces) {
        if (piece.row.kind != "font_table") continue;
        if (!kept) kept = ordinal;
        if (ordinal != kept) others.push_back(ordinal);
    }
    for (const Ordinal ordinal : others) {
        draft.tell(Kind::damage, ordinal, "the part has two font tables", "it is left out");
        draft.pieces.erase(ordinal);
        draft.leftOut.insert(ordinal);
    }
}

} // namespace

void mendFontTable(Draft &draft)
{
    dropOtherFontTables(draft);
    const auto told = static_cast<Ordinal>(draft.part.fontTable);
    if (draft.find(told, "font_table")) return;
    Ordinal fonts = 0;
    for (const auto &[ordinal, piece] : draft.pieces)
        if (piece.row.kind == "font_table") fonts = ordinal;
    if (!told && draft.partIsSure)
        draft.say(Kind::damage, 0, "the part has no font table", "another takes its place");
    if (told && draft.find(told))
        draft.say(Kind::damage, 0, "the part's font table is no font table",
                  "another takes its place");
    if (!fonts) {
        const bool lost = draft.isLost(told) && !draft.find(told); // and not made as something else
        fonts = lost ? told : draft.newOrdinal();
        draft.make(fonts, "font_table").row.texts = "blockfont\n";
        if (lost) draft.remade[fonts] = "one with the first font alone is made in its place";
    }
    draft.part.fontTable = static_cast<std::int64_t>(fonts);
}

} // namespace host::store
