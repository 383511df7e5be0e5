"""Reads the tables that an exception is passed on by in a Mach-O image: how the frame of each
function is undone, and where it catches or cleans up."""
import bisect
import collections
import struct

from macho import Cursor

# Kinds of entries, by architecture: with and without a frame pointer. An entry of another kind
# (0: nothing is known of the function) ends the process.
FRAMES = {"x86_64": {1, 2, 3}, "arm64": {2, 4}}
DWARF = {"x86_64": 4, "arm64": 3}
HAS_AREA = 0x40000000
REGULAR_PAGE, COMPRESSED_PAGE = 2, 3

# The function that looks for a handler (null if there is nothing to look for), and the function's
# area in __gcc_except_tab, which says what it catches.
Handling = collections.namedtuple("Handling", "personality area")
NOTHING = Handling(None, None)


class Table:
    """An image's __unwind_info, with the descriptions in __eh_frame that it refers to."""

    def __init__(self, architecture, image):
        self._image = image
        self._frames, self._dwarf = FRAMES[architecture], DWARF[architecture]
        self._at = image.offset_of(image.sections["__unwind_info"][0])
        version, common, commons, personalities, count, index, pages = self._read("<7I", 0)
        if version != 1:
            raise ValueError("the unwind table has another version")
        self._common = self._read(f"<{commons}I", common)
        self._personalities = [image.name_at(image.base + slot)
                               for slot in self._read(f"<{count}I", personalities)]
        first = [self._read("<3I", index + 12 * i) for i in range(pages)]
        self._entries = [entry for function, page, _ in first[:-1]
                         for entry in self._page(function, page)]
        self._starts = [start for start, _ in self._entries]
        self._end = image.base + first[-1][0]
        areas = struct.iter_unpack("<II", self._bytes(first[0][2], first[-1][2]))
        # {function: its area}
        self.areas = {image.base + function: image.base + area for function, area in areas}
        self.handling = {}  # {function: how it handles exceptions}
        self.broken = {}  # {function's name: why exceptions cannot pass through it}
        for function, names in image.functions().items():
            try:
                self.handling[function] = self._handling(function)
            except ValueError as error:
                self.broken[min(names, default=hex(function))] = str(error)

    def _read(self, form, offset):
        return struct.unpack_from(form, self._image.data, self._at + offset)

    def _bytes(self, start, end):
        return self._image.data[self._at + start:self._at + end]

    def _page(self, function, page):
        """(function, encoding) of each entry of a second-level page."""
        kind, = self._read("<I", page)
        if kind == REGULAR_PAGE:
            entries, count = self._read("<2H", page + 4)
            for i in range(count):
                start, encoding = self._read("<2I", page + entries + 8 * i)
                yield self._image.base + start, encoding
        elif kind == COMPRESSED_PAGE:
            entries, count, own, owns = self._read("<4H", page + 4)
            encodings = self._common + self._read(f"<{owns}I", page + own)
            for packed in self._read(f"<{count}I", page + entries):
                yield self._image.base + function + (packed & 0xFFFFFF), encodings[packed >> 24]
        else:
            raise ValueError(f"the unwind table has a page of kind {kind}")

    def _handling(self, function):
        """Raises ValueError if exceptions cannot pass through the function."""
        place = bisect.bisect_right(self._starts, function) - 1
        if place < 0 or function >= self._end:
            raise ValueError("it has no entry")
        start, encoding = self._entries[place]
        kind = encoding >> 24 & 0xF
        if kind == self._dwarf:
            return self._described(function, encoding & 0xFFFFFF)
        if kind not in self._frames:
            raise ValueError(f"its entry is {encoding:#010x}")
        if not encoding & HAS_AREA:
            return NOTHING
        if start != function or function not in self.areas:
            raise ValueError("it has no area of its own")
        return Handling(self._personality(encoding), self.areas[function])

    def _personality(self, encoding):
        number = encoding >> 28 & 3
        return self._personalities[number - 1] if number else None

    def _described(self, function, offset):
        """The same, by the description at the offset in __eh_frame."""
        address, size = self._image.sections.get("__eh_frame", (0, 0))
        cursor = self._cursor(address + offset)
        if offset >= size or cursor.number("<I") == 0:
            raise ValueError("its entry points outside of __eh_frame")
        common = address + offset + 4 - cursor.number("<I")
        if not address <= common < address + offset:
            raise ValueError("its entry does not point to a description")
        augmentation, encodings, personality = self._common_part(common)
        pointer = encodings.get("R", 0)
        start = self._pointer(cursor, pointer)
        length = self._pointer(cursor, pointer & 0x0F)
        if not start <= function < start + length:
            raise ValueError("its entry points to the description of another function")
        area = None
        if "z" in augmentation and cursor.uleb() and "L" in augmentation:
            area = self._pointer(cursor, encodings["L"])
        return Handling(personality, area) if area else NOTHING

    def _common_part(self, address):
        cursor = self._cursor(address + 8)
        cursor.byte()  # the version
        augmentation = cursor.text()
        cursor.uleb(), cursor.uleb(), cursor.uleb()  # two factors, and the return register
        encodings, personality = {}, None
        if augmentation.startswith("z"):
            cursor.uleb()
        for letter in augmentation[1:]:
            encodings[letter] = cursor.byte()
            if letter == "P":
                personality = self._image.name_at(self._pointer(cursor, encodings["P"] & 0x7F))
        return augmentation, encodings, personality

    def _cursor(self, address):
        return Cursor(self._image.data, self._image.offset_of(address))

    def _pointer(self, cursor, encoding):
        """A number in one of the forms of these sections, possibly relative to its own place. The
        file holds them at the same distance from its start as they are from the header."""
        here = self._image.base + cursor.at
        if encoding & 0x0F == 0x1:
            value = cursor.uleb()
        else:
            value = cursor.number({0x0: "<q", 0x3: "<I", 0x4: "<q", 0xB: "<i", 0xC: "<q"}[
                encoding & 0x0F])
        return here + value if encoding & 0x70 == 0x10 and value else value

    def catches(self, area):
        """Whether a function with this area catches something: most only clean up."""
        cursor = self._cursor(area)
        if cursor.byte() != 0xFF:
            raise ValueError("an area has another form")
        if cursor.byte() == 0xFF:
            return False  # it has no types to catch
        cursor.uleb()
        places = cursor.byte()
        length = cursor.uleb()
        end = cursor.at + length
        while cursor.at < end:
            for _ in range(3):  # start and length of the code, and where to go on
                self._pointer(cursor, places)
            action = cursor.uleb()
            if action and 0 < Cursor(self._image.data, end + action - 1).byte() < 0x40:
                return True
        return False
