#!/usr/bin/env python3
"""Makes the same drawing and picture as fill_title_block.c, through the C interface alone.

    fill_title_block.py OUT.qdraw OUT.pdf [LIBRARIES]

LIBRARIES is the folder of libqelfmt.so.1; without it the system's search path is used.
"""
import ctypes
import sys

from qelfmt_client import Failure, Library, ValueList


def fill_title_block(library, sheet):
    for field, lines in [("title", ["Volute casing"]), ("number", ["NP-080200-02"]), ("revision", ["B"]),
                         ("supplement", ["EN-GJL-250", "machined"])]:
        value = ValueList.of(lines)
        library.format.set_field_value(sheet, b"TITLE", field.encode(), ctypes.byref(value))


def add_revision(library, sheet):
    table = sheet, b"REVISIONS", b"REVISIONS"
    library.format.add_block(sheet, b"REVISIONS")
    library.format.add_entry(*table)
    row = library.number_of_rows(sheet, "REVISIONS", "REVISIONS") - 1
    for column, text in [("index", "B"), ("change", "bore enlarged to 32 H7"), ("date", "2024-02-27")]:
        value = ValueList.of([text])
        library.format.set_table_value(*table, row, column.encode(), ctypes.byref(value))
    # Millimetres from the sheet's lower left corner.
    library.format.place_symbol(*table, row, (ctypes.c_double * 3)(150.0, 160.0, 0.0))


def make_drawing(library, file, picture):
    with library.new_part(file):
        sheet = library.new_sheet("SHEET1")
        library.format.add_format(sheet, b"ISO", b"A3")
        fill_title_block(library, sheet)
        add_revision(library, sheet)
        print(f"title: {library.value_of(sheet, 'TITLE', 'title')[0]}")
        library.platform.PART_save()
        library.write_pdf([sheet], picture)


def main(arguments):
    if len(arguments) not in (2, 3):
        print(__doc__, file=sys.stderr)
        return 2
    try:
        with Library(*arguments[2:]) as library:
            make_drawing(library, arguments[0], arguments[1])
    except Failure as failure:
        print(f"fill_title_block: {arguments[0]}: {failure}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
