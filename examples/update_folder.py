#!/usr/bin/env python3
"""Brings the formats of all drawings of a folder up to date, through the C interface alone.

    update_folder.py FOLDER [LIBRARIES]

LIBRARIES is the folder of libqelfmt.so.1; without it the system's search path is used. A drawing that fails is left
as it was. Exit status: 0 fine, 1 a drawing failed, 2 usage.
"""
import ctypes
import os
import pathlib
import sys

TAG = ctypes.c_uint


class LoadStatus(ctypes.Structure):
    """UF_PART_load_status_t; with room to spare, since only the platform reads it."""
    _fields_ = [("room", ctypes.c_char * 256)]


class Failure(Exception):
    pass


class Library:
    def __init__(self, folder):
        def load(name):
            path = os.path.join(folder, name) if folder else name
            return ctypes.CDLL(path, mode=ctypes.RTLD_GLOBAL)
        self.host = load("libqelfmt-host.so.1")
        self.formats = load("libqelfmt.so.1")
        self.formats.TRV_FMT_ask_last_error.restype = ctypes.c_char_p
        self.host.UF_initialize()
        self.check(self.formats.TRV_FMT_initialize())

    def check(self, status):
        if status:
            raise Failure(self.formats.TRV_FMT_ask_last_error().decode("utf-8", "replace"))

    def platform(self, code):
        if code:
            text = ctypes.create_string_buffer(256)
            self.host.UF_get_fail_message(code, text)
            raise Failure(text.value.decode("utf-8", "replace"))

    def open(self, path):
        part, status = TAG(), LoadStatus()
        code = self.host.UF_PART_open(os.fsencode(path), ctypes.byref(part), ctypes.byref(status))
        self.host.UF_PART_free_load_status(ctypes.byref(status))
        self.platform(code)
        return part

    def sheets(self):
        count, tags = ctypes.c_int(), ctypes.POINTER(TAG)()
        self.platform(self.host.UF_DRAW_ask_drawings(ctypes.byref(count), ctypes.byref(tags)))
        sheets = [tags[i] for i in range(count.value)]
        self.host.UF_free(tags)
        return sheets

    def format_of(self, sheet):
        """(format, size) of a sheet; None when it has no format."""
        names = ctypes.create_string_buffer(256), ctypes.create_string_buffer(256)
        self.check(self.formats.TRV_FMT_ask_format(TAG(sheet), *names))
        format_id, size = (name.value.decode("utf-8", "replace") for name in names)
        return (format_id, size) if format_id else None

    def update(self, path):
        part = self.open(path)
        try:
            updated = []
            for sheet in self.sheets():
                self.platform(self.host.UF_DRAW_open_drawing(TAG(sheet)))
                self.check(self.formats.TRV_FMT_update(TAG(sheet)))
                updated.append(self.format_of(sheet))
            self.platform(self.host.UF_PART_save())
            return updated
        finally:
            self.host.UF_PART_close(part, 0, 1)

    def end(self):
        self.formats.TRV_FMT_terminate()
        self.host.UF_terminate()


def main(arguments):
    if len(arguments) not in (1, 2) or not os.path.isdir(arguments[0]):
        print(__doc__, file=sys.stderr)
        return 2
    library = Library(arguments[1] if len(arguments) == 2 else "")
    failed = 0
    for path in sorted(pathlib.Path(arguments[0]).glob("*.qdraw")):
        try:
            formats = ["/".join(found) if found else "no format" for found in library.update(path)]
            print(f"{path.name}: {', '.join(formats)}")
        except Failure as failure:
            print(f"{path.name}: {failure}", file=sys.stderr)
            failed = 1
    library.end()
    return failed


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
