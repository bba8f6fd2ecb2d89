#include "app/authoring/rollout.h"

#include "app/authoring/record_text.h"
#include "app/authoring/stored_order.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <set>

namespace app::authoring {

namespace {

using Children = std::vector<const RecordTree *>;

bool isLocation(const RecordTree &record)
{
    return record.kind->word == "block_location" || record.kind->word == "block_location_v1";
}

const RecordTree *withId(const Children &list, const std::string &id)
{
    for (const RecordTree *one : list)
        if (one->text("id") == id) return one;
    return nullptr;
}

// Those of the list whose ids the other one has too.
Children staying(const Children &list, const Children &other)
{
    Children found;
    for (const RecordTree *one : list)
        if (withId(other, one->text("id"))) found.push_back(one);
    return found;
}

// Where a place of a block stands, with all that belongs to it.
std::string placeText(const RecordTree &record)
{
    std::string text;
    for (const SlotInfo &slot : record.kind->slots) text += slotText(record, slot) + " ";
    for (const RecordTree &child : record.children) text += "(" + placeText(child) + ")";
    return text;
}

class Rollout {
public:
    Rollout(const std::vector<RecordTree> &old, const std::vector<RecordTree> &fresh,
            const std::string &oldName)
        : m_old(old), m_fresh(fresh), m_oldName(oldName), m_kept(fresh)
    {
        keepOrder(m_kept, old);
    }

    std::vector<Consequence> run()
    {
        std::set<std::string> seen;
        for (const RecordTree &was : m_old) {
            const std::string identity = identityOf(was);
            if (!seen.insert(identity).second) continue; // the first one counts
            if (const auto at = indexOf(m_fresh, identity))
                compare(was, *at);
            else
                add({identity, "removed: placed ones keep their own copy", {}, {}});
        }
        for (std::size_t i = 0; i < m_fresh.size(); ++i)
            if (seen.insert(identityOf(m_fresh[i])).second)
                tell(i, identityOf(m_fresh[i]), m_fresh[i], "added");
        return std::move(m_found);
    }

private:
    static std::optional<std::size_t> indexOf(const std::vector<RecordTree> &records,
                                              const std::string &identity)
    {
        for (std::size_t i = 0; i < records.size(); ++i)
            if (identityOf(records[i]) == identity) return i;
        return {};
    }

    void add(Consequence one) { m_found.push_back(std::move(one)); }

    // About a record of the new file number `m_record`, at its place there.
    void tell(std::size_t record, const std::string &where, const RecordTree &at,
              const std::string &what)
    {
        add({where, what, record, at.origin.at});
    }

    void compare(const RecordTree &was, std::size_t index)
    {
        const RecordTree &is = m_fresh[index];
        m_record = index;
        const std::string where = identityOf(is);
        if (was.kind->word == "format") compareSizes(was, is, where);
        if (was.kind->word != "block") return;
        compareFields(was, is, where);
        compareTables(was, is, where);
        comparePlaces(was, is, where);
    }

    // --- formats ----------------------------------------------------------------------------------

    void compareSizes(const RecordTree &was, const RecordTree &is, const std::string &where)
    {
        const Children before = was.childrenOf("size"), after = is.childrenOf("size");
        for (const RecordTree *size : before)
            if (!withId(after, size->text("id")))
                tell(
                    m_record, where + ", " + identityOf(*size), is,
                    "removed: sheets of that size keep their frame and can take another size only");
        for (const RecordTree *size : after) {
            const RecordTree *old = withId(before, size->text("id"));
            const std::string here = where + ", " + identityOf(*size);
            if (!old)
                tell(m_record, here, *size, "added");
            else if (const std::string change = changes(*old, *size, {"length", "height"});
                     !change.empty())
                tell(m_record, here, *size, "resized: " + change);
        }
    }

    // --- fields of blocks ---------------------------------------------------------------------------

    void compareFields(const RecordTree &was, const RecordTree &is, const std::string &where)
    {
        const Children old = was.childrenOf("field"), after = is.childrenOf("field");
        for (const RecordTree *field : old)
            if (!withId(after, field->text("id")))
                tell(m_record, where + ", " + identityOf(*field), is, "removed with its value");
        const Children before = staying(old, after);
        std::string intruder; // the first new one that is not behind all others
        for (std::size_t i = 0; i < std::min(before.size(), after.size()); ++i)
            if (intruder.empty() && !withId(old, after[i]->text("id")))
                intruder = after[i]->text("id");
        for (const RecordTree *field : after) {
            const std::string here = where + ", " + identityOf(*field);
            const std::string id = field->text("id");
            if (const RecordTree *known = withId(before, id))
                moved(*known, *field, {"location_x", "location_y", "text_site"}, here);
            else
                tell(m_record, here, *field, "added");
            for (std::size_t i = 0; i < std::min(before.size(), after.size()); ++i)
                if (before[i]->text("id") == id && after[i]->text("id") != id)
                    tell(m_record, here, *field,
                         fmt::format("REORDERED: its values on placed blocks would stand in the "
                                     "cell {}; {}",
                                     after[i]->text("id"), fieldCure(intruder)));
        }
    }

    std::string fieldCure(const std::string &intruder) const
    {
        const std::string build = "build with --keep-order-of " + m_oldName;
        if (intruder.empty()) return "the fields have changed their order: " + build;
        return fmt::format("the new field {} stands before it: put new fields behind all others, "
                           "or {}",
                           intruder, build);
    }

    // --- tables -------------------------------------------------------------------------------------

    void compareTables(const RecordTree &was, const RecordTree &is, const std::string &where)
    {
        const Children before = was.childrenOf("table"), after = is.childrenOf("table");
        for (const RecordTree *table : before)
            if (!withId(after, table->text("id")))
                tell(m_record, where + ", " + identityOf(*table), is,
                     "removed: 'qelfmt format update' takes it and its rows off placed blocks");
        for (std::size_t i = 0; i < after.size(); ++i) {
            const RecordTree &table = *after[i];
            const std::string here = where + ", " + identityOf(table);
            const RecordTree *known = withId(before, table.text("id"));
            if (!known) {
                tell(m_record, here, table,
                     "added: to placed blocks by 'qelfmt format update' alone");
                continue;
            }
            moved(*known, table, {"location_x", "location_y", "direction"}, here);
            for (std::size_t k = 0; k < before.size(); ++k)
                if (before[k] == known && (k >= after.size() || after[k] != &table))
                    tell(m_record, here, table,
                         fmt::format("REORDERED: table {} -> {}; its rows on placed blocks would "
                                     "{}: {}",
                                     k + 1, i + 1,
                                     k < after.size() ? "stand in the table " + after[k]->text("id")
                                                      : "belong to no table",
                                     tableCure(was, k)));
            compareColumns(*known, table, here);
        }
    }

    // The stored order helps when every table before it is still there.
    std::string tableCure(const RecordTree &was, std::size_t position) const
    {
        const Children before = was.childrenOf("table");
        const Children kept = m_kept[*indexOf(m_kept, identityOf(was))].childrenOf("table");
        if (position < kept.size() && kept[position]->text("id") == before[position]->text("id"))
            return "build with --keep-order-of " + m_oldName;
        return "keep the table that is gone, or let 'qelfmt format update' go by the ids";
    }

    // Fields of rows find their definitions by id: their order decides nothing but the order.
    void compareColumns(const RecordTree &was, const RecordTree &is, const std::string &where)
    {
        const Children old = was.childrenOf("field"), after = is.childrenOf("field");
        for (const RecordTree *column : old)
            if (!withId(after, column->text("id")))
                tell(m_record, where + ", " + identityOf(*column), is,
                     "removed with its values in all rows");
        const Children before = staying(old, after), common = staying(after, old);
        for (const RecordTree *column : after) {
            const std::string here = where + ", " + identityOf(*column);
            const RecordTree *known = withId(old, column->text("id"));
            if (!known) {
                tell(m_record, here, *column, "added to every row");
                continue;
            }
            moved(*known, *column, {"location_x", "location_y", "text_site"}, here);
            for (std::size_t i = 0; i < std::min(before.size(), common.size()); ++i)
                if (common[i] == column && before[i]->text("id") != column->text("id"))
                    tell(m_record, here, *column,
                         "another order of columns: values stay in theirs, which pair by id");
        }
    }

    // --- places -------------------------------------------------------------------------------------

    static std::string changes(const RecordTree &was, const RecordTree &is,
                               std::initializer_list<const char *> keys)
    {
        std::string text;
        for (const char *key : keys) {
            const SlotInfo *slot = is.kind->slot(key);
            const std::string before = slotText(was, *slot), after = slotText(is, *slot);
            if (before == after) continue;
            text += fmt::format("{}{}: {} -> {}", text.empty() ? "" : ", ", key, before, after);
        }
        return text;
    }

    void moved(const RecordTree &was, const RecordTree &is,
               std::initializer_list<const char *> keys, const std::string &where)
    {
        std::string change = changes(was, is, keys);
        if (is.kind->slot("relative_offset_type"))
            if (const std::string corner = changes(was, is, {"relative_offset_type"});
                !corner.empty())
                change += (change.empty() ? "" : ", ") + corner;
        if (!change.empty()) tell(m_record, where, is, "moved: " + change);
    }

    void comparePlaces(const RecordTree &was, const RecordTree &is, const std::string &where)
    {
        std::map<std::string, std::string> before, after;
        for (const RecordTree &child : was.children)
            if (isLocation(child)) before[identityOf(child)] += placeText(child);
        for (const RecordTree &child : is.children)
            if (isLocation(child)) after[identityOf(child)] += placeText(child);
        std::set<std::string> told;
        for (const RecordTree &child : is.children) {
            const std::string identity = identityOf(child);
            if (!isLocation(child) || !told.insert(identity).second) continue;
            if (!before.contains(identity))
                tell(m_record, where + ", " + identity, child, "added");
            else if (before[identity] != after[identity])
                tell(m_record, where + ", " + identity, child,
                     "moved: the block would stand elsewhere");
        }
        for (const auto &[identity, text] : before)
            if (!after.contains(identity))
                tell(m_record, where + ", " + identity, is,
                     "removed: the block would have no place there");
    }

    const std::vector<RecordTree> &m_old;
    const std::vector<RecordTree> &m_fresh;
    const std::string &m_oldName;
    std::vector<RecordTree> m_kept; // the new ones as --keep-order-of would store them
    std::size_t m_record = 0;       // the new one that is being compared
    std::vector<Consequence> m_found;
};

} // namespace

std::vector<Consequence> rollout(const std::vector<RecordTree> &old,
                                 const std::vector<RecordTree> &fresh, const std::string &oldName)
{
    return Rollout(old, fresh, oldName).run();
}

} // namespace app::authoring
