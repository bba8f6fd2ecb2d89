#!/usr/bin/env python3
"""Checks all drawings of a folder against the definitions and brings them up to date, through the C interface alone.

    update_folder.py FOLDER [--check] [LIBRARIES]

With --check it only says what is out of date. A drawing that fails is left as it was. LIBRARIES is the folder of
libqelfmt.so.1; without it the system's search path is used. Exit status: 0 fine, 1 a drawing failed or, with --check,
is out of date, 2 usage.
"""
import os
import pathlib
import sys

from qelfmt_client import Failure, Library


def follow(library, path, only_check):
    """How the drawing stands; only what is saved changes the file."""
    with library.open_part(path) as part:
        formats = []
        for sheet in library.sheets():
            library.platform.DRAW_open_drawing(sheet)
            formats.append("/".join(library.format_of(sheet) or ["no format"]))
            library.format.update(sheet)
        if not library.is_modified(part):
            state = "up to date"
        elif only_check:
            state = "out of date"
        else:
            library.platform.PART_save()
            state = "updated"
        print(f"{path.name}: {', '.join(formats)}: {state}")
        return state


def main(arguments):
    only_check = "--check" in arguments
    rest = [argument for argument in arguments if argument != "--check"]
    if len(rest) not in (1, 2) or not os.path.isdir(rest[0]):
        print(__doc__, file=sys.stderr)
        return 2
    fine = True
    with Library(*rest[1:]) as library:
        for path in sorted(pathlib.Path(rest[0]).glob("*.qdraw")):
            try:
                fine &= follow(library, path, only_check) != "out of date"
            except Failure as failure:
                print(f"{path.name}: {failure}", file=sys.stderr)
                fine = False
    return 0 if fine else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
