"""Reading survey documents: examining one, and going through many as rows.

    import wenlolib

    report = wenlolib.examine(pathlib.Path("QX200_1.PLM").read_bytes())
    if report.trusted:
        print(report.values["Date"], report.contents)

    for row in wenlolib.rows(["incoming", "2026-11.tar.zst"], jobs=2):
        print(row.sha256, row.fault, row.device_id)

Nothing is recorded, written or printed here. Other threads of the interpreter run while documents are
read and examined.
"""

from __future__ import annotations

import os
import threading
from collections.abc import Iterable, Iterator
from dataclasses import dataclass
from typing import Any, NamedTuple, Optional, Union

from wenlolib._receiver import ffi as _ffi
from wenlolib._receiver import lib as _lib

__all__ = ["Report", "Row", "Rows", "examine", "rows"]
__version__: str = _ffi.string(_lib.wenlolib_receiver_version()).decode()

Path = Union[str, bytes, "os.PathLike[str]", "os.PathLike[bytes]"]

_VALUES = ("Version", "OSVersion", "Date", "Locale", "ID", "DeviceID", "SN", "ROMVER")


# --- One document ---


@dataclass(frozen=True)
class Report:
    """What an examination found. In a text that is not UTF-8, each wrong byte becomes a surrogate,
    as in file names."""

    fault: str
    """What has happened to the document: "none", "truncated", "damaged", "altered", "repaired" (it
    can be relied on) or "foreign" (it is a file of another kind)."""
    layer: str
    """The first layer that does not hold: "xml", "white_space", "layout", "cipher_marker",
    "hexadecimal", "checksum", "contents"; or "none"."""
    offset: int
    """The place of the first wrong byte; the document's length if it is truncated; else 0."""
    field: str
    """The element or attribute that is concerned, such as "Date" or "SUM"; or ""."""
    explanation: str
    """What is wrong, in one sentence for a person; or ""."""
    trusted: bool
    """Whether the checksum vouches for what follows. If not, what follows is only what was found."""
    layout: Optional[str]
    """"application", "printer" or "printer_older_tag"; None if it could not be told."""
    values: dict[str, str]
    """The values that there are, by element: "Version", "OSVersion", "Date", "Locale", "ID" and, for
    the older tag type, "DeviceID", "SN", "ROMVER"."""
    checksum: str
    """As it is in the document; or ""."""
    cipher: Optional[str]
    """"RC4" or "XOR"; None if there is no payload."""
    contents: Optional[bytes]
    """The record's contents, decrypted; None if there is no payload, or no date to decrypt it by."""

    @property
    def sound(self) -> bool:
        """Whether all layers hold."""
        return self.layer == "none"


def _text(characters: Any) -> str:
    return _ffi.string(characters).decode("utf-8", "surrogateescape")


def _text_or_none(characters: Any) -> Optional[str]:
    return None if characters == _ffi.NULL else _text(characters)


def _check(answer: int) -> None:
    if answer == _lib.WENLOLIB_NO_MEMORY:
        raise MemoryError
    if answer == _lib.WENLOLIB_NO_THREAD:
        raise RuntimeError("the system cannot start another thread: use fewer jobs")
    if answer != _lib.WENLOLIB_OK:
        raise ValueError("an argument is out of range")


def examine(data: Union[bytes, bytearray, memoryview]) -> Report:
    """Examines a document. Any bytes give a report, in time and memory proportional to their number.

    Raises TypeError for what is not bytes, MemoryError if memory runs out.
    """
    # Bytes that another thread could change meanwhile are copied.
    held = data if isinstance(data, bytes) else memoryview(data).tobytes()
    place = _ffi.new("wenlolib_report **")
    buffer = _ffi.from_buffer(held)  # its length is right, whatever a subclass says
    _check(_lib.wenlolib_examine(buffer, len(buffer), place))
    report = place[0]
    try:
        return _report_from(report)
    finally:
        _lib.wenlolib_report_free(report)


def _report_from(report: Any) -> Report:
    size = _ffi.new("size_t *")
    values = {}
    for name in _VALUES:
        value = _lib.wenlolib_report_value(report, name.encode(), size)
        if value != _ffi.NULL:
            values[name] = _ffi.unpack(value, size[0]).decode("utf-8", "surrogateescape")
    contents = _lib.wenlolib_report_contents(report, size)
    return Report(
        fault=_text(_lib.wenlolib_report_fault(report)),
        layer=_text(_lib.wenlolib_report_layer(report)),
        offset=_lib.wenlolib_report_offset(report),
        field=_text(_lib.wenlolib_report_field(report)),
        explanation=_text(_lib.wenlolib_report_explanation(report)),
        trusted=_lib.wenlolib_report_trusted(report) == 1,
        layout=_text_or_none(_lib.wenlolib_report_layout(report)),
        values=values,
        checksum=_text(_lib.wenlolib_report_checksum(report)),
        cipher=_text_or_none(_lib.wenlolib_report_cipher(report)),
        contents=None if contents == _ffi.NULL else _ffi.unpack(contents, size[0]),
    )


# --- Many documents ---


class Row(NamedTuple):
    """A document as a row of schema 1; man 5 wenlolib says what each column means. None means no
    value; an empty text is a value."""

    schema: int
    source: str
    member: Optional[str]
    name: Optional[str]
    number: Optional[int]
    sha256: Optional[str]
    bytes: Optional[int]
    fault: str
    layer: str
    offset: Optional[int]
    field: Optional[str]
    trusted: bool
    layout: Optional[str]
    version: Optional[str]
    os_version: Optional[str]
    date_text: Optional[str]
    date_utc: Optional[str]
    offset_minutes: Optional[int]
    locale: Optional[str]
    id: Optional[str]
    device_id: Optional[str]
    sn: Optional[str]
    romver: Optional[str]
    cipher: Optional[str]
    contents: Optional[str]
    contents_hex: Optional[str]
    contents_bytes: Optional[int]


def _value(cell: Any) -> Any:
    if cell.type == _lib.WENLOLIB_TEXT:
        return _ffi.unpack(cell.text, cell.size).decode()
    if cell.type == _lib.WENLOLIB_INTEGER:
        return cell.integer
    return None if cell.type == _lib.WENLOLIB_NULL else cell.integer == 1


class Rows(Iterator[Row]):
    """The rows of a walk through documents, one after the other. Made by `rows`.

    Several threads may share one: each row goes to one of them. A process that is forked off cannot
    go on with its parent's rows. A signal that arrives while a pipe is waited for is handled when the
    pipe gives something.
    """

    def __init__(self, paths: list[bytes], jobs: int, redact: bool) -> None:
        self._lock = threading.RLock()
        self._process = os.getpid()
        self._complaint = ""
        self._reading = False
        self._closing = False  # close once the row being read is complete
        self._handle: Any = _ffi.NULL
        texts = [_ffi.new("char[]", path) for path in paths]
        place = _ffi.new("wenlolib_rows **")
        _check(_lib.wenlolib_rows_open(texts, len(texts), jobs, redact, place))
        self._handle = place[0]

    def __iter__(self) -> Rows:
        return self

    def _lock_here(self) -> Any:
        # In a process that was forked off, the thread that holds the lock may not exist.
        if self._process != os.getpid():
            self._lock = threading.RLock()
            self._reading = False
        return self._lock

    def __next__(self) -> Row:
        with self._lock_here():
            if self._handle == _ffi.NULL:
                raise StopIteration
            if self._process != os.getpid():
                raise RuntimeError(
                    "these rows belong to the process that this one was forked from: "
                    "call rows() again here"
                )
            if self._reading:
                raise RuntimeError("a signal handler asked for a row while one was being read")
            self._reading = True
            try:
                return self._next()
            finally:
                self._reading = False
                if self._closing:
                    self._close()

    def _next(self) -> Row:
        place = _ffi.new("wenlolib_cell **")
        _check(_lib.wenlolib_rows_next(self._handle, place))
        cells = place[0]
        if cells == _ffi.NULL:
            self._closing = True
            raise StopIteration
        self._complaint = _text(_lib.wenlolib_rows_complaint(self._handle))
        return Row._make(_value(cells[i]) for i in range(len(Row._fields)))

    @property
    def complaint(self) -> str:
        """Why the document of the last row could not be read, in words for a person; or ""."""
        return self._complaint

    def close(self) -> None:
        """Ends the walk, even in the middle; waits for a pipe that is waited for. A `with` does so too."""
        with self._lock_here():
            self._closing = True
            if not self._reading:  # else a signal handler has interrupted the reading
                self._close()

    def _close(self) -> None:
        handle, self._handle = self._handle, _ffi.NULL
        # In a process that was forked off, the walk's threads do not exist: nobody could wait for
        # them.
        if handle != _ffi.NULL and self._process == os.getpid():
            _lib.wenlolib_rows_free(handle)

    def __reduce__(self) -> Any:
        raise TypeError("rows cannot be copied or pickled")

    def __enter__(self) -> Rows:
        return self

    def __exit__(self, *_: object) -> None:
        self.close()

    def __del__(self) -> None:
        if hasattr(self, "_handle"):
            self._close()


def rows(paths: Union[Path, Iterable[Path]], jobs: int = 1, redact: bool = False) -> Rows:
    """The rows of all documents in files and folders, in the order given.

    In folders and sub-folders *.PLM, *.ALM and archives (*.tar, *.tar.gz, *.tgz, *.tar.zst) count,
    in the order of their names' bytes. A file given by path may be an archive under any name that
    does not end in .PLM or .ALM. What cannot be read has a row too, whose fault is
    "unreadable"; `Rows.complaint` says why.

    `jobs` threads, from 1 to 256, work on documents at the same time. With `redact`, rows lack the
    installation identifier and the serial number, also where these stand in another value.

    Raises ValueError for a number of jobs that is out of range and for a path with a NUL in it,
    RuntimeError if a thread cannot be started, MemoryError if memory runs out.
    """
    some = [paths] if isinstance(paths, (str, bytes, os.PathLike)) else list(paths)
    encoded = [os.fsencode(path) for path in some]
    if any(b"\0" in path for path in encoded):
        raise ValueError("a path has a NUL in it")
    if not 1 <= jobs <= 256:
        raise ValueError("jobs must be from 1 to 256")
    return Rows(encoded, jobs, bool(redact))


assert Row._fields == tuple(
    _ffi.string(_lib.wenlolib_column_name(i)).decode() for i in range(len(Row._fields))
)
