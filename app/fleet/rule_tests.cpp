#include "app/fleet/rule_tests.h"

#include "app/fleet/wide_pattern.h"
#include "app/output.h"

#include <fmt/format.h>

#include <algorithm>
#include <ctime>
#include <stdexcept>

namespace app::fleet {

namespace {

using Complaint = std::optional<std::string>;

bool isBlank(const std::string &text)
{
    return text.find_first_not_of(" \t\n") == std::string::npos;
}

// --- one value ----------------------------------------------------------------------------------

class Filled : public Test {
    Complaint complaint(const Place &place) const override
    {
        if (!isBlank(place.value.text)) return {};
        return "is empty";
    }
    std::string remedy() const override { return "fill it in"; }
};

class Pattern : public Test {
public:
    explicit Pattern(const std::string &pattern) : m_text(pattern), m_pattern(pattern) {}
    Complaint complaint(const Place &place) const override
    {
        if (place.value.text.empty() || m_pattern.match(place.value.text)) return {};
        return "does not match " + m_text;
    }
    std::string remedy() const override { return "write it as the rule says"; }

private:
    std::string m_text;
    WidePattern m_pattern;
};

class OneOf : public Test {
public:
    explicit OneOf(std::vector<std::string> choices) : m_choices(std::move(choices))
    {
        if (m_choices.empty()) throw std::invalid_argument("names nothing to choose from");
    }
    Complaint complaint(const Place &place) const override
    {
        if (place.value.text.empty() ||
            std::find(m_choices.begin(), m_choices.end(), place.value.text) != m_choices.end())
            return {};
        return "is none of " + joined(m_choices, ", ");
    }
    std::string remedy() const override { return "write one of them"; }

private:
    std::vector<std::string> m_choices;
};

// In English, whatever the language of the machine: the program sets no locale.
class DateForm {
public:
    explicit DateForm(const std::string &form) : m_form(form)
    {
        std::tm day = unset();
        day.tm_year = 124;
        day.tm_mday = 29;
        day.tm_mon = 1;
        if (form.find('%') == std::string::npos || !matches(written(form, normalised(day))))
            throw std::invalid_argument(
                fmt::format("\"{}\" is no form of a date: write it as in %Y-%m-%d", form));
    }
    const std::string &form() const { return m_form; }
    bool matches(const std::string &text) const
    {
        std::tm day = unset();
        const char *end = strptime(text.c_str(), m_form.c_str(), &day);
        if (!end || *end != '\0') return false;
        const std::tm real = normalised(day); // the 31st of April is the 1st of May
        return real.tm_mday == day.tm_mday && real.tm_mon == day.tm_mon &&
               written(m_form, real) == text;
    }

private:
    static std::tm unset() // a leap year, for forms without a year
    {
        std::tm day{};
        day.tm_year = 100;
        day.tm_mday = 1;
        return day;
    }
    static std::tm normalised(std::tm day)
    {
        timegm(&day);
        return day;
    }
    static std::string written(const std::string &form, const std::tm &day)
    {
        char text[256];
        return {text, std::strftime(text, sizeof text, form.c_str(), &day)};
    }

    std::string m_form;
};

class Date : public Test {
public:
    explicit Date(const std::vector<std::string> &forms)
    {
        if (forms.empty()) throw std::invalid_argument("names no form, as %Y-%m-%d is one");
        for (const std::string &form : forms) m_forms.emplace_back(form);
    }
    Complaint complaint(const Place &place) const override
    {
        const std::string &text = place.value.text;
        if (text.empty() || std::any_of(m_forms.begin(), m_forms.end(),
                                        [&](const DateForm &form) { return form.matches(text); }))
            return {};
        std::vector<std::string> forms;
        for (const DateForm &form : m_forms) forms.push_back(form.form());
        return "is no date written as " + joined(forms, " or ");
    }
    std::string remedy() const override { return "write the date so"; }

private:
    std::vector<DateForm> m_forms;
};

class Fits : public Test {
    Complaint complaint(const Place &place) const override
    {
        const CellHeight height = place.value.table.empty() ? CellHeight::fixed : CellHeight::grows;
        const auto misfit = misfitOf(*place.value.record, height);
        if (!misfit) return {};
        return excessOf(*misfit);
    }
    std::string remedy() const override
    {
        return "shorten it, or give the cell more room in the definition";
    }
};

// --- the drawing's other values -------------------------------------------------------------------

class OfFields : public Test {
    bool takesRows() const override { return false; }
};

class FileName : public OfFields {
public:
    explicit FileName(const std::string &pattern)
    {
        if (pattern.empty()) return;
        m_pattern.emplace(pattern);
        if (m_pattern->groups() < 1)
            throw std::invalid_argument(fmt::format(
                "\"{}\" has no group: the part of the file's name that is meant stands in ()",
                pattern));
    }
    Complaint complaint(const Place &place) const override
    {
        const std::string &stem = place.drawing.stem;
        if (!m_pattern) {
            if (place.value.text == stem) return {};
            return fmt::format("is not the name of the file, {}", stem);
        }
        const auto groups = m_pattern->match(stem);
        if (!groups) return fmt::format("has to be part of the file's name, but {} is none", stem);
        if (place.value.text == (*groups)[1]) return {};
        return fmt::format("is not {}, as the name of the file says", (*groups)[1]);
    }
    std::string remedy() const override { return "change the value, or rename the file"; }

private:
    std::optional<WidePattern> m_pattern;
};

class Equals : public OfFields {
public:
    explicit Equals(const std::string &other)
    {
        const std::size_t dot = other.find('.');
        if (dot != std::string::npos) m_block = other.substr(0, dot);
        m_field = dot == std::string::npos ? other : other.substr(dot + 1);
        if (m_field.empty() || dot == 0)
            throw std::invalid_argument("names no field: write BLOCK.FIELD");
    }
    Complaint complaint(const Place &place) const override
    {
        const std::string &block = m_block.empty() ? place.value.block : m_block;
        const SeenValue *other = place.sheet.find(block, m_field);
        if (!other)
            return fmt::format("has to be that of {}.{}, which the sheet lacks", block, m_field);
        if (other->text == place.value.text) return {};
        return fmt::format("differs from {}.{}, \"{}\"", block, m_field, other->text);
    }
    std::string remedy() const override { return "give both the same value"; }

private:
    std::string m_block; // empty: that of the value
    std::string m_field;
};

class SameOnAllSheets : public OfFields {
    Complaint complaint(const Place &place) const override
    {
        for (const SeenSheet &sheet : place.drawing.sheets) {
            const SeenValue *first = sheet.find(place.value.block, place.value.field);
            if (!first) continue;
            if (first->text == place.value.text) return {};
            return fmt::format("differs from that of sheet {}, \"{}\"", sheet.ref.name,
                               first->text);
        }
        return {};
    }
    std::string remedy() const override { return "give all sheets the same value"; }
};

class NewestRevision : public OfFields {
public:
    NewestRevision(const std::string &column, std::optional<std::string> withoutRows)
        : m_withoutRows(std::move(withoutRows))
    {
        const std::size_t dot = column.find('.');
        const std::size_t second = dot == std::string::npos ? dot : column.find('.', dot + 1);
        if (second == std::string::npos || dot == 0 || second == dot + 1 ||
            second + 1 == column.size())
            throw std::invalid_argument(fmt::format(
                "\"{}\" is no column: write BLOCK.TABLE.COLUMN, as in REVISIONS.REVISIONS.index",
                column));
        m_block = column.substr(0, dot);
        m_table = column.substr(dot + 1, second - dot - 1);
        m_column = column.substr(second + 1);
    }
    Complaint complaint(const Place &place) const override
    {
        const SeenValue *newest = nullptr;
        if (const SeenSheet *sheet = sheetWithTable(place))
            for (const SeenValue &value : sheet->values)
                if (value.block == m_block && value.table == m_table && value.field == m_column)
                    newest = &value;
        const std::string table = m_block + "." + m_table;
        if (newest) {
            if (newest->text == place.value.text) return {};
            return fmt::format("is not that of the newest row of {}, \"{}\"", table, newest->text);
        }
        if (!m_withoutRows || place.value.text == *m_withoutRows) return {};
        return fmt::format("has to be \"{}\" as long as {} has no row", *m_withoutRows, table);
    }
    std::string remedy() const override
    {
        return "give the field the newest revision, or add the row";
    }

private:
    const SeenSheet *sheetWithTable(const Place &place) const
    {
        const auto has = [&](const SeenSheet &sheet) {
            return std::find(sheet.tables.begin(), sheet.tables.end(), m_block + "." + m_table) !=
                   sheet.tables.end();
        };
        if (has(place.sheet)) return &place.sheet;
        for (const SeenSheet &sheet : place.drawing.sheets)
            if (has(sheet)) return &sheet;
        return nullptr;
    }

    std::string m_block, m_table, m_column;
    std::optional<std::string> m_withoutRows;
};

class SheetCount : public OfFields {
public:
    explicit SheetCount(const std::string &form)
        : m_form(form), m_pattern(patternOf(form)),
          m_swapped(!form.empty() && form.find("{m}") < form.find("{n}"))
    {}
    Complaint complaint(const Place &place) const override
    {
        const auto numbers = numbersOf(place.value.text);
        if (!numbers)
            return m_form.empty() ? "is no sheet number with the number of sheets, as in 1 of 3"
                                  : fmt::format("is not written as {}", m_form);
        const auto [n, m] = *numbers;
        const std::string count =
            std::to_string(std::count_if(place.drawing.sheets.begin(), place.drawing.sheets.end(),
                                         [](const SeenSheet &sheet) { return sheet.hasFormat(); }));
        if (m != count) return fmt::format("is wrong: the drawing has {} sheets", count);
        if (n == "0" || n.size() > m.size() || (n.size() == m.size() && n > m))
            return fmt::format("is wrong: {} is not from 1 to {}", n, m);
        return twin(place, n);
    }
    std::string remedy() const override { return "number the sheets anew"; }

private:
    static std::string patternOf(const std::string &form)
    {
        if (form.empty()) return R"(\D*0*(\d+)\D+0*(\d+)\D*)";
        std::string pattern = escapedForPattern(form);
        for (const char *key : {R"(\{n\})", R"(\{m\})"}) {
            const std::string name(key);
            const std::size_t at = pattern.find(name);
            if (at == std::string::npos || pattern.find(name, at + 1) != std::string::npos)
                throw std::invalid_argument(fmt::format(
                    "\"{}\" needs {{n}} and {{m}}, each once, as in {{n}} of {{m}}", form));
            pattern.replace(at, name.size(), R"(0*(\d+))");
        }
        return pattern;
    }
    std::optional<std::pair<std::string, std::string>> numbersOf(const std::string &text) const
    {
        const auto groups = m_pattern.match(text);
        if (!groups) return {};
        std::pair<std::string, std::string> numbers{(*groups)[1], (*groups)[2]};
        if (m_swapped) std::swap(numbers.first, numbers.second);
        return numbers;
    }
    // Of two sheets with one number the later one is wrong.
    Complaint twin(const Place &place, const std::string &n) const
    {
        for (const SeenSheet &sheet : place.drawing.sheets) {
            if (&sheet == &place.sheet) break;
            const SeenValue *other = sheet.find(place.value.block, place.value.field);
            const auto numbers = other ? numbersOf(other->text) : std::nullopt;
            if (numbers && numbers->first == n)
                return fmt::format("is wrong: sheet {} is number {} already", sheet.ref.name, n);
        }
        return {};
    }

    std::string m_form;
    WidePattern m_pattern;
    bool m_swapped;
};

} // namespace

std::string SeenValue::fieldName() const
{
    return table.empty() ? field : fmt::format("{}[{}].{}", table, row, field);
}

const SeenValue *SeenSheet::find(const std::string &block, const std::string &field) const
{
    const auto found = std::find_if(values.begin(), values.end(), [&](const SeenValue &value) {
        return value.table.empty() && value.block == block && value.field == field;
    });
    return found == values.end() ? nullptr : &*found;
}

TestPtr filledTest() { return std::make_unique<Filled>(); }
TestPtr patternTest(const std::string &pattern) { return std::make_unique<Pattern>(pattern); }
TestPtr oneOfTest(std::vector<std::string> choices)
{
    return std::make_unique<OneOf>(std::move(choices));
}
TestPtr dateTest(std::vector<std::string> forms) { return std::make_unique<Date>(forms); }
TestPtr fitsTest() { return std::make_unique<Fits>(); }
TestPtr fileNameTest(const std::string &pattern) { return std::make_unique<FileName>(pattern); }
TestPtr equalsTest(const std::string &other) { return std::make_unique<Equals>(other); }
TestPtr sameOnAllSheetsTest() { return std::make_unique<SameOnAllSheets>(); }
TestPtr newestRevisionTest(const std::string &column, std::optional<std::string> withoutRows)
{
    return std::make_unique<NewestRevision>(column, std::move(withoutRows));
}
TestPtr sheetCountTest(const std::string &form) { return std::make_unique<SheetCount>(form); }

} // namespace app::fleet
