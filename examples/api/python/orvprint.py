# SPDX-License-Identifier: Apache-2.0
"""Reads SVG drawings and renders their pages, through liborvprint.

    with orvprint.open("plan.svg") as document:
        print(document.pages)
        document.render_file("plan.pdf", paper="A4", scale="1:20")
        png = document.render(format="png", dpi=300, pages="1")

Options are keyword arguments: the long options of the command orvprint, with "_" for "-". True and False set switches,
and a list repeats an option. Failures raise Error. A document belongs to one thread at a time.

The library is loaded from the system's library folders; the environment variable ORVPRINT_LIBRARY names another file.
"""

import ctypes
import json
import os
from typing import NamedTuple

_Write = ctypes.CFUNCTYPE(ctypes.c_int, ctypes.c_void_p, ctypes.c_void_p, ctypes.c_size_t)
_Cancel = ctypes.CFUNCTYPE(ctypes.c_int, ctypes.c_void_p)
_Progress = ctypes.CFUNCTYPE(None, ctypes.c_void_p, ctypes.c_uint, ctypes.c_uint)
_Note = ctypes.CFUNCTYPE(None, ctypes.c_void_p, ctypes.c_char_p)
_Options = ctypes.POINTER(ctypes.c_char_p)
_handle, _text, _data = ctypes.c_void_p, ctypes.c_char_p, ctypes.c_void_p

_FUNCTIONS = {
    "version": (_text, []),
    "new": (_handle, []),
    "free": (None, [_handle]),
    "error_text": (_text, [_handle]),
    "set_cancel": (ctypes.c_int, [_handle, _Cancel, _data]),
    "set_progress": (ctypes.c_int, [_handle, _Progress, _data]),
    "set_note": (ctypes.c_int, [_handle, _Note, _data]),
    "open_file": (ctypes.c_int, [_handle, _text, _Options]),
    "open_bytes": (ctypes.c_int, [_handle, _text, ctypes.c_size_t, _Options]),
    "page_count": (ctypes.c_int, [_handle, ctypes.POINTER(ctypes.c_uint)]),
    "page_size": (ctypes.c_int, [_handle, ctypes.c_uint, *[ctypes.POINTER(ctypes.c_double)] * 2]),
    "page_title": (ctypes.c_int, [_handle, ctypes.c_uint, ctypes.POINTER(_text)]),
    "render_file": (ctypes.c_int, [_handle, _text, _Options]),
    "render_descriptor": (ctypes.c_int, [_handle, ctypes.c_int, _Options]),
    "render_writer": (ctypes.c_int, [_handle, _Write, _data, _Options]),
    "check": (ctypes.c_int, [_handle, _Options, ctypes.POINTER(ctypes.c_void_p)]),
    "dump": (ctypes.c_int, [_handle, ctypes.POINTER(ctypes.c_void_p)]),
    "free_text": (None, [ctypes.c_void_p]),
}


def _load():
    library = ctypes.CDLL(os.environ.get("ORVPRINT_LIBRARY", "liborvprint.so.0"))
    for name, (result, arguments) in _FUNCTIONS.items():
        function = getattr(library, "orvprint_" + name)
        function.restype, function.argtypes = result, arguments
    return library


_library = _load()
version = _library.orvprint_version().decode()


class Error(Exception):
    """A failure. `result` is the result code of the C interface, which is also the command's exit code."""

    def __init__(self, result, text):
        super().__init__(text)
        self.result = result


class Page(NamedTuple):
    """The title of a page, and its size in points."""

    title: str
    width: float
    height: float


def _words(value):
    if isinstance(value, bool):
        return ["true" if value else "false"]
    return [str(one) for one in value] if isinstance(value, (list, tuple)) else [str(value)]


def _pairs(options):
    texts = []
    for key, value in options.items():
        for word in _words(value):
            texts += [key.replace("_", "-").encode(), word.encode()]
    return (ctypes.c_char_p * (len(texts) + 1))(*texts, None)


class Document:
    """A document. Close it, or use it in a `with` statement."""

    def __init__(self):
        self._handle = _library.orvprint_new()
        if not self._handle:
            raise MemoryError
        self._callbacks = {}

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def __del__(self):
        self.close()

    def close(self):
        """Frees the document."""
        handle, self._handle = getattr(self, "_handle", None), None
        if handle:
            _library.orvprint_free(handle)

    def _do(self, name, *arguments):
        self._thrown = None
        result = getattr(_library, "orvprint_" + name)(self._handle, *arguments)
        if self._thrown:
            raise self._thrown
        if result:
            raise Error(result, _library.orvprint_error_text(self._handle).decode())

    def _guard(self, function, failure):
        """Wraps a callback so that its exceptions are raised by the call into the library, not inside the library."""

        def call(_, *arguments):
            try:
                return failure if self._thrown else function(*arguments)
            except BaseException as thrown:  # noqa: BLE001: raised again by _do
                self._thrown = thrown
                return failure

        return call

    def _set(self, name, kind, function, failure):
        callback = kind(self._guard(function, failure)) if function else kind()
        self._do("set_" + name, callback, None)
        self._callbacks[name] = callback  # must live as long as the library may call it

    def on_cancel(self, function):
        """Sets a function that returns true to cancel; None removes it."""
        self._set("cancel", _Cancel, function and (lambda: 1 if function() else 0), 1)

    def on_progress(self, function):
        """Sets a function that receives the numbers of finished pages and of all pages; None removes it."""
        self._set("progress", _Progress, function, None)

    def on_note(self, function):
        """Sets a function that receives messages; None removes it."""
        self._set("note", _Note, function and (lambda text: function(text.decode())), None)

    def open(self, source, **options):
        """Opens a file by its path, or a drawing in bytes."""
        if isinstance(source, (bytes, bytearray, memoryview)):
            source = bytes(source)
            self._do("open_bytes", source, len(source), _pairs(options))
        else:
            self._do("open_file", os.fsencode(source), _pairs(options))
        return self

    @property
    def pages(self):
        """All pages, as a list of Page."""
        count = ctypes.c_uint()
        self._do("page_count", count)
        return [self._page(number) for number in range(1, count.value + 1)]

    def _page(self, number):
        width, height, title = ctypes.c_double(), ctypes.c_double(), ctypes.c_char_p()
        self._do("page_size", number, width, height)
        self._do("page_title", number, title)
        return Page(title.value.decode(), width.value, height.value)

    def render_file(self, path, **options):
        """Renders to a file."""
        self._do("render_file", os.fsencode(path), _pairs(options))

    def render_descriptor(self, descriptor, **options):
        """Renders to an open file descriptor; `format` is required."""
        self._do("render_descriptor", descriptor, _pairs(options))

    def render(self, **options):
        """Renders and returns the output as bytes; `format` is required."""
        blocks = []

        def take(address, size):
            blocks.append(ctypes.string_at(address, size))
            return 1

        self._do("render_writer", _Write(self._guard(take, 0)), None, _pairs(options))
        return b"".join(blocks)

    def check(self, **options):
        """Returns the findings, as `orvprint check --json` reports them for a file."""
        return self._json("check", _pairs(options))

    def dump(self):
        """Returns the model, as `orvprint inspect --json` writes it."""
        return self._json("dump")

    def _json(self, name, *arguments):
        text = ctypes.c_void_p()
        self._do(name, *arguments, text)
        try:
            return json.loads(ctypes.string_at(text))
        finally:
            _library.orvprint_free_text(text)


def open(source, **options):  # noqa: A001: a usual name in modules that open documents
    """Returns a new document that has opened a path or bytes."""
    document = Document()
    try:
        return document.open(source, **options)
    except BaseException:
        document.close()
        raise
