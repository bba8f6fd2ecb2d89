// Random callers of one table against plain arithmetic: wherever rows are appended, filled, moved,
// hidden, shown or deleted, they stand where their heights put them, and their symbols say what the
// row or the last one before it says.
#include "tests/content/symbol_look.h"

#include "uf_obj.h"

#include <random>

namespace {

// What a row should be: the lines of its two fields; an empty value shows no note.
struct RowModel {
    Lines rev, text;
    bool hidden = false;
    std::size_t symbols = 0;
};

bool isEmpty(const Lines &value) { return value == Lines{""}; }

// Margins of 1; lines of 3.5 with half a line between them.
double heightOf(const Lines &value)
{
    const double lines = isEmpty(value) ? 0.0 : static_cast<double>(value.size());
    return 2.0 + (lines > 0.0 ? 3.5 * lines + 1.75 * (lines - 1.0) : 0.0);
}

double heightOf(const RowModel &row) { return std::max(heightOf(row.rev), heightOf(row.text)); }

} // namespace

class RandomTable : public BlockOnSheet {
protected:
    void run(unsigned seed, int steps)
    {
        std::mt19937 random(seed);
        const int direction = static_cast<int>(seed % 2);
        const auto column = [&](const std::string &id, double x) {
            return fieldDef(id, [&](TrFieldDefV1 &def) {
                def.SetLocationX(x);
                def.SetWidth(20.0);
                def.SetMarginHeight(1.0);
                def.SetTopBorderPolicy(1);
            });
        };
        hasTable(tableDef("REV", {column("REV", 0), column("TEXT", 20)}, [&](TrTableDefV1 &def) {
            def.SetDirection(direction);
            def.SetSymbol1Value("REV");
        }));
        place();
        m_direction = direction == 0 ? -1.0 : 1.0;
        for (int i = 0; i < steps && !HasFailure(); ++i) {
            SCOPED_TRACE("seed " + std::to_string(seed) + ", step " + std::to_string(i));
            step(random);
            compare();
        }
        EXPECT_EQ(looseObjects(story.part()), 0u);
        EXPECT_EQ(nxhost::zeroLengthRefusals(), 0u);
    }

private:
    std::size_t below(std::mt19937 &random, std::size_t count)
    {
        return std::uniform_int_distribution<std::size_t>(0, count - 1)(random);
    }
    Lines someValue(std::mt19937 &random)
    {
        Lines value(1 + below(random, 3), "v" + std::to_string(below(random, 1000)));
        return below(random, 4) == 0 ? Lines{""} : value;
    }
    void set(std::size_t index, const char *id, const Lines &value)
    {
        const auto row = table()->entry(index);
        table()->setValue(*row, *row->field(id), value);
        (std::string(id) == "REV" ? m_rows[index].rev : m_rows[index].text) = value;
    }
    void append()
    {
        table()->AppendEntry();
        m_rows.push_back({{""}, {""}});
    }
    void step(std::mt19937 &random)
    {
        const std::size_t kind = m_rows.empty() ? 0 : below(random, 13);
        const std::size_t index = m_rows.empty() ? 0 : below(random, m_rows.size());
        switch (kind) {
        case 0:
        case 1:
        case 2:
            append();
            break;
        case 3:
        case 4:
            set(index, "TEXT", someValue(random));
            break;
        case 5:
            set(index, "REV", someValue(random));
            break;
        case 6: {
            const std::size_t to = below(random, m_rows.size());
            table()->moveEntry(index, to);
            const RowModel moved = m_rows[index];
            m_rows.erase(m_rows.begin() + static_cast<std::ptrdiff_t>(index));
            m_rows.insert(m_rows.begin() + static_cast<std::ptrdiff_t>(to), moved);
            break;
        }
        case 7:
            table()->HidePreviousEntries(static_cast<int>(index));
            for (std::size_t i = 0; i < index; ++i) m_rows[i].hidden = true;
            break;
        case 8:
            table()->entry(index)->SetHideEntry(0);
            table()->locate();
            m_rows[index].hidden = false;
            break;
        case 9:
            table()->RemoveEntry(table()->entry(index));
            table()->locate();
            m_rows.erase(m_rows.begin() + static_cast<std::ptrdiff_t>(index));
            break;
        case 10:
            table()->RecreateNotes();
            break;
        case 11:
            table()->entry(index)->addSymbol(Point3(10.0, 10.0, 0.0));
            ++m_rows[index].symbols;
            break;
        case 12:
            if (below(random, 4) == 0) saveAndReopen();
            break;
        }
    }
    // A hidden row is placed when the table is, not when a row before it grows: it stays out of
    // sight.
    void compare()
    {
        const auto rows = table()->getEntries();
        ASSERT_EQ(rows.size(), m_rows.size());
        ASSERT_EQ(table()->entryCount(), m_rows.size());
        double y = 50.0;
        std::string said; // by the last row that says something
        for (std::size_t i = 0; i < rows.size(); ++i) {
            SCOPED_TRACE("row " + std::to_string(i));
            const auto text = rows[i]->field("TEXT");
            ASSERT_EQ(text->GetValue(), m_rows[i].text);
            ASSERT_EQ(rows[i]->field("REV")->GetValue(), m_rows[i].rev);
            ASSERT_EQ(rows[i]->GetHideEntry() != 0, m_rows[i].hidden);
            ASSERT_NEAR(text->GetX(), 120.0, 1e-9);
            ASSERT_NEAR(text->GetY(), y + 1.0, 1e-6);
            if (!isEmpty(m_rows[i].text)) {
                ASSERT_NEAR(noteAt(*text).y, y + 1.0, 1e-6);
                ASSERT_EQ(shown(noteTag(*text)).blank_status == UF_OBJ_BLANKED, m_rows[i].hidden);
            }
            ASSERT_EQ(strokes(*text).size(), 1u);
            ASSERT_NEAR(strokes(*text)[0].start.y, y, 1e-6); // the side at the base point
            if (!isEmpty(m_rows[i].rev)) said = m_rows[i].rev.front();
            ASSERT_EQ(rows[i]->getSymbols().size(), m_rows[i].symbols);
            for (const auto &symbol : rows[i]->getSymbols()) {
                ASSERT_EQ(lookOf(*symbol).text, Lines{said});
                ASSERT_EQ(shown(symbol->GetSymbolObject()->getTag()).blank_status == UF_OBJ_BLANKED,
                          m_rows[i].hidden);
            }
            if (!m_rows[i].hidden) y += m_direction * heightOf(m_rows[i]);
        }
    }

    std::vector<RowModel> m_rows;
    double m_direction = 1.0;
};

TEST_F(RandomTable, RowsStandWhereArithmeticPutsThem) { run(1, 60); }

TEST_F(RandomTable, RowsStandWhereArithmeticPutsThemUpwards) { run(2, 60); }

TEST_F(RandomTable, RowsOfManyCallersStandWhereArithmeticPutsThemSoak)
{
    run(7, static_cast<int>(10000 * soakShare()));
}
