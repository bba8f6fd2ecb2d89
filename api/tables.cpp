// Rows of tables, their fields and symbols.
#include "api/guard.h"
#include "api/lookup.h"
#include "api/trv_fmt.h"
#include "api/values.h"

#include "point3.hxx"

using namespace QelFmt::api;

extern "C" int TRV_FMT_ask_table_value(unsigned drawing, const char *block_id, const char *table_id,
                                       int entry, const char *field_id, TRV_FMT_value_list_t *value)
{
    return guarded([&] {
        findDrawing(drawing);
        requireArgument(value);
        clear(*value);
        const FoundEntry row = findEntry(drawing, block_id, table_id, entry);
        fill(*value, findFieldOf(*row.entry, field_id, "table")->GetValue());
    });
}

extern "C" int TRV_FMT_set_table_value(unsigned drawing, const char *block_id, const char *table_id,
                                       int entry, const char *field_id,
                                       const TRV_FMT_value_list_t *value)
{
    return guarded([&] {
        findDrawing(drawing);
        requireArgument(value);
        const auto lines = linesOf(*value);
        const FoundEntry row = findEntry(drawing, block_id, table_id, entry);
        const auto field = findFieldOf(*row.entry, field_id, "table");
        row.table->setValue(*row.entry, *field, lines);
    });
}

extern "C" int QEL_FMT_set_table_field_editable(unsigned drawing, const char *block_id,
                                                const char *table_id, int entry,
                                                const char *field_id, char editable)
{
    return guarded([&] {
        const FoundEntry row = findEntry(drawing, block_id, table_id, entry);
        findFieldOf(*row.entry, field_id, "block")->SetIsEditable(editable != 0);
    });
}

extern "C" int QEL_FMT_get_table_field_editable(unsigned drawing, const char *block_id,
                                                const char *table_id, int entry,
                                                const char *field_id, char *editable)
{
    return guarded([&] {
        findDrawing(drawing);
        requireArgument(editable);
        const FoundEntry row = findEntry(drawing, block_id, table_id, entry);
        *editable = findFieldOf(*row.entry, field_id, "block")->GetIsEditable() != 0;
    });
}

extern "C" int TRV_FMT_add_entry(unsigned drawing, const char *block_id, const char *table_id)
{
    return guarded([&] { findTable(drawing, block_id, table_id)->AppendEntry(); });
}

extern "C" int TRV_FMT_delete_entry(unsigned drawing, const char *block_id, const char *table_id,
                                    int entry)
{
    return guarded([&] {
        FoundEntry row = findEntry(drawing, block_id, table_id, entry);
        row.table->RemoveEntry(row.entry);
        row.table->locate(); // the rows after it close up
    });
}

extern "C" int TRV_FMT_ask_number_table_entries(unsigned drawing, const char *block_id,
                                                const char *table_id, int *count)
{
    return guarded([&] {
        findDrawing(drawing);
        requireArgument(count);
        *count = static_cast<int>(findTable(drawing, block_id, table_id)->entryCount());
    });
}

extern "C" int TRV_FMT_place_symbol(unsigned drawing, const char *block_id, const char *table_id,
                                    int entry, const double *position)
{
    return guarded([&] {
        findDrawing(drawing);
        requireArgument(position);
        const FoundEntry row = findEntry(drawing, block_id, table_id, entry);
        row.entry->addSymbol(Point3(position));
    });
}
