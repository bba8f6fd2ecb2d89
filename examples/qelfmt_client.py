"""The C interface and what a client needs of the platform's, from Python with ctypes alone.

    with Library() as library:
        with library.new_part("a.qdraw"):
            sheet = library.new_sheet("SHEET1")
            library.format.add_format(sheet, b"ISO", b"A3")

Every function of the C interface is a member of `library.format`, named without its prefix; a failure raises Failure
with the last error. Those of the platform are members of `library.platform`; codes raise Failure with their texts.
"""
import contextlib
import ctypes
import os

TAG = ctypes.c_uint
TEXT = ctypes.c_char_p
METRIC, A3, FIRST_ANGLE = 1, 4, 2


class Failure(Exception):
    """What the library or the platform said."""


class ValueList(ctypes.Structure):
    """TRV_FMT_value_list_t"""
    _fields_ = [("num_values", ctypes.c_int), ("values", ctypes.POINTER(TEXT))]

    @classmethod
    def of(cls, lines):
        texts = (TEXT * len(lines))(*[line.encode() for line in lines])
        return cls(len(lines), texts)

    def lines(self):
        return [self.values[i].decode("utf-8", "replace") for i in range(self.num_values)]


class LoadStatus(ctypes.Structure):
    """UF_PART_load_status_t"""
    _fields_ = [("failed", ctypes.c_ubyte), ("user_abort", ctypes.c_ubyte), ("n_parts", ctypes.c_int),
                ("file_names", ctypes.POINTER(TEXT)), ("statuses", ctypes.POINTER(ctypes.c_int))]


class DrawingSize(ctypes.Union):
    """UF_DRAW_size_union_t"""
    _fields_ = [("metric_size_code", ctypes.c_int), ("custom_size", ctypes.c_double * 2)]


class DrawingInfo(ctypes.Structure):
    """UF_DRAW_info_t"""
    _fields_ = [("size_state", ctypes.c_int), ("size", DrawingSize), ("drawing_scale", ctypes.c_double),
                ("units", ctypes.c_int), ("projection_angle", ctypes.c_int)]


class Calls:
    """The functions of a shared library by name; a result other than 0 raises what `reason` says of it."""

    def __init__(self, library, prefixes, reason):
        self._library, self._prefixes, self._reason = library, prefixes, reason

    def __getattr__(self, name):
        found = [prefix + name for prefix in self._prefixes if hasattr(self._library, prefix + name)]
        if not found:
            raise AttributeError(f"no function {name} with {' or '.join(self._prefixes)} before it")
        function = getattr(self._library, found[0])

        def call(*arguments):
            result = function(*arguments)
            if result:
                raise Failure(self._reason(result))
        return call


class Library:
    """The library, started; `folder` is where libqelfmt.so.1 is, unless the system finds it itself."""

    def __init__(self, folder=""):
        def load(name):
            return ctypes.CDLL(os.path.join(folder, name), mode=ctypes.RTLD_GLOBAL)
        self._host = load("libqelfmt-host.so.1")
        self._formats = load("libqelfmt.so.1")
        self._pictures = load("libqelfmt-display.so.1")
        self._formats.TRV_FMT_ask_last_error.restype = TEXT
        self._pictures.nxhost_ask_picture_error.restype = TEXT
        self._host.UF_free.argtypes = [ctypes.c_void_p]
        self.format = Calls(self._formats, ["TRV_FMT_", "QEL_FMT_"], lambda _: self.last_error())
        self.platform = Calls(self._host, ["UF_"], self._text_of)
        self._picture = Calls(self._pictures, ["nxhost_"], lambda _: self._picture_error())

    def __enter__(self):
        self.platform.initialize()
        self.format.initialize()
        return self

    def __exit__(self, *_):
        self.format.terminate()
        self.platform.terminate()

    def last_error(self):
        return self._formats.TRV_FMT_ask_last_error().decode("utf-8", "replace")

    def _picture_error(self):
        return self._pictures.nxhost_ask_picture_error().decode("utf-8", "replace")

    def _text_of(self, code):
        text = ctypes.create_string_buffer(133)
        self._host.UF_get_fail_message(code, text)
        return text.value.decode("utf-8", "replace")

    # --- parts and sheets, the platform's ---------------------------------------------------------

    @contextlib.contextmanager
    def open_part(self, path):
        part, status = TAG(), LoadStatus()
        try:
            self.platform.PART_open(os.fsencode(path), ctypes.byref(part), ctypes.byref(status))
        finally:
            self._host.UF_PART_free_load_status(ctypes.byref(status))
        with self._closing(part):
            yield part

    @contextlib.contextmanager
    def new_part(self, path):
        part = TAG()
        self.platform.PART_new(os.fsencode(path), METRIC, ctypes.byref(part))
        with self._closing(part):
            yield part

    @contextlib.contextmanager
    def _closing(self, part):
        try:
            yield
        finally:
            self._host.UF_PART_close(part, 0, 1)

    def is_modified(self, part):
        return self._host.UF_PART_is_modified(part) != 0

    def new_sheet(self, name):
        """A sheet of size A3, open."""
        sheet = TAG()
        info = DrawingInfo(0, DrawingSize(metric_size_code=A3), 1.0, METRIC, FIRST_ANGLE)
        self.platform.DRAW_create_drawing(name.encode(), ctypes.byref(info), ctypes.byref(sheet))
        self.platform.DRAW_open_drawing(sheet)
        return sheet

    def sheets(self):
        number, tags = ctypes.c_int(), ctypes.POINTER(TAG)()
        self.platform.DRAW_ask_drawings(ctypes.byref(number), ctypes.byref(tags))
        sheets = [TAG(tags[i]) for i in range(number.value)]
        self._host.UF_free(tags)
        return sheets

    def write_pdf(self, sheets, path):
        """One page a sheet."""
        tags = (TAG * len(sheets))(*[sheet.value for sheet in sheets])
        self._picture.write_pdf(tags, len(sheets), os.fsencode(path))

    # --- what the C interface answers through pointers --------------------------------------------

    def format_of(self, sheet):
        """(format, size) of a sheet; None when it has no format."""
        names = ctypes.create_string_buffer(256), ctypes.create_string_buffer(256)
        self.format.ask_format(sheet, *names)
        format_id, size = (name.value.decode("utf-8", "replace") for name in names)
        return (format_id, size) if format_id else None

    def value_of(self, sheet, block, field):
        """The lines of a field's value."""
        value = ValueList()
        self.format.ask_field_value(sheet, block.encode(), field.encode(), ctypes.byref(value))
        lines = value.lines()
        self._formats.TRV_FMT_free_value(ctypes.byref(value))
        return lines

    def number_of_rows(self, sheet, block, table):
        rows = ctypes.c_int()
        self.format.ask_number_table_entries(sheet, block.encode(), table.encode(), ctypes.byref(rows))
        return rows.value
