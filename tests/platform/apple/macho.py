"""Reads the parts of Mach-O files that tell what a plug-in offers and needs."""
import collections
import functools
import struct

ARCHITECTURES = {0x01000007: "x86_64", 0x0100000C: "arm64"}
BUNDLE = 8
SEGMENT, SYMTAB, VERSION_MIN, BUILD_VERSION, CODE_SIGNATURE = 0x19, 0x2, 0x24, 0x32, 0x1D
LOAD_DYLIB, LOAD_WEAK_DYLIB, CHAINED_FIXUPS = 0xC, 0x80000018, 0x80000034
DYLD_INFO, FUNCTION_STARTS = 0x80000022, 0x26
RELATIVE_METHODS = 0x80000000


def slices(data):
    """The images in a universal file, by architecture."""
    magic, count = struct.unpack_from(">II", data)
    if magic != 0xCAFEBABE:
        raise ValueError("not a universal file")
    images = {}
    for i in range(count):
        cpu, _, offset, size, _ = struct.unpack_from(">5I", data, 8 + 20 * i)
        images[ARCHITECTURES.get(cpu, hex(cpu))] = Image(data[offset:offset + size])
    return images


class Image:
    """One architecture's image, 64-bit, little-endian."""

    def __init__(self, data):
        self.data = data
        magic, _, _, self.kind, count = struct.unpack_from("<5I", data)
        if magic != 0xFEEDFACF:
            raise ValueError("no 64-bit image")
        self.libraries = []  # (path, is weak), in the order that symbols refer to
        self.sections = {}  # name: (address, size)
        self.base = None  # the address of the header
        self.text_segment = None  # (offset, size) of the segment with the code
        self.signature = None  # (offset, size)
        self.oldest = None
        self._segments = []
        self._symbols = self._starts = None
        self._bindings = []  # (offset, size, is lazy)
        self._chained = None  # where the chains of pointers are described
        at = 32
        for _ in range(count):
            command, size = struct.unpack_from("<II", data, at)
            self._read_command(command, at)
            at += size

    def _read_command(self, command, at):
        if command == SEGMENT:
            address, size, offset, file_size, _, _, sections, _ = struct.unpack_from(
                "<4Q4I", self.data, at + 24)
            self._segments.append((address, offset, file_size))
            if offset == 0 and file_size:
                self.base, self.text_segment = address, (offset, file_size)
            for i in range(sections):
                name, _, start, length = struct.unpack_from("<16s16sQQ", self.data,
                                                            at + 72 + 80 * i)
                self.sections[name.rstrip(b"\0").decode()] = (start, length)
        elif command in (LOAD_DYLIB, LOAD_WEAK_DYLIB):
            name = at + struct.unpack_from("<I", self.data, at + 8)[0]
            self.libraries.append((self._text_at(name), command == LOAD_WEAK_DYLIB))
        elif command == SYMTAB:
            self._symbols = struct.unpack_from("<4I", self.data, at + 8)
        elif command in (VERSION_MIN, BUILD_VERSION):
            place = at + (8 if command == VERSION_MIN else 12)
            packed, = struct.unpack_from("<I", self.data, place)
            self.oldest = f"{packed >> 16}.{packed >> 8 & 0xFF}"
        elif command == DYLD_INFO:
            _, _, eager, eager_size, _, _, lazy, lazy_size = struct.unpack_from("<8I", self.data,
                                                                                at + 8)
            self._bindings = [(eager, eager_size, False), (lazy, lazy_size, True)]
        elif command == CODE_SIGNATURE:
            self.signature = struct.unpack_from("<II", self.data, at + 8)
        elif command == CHAINED_FIXUPS:
            self._chained, = struct.unpack_from("<I", self.data, at + 8)
        elif command == FUNCTION_STARTS:
            self._starts = struct.unpack_from("<II", self.data, at + 8)

    def _text_at(self, offset):
        return self.data[offset:self.data.index(b"\0", offset)].decode()

    def symbols(self):
        """(name, type, description, address) of every entry of the symbol table."""
        offset, count, strings, _ = self._symbols
        for i in range(count):
            name, kind, _, description, address = struct.unpack_from("<IBBHQ", self.data,
                                                                     offset + 16 * i)
            if kind & 0xE0 == 0:  # the others are for debuggers
                yield self._text_at(strings + name), kind, description, address

    def functions(self):
        """{address: names} of the functions in the image's code. One without a symbol has none."""
        named = collections.defaultdict(set)
        for name, kind, _, address in self.symbols():
            if kind & 0x0E == 0x0E:
                named[address].add(name)
        start, size = self.sections["__text"]
        offset, length = self._starts
        address, found = self.base, {}
        deltas = Cursor(self.data, offset, offset + length)
        while not deltas.at_end():
            delta = deltas.uleb()
            address += delta
            if delta and start <= address < start + size:
                found[address] = named[address]
        return found

    def exported(self):
        """The names that the image defines and exports."""
        return {name for name, kind, _, _ in self.symbols()
                if kind & 0x01 and not kind & 0x10 and kind & 0x0E}

    def imported(self):
        """(name, path of the library, is weak) of each symbol that the image needs."""
        return {(name, self.libraries[(description >> 8) - 1][0], bool(description & 0x40))
                for name, kind, description, _ in self.symbols() if kind & 0x0F == 0x01}

    @functools.cached_property
    def bindings(self):
        """{address: (name, path of the library, is weak, is lazy)} of each pointer that the loader
        sets to a symbol. A lazy one is set when its function is first called."""
        found = {}
        for offset, size, lazy in self._bindings:
            self._read_bindings(Cursor(self.data, offset, offset + size), lazy, found)
        if self._chained is not None:
            self._read_chains(found)
        return found

    def _read_bindings(self, cursor, lazy, found):
        library, address, name, weak = None, 0, None, False

        def bind(step):
            nonlocal address
            found[address] = (name, library, weak, lazy)
            address += 8 + step

        while not cursor.at_end():
            byte = cursor.byte()
            opcode, immediate = byte & 0xF0, byte & 0x0F
            if opcode == 0x00:  # the end, but of one symbol in the lazy ones
                if not lazy:
                    break
            elif opcode == 0x10:
                library = self.libraries[immediate - 1][0]
            elif opcode == 0x20:
                library = self.libraries[cursor.uleb() - 1][0]
            elif opcode == 0x30:
                library = f"special {immediate}"
            elif opcode == 0x40:
                name, weak = cursor.text(), bool(immediate & 1)
            elif opcode == 0x50:
                pass  # what kind of place it is
            elif opcode == 0x60:
                cursor.uleb()  # what is added
            elif opcode == 0x70:
                address = self._segments[immediate][0] + cursor.uleb()
            elif opcode == 0x80:
                address = address + cursor.uleb() & 0xFFFFFFFFFFFFFFFF
            elif opcode == 0x90:
                bind(0)
            elif opcode == 0xA0:
                bind(cursor.uleb())
            elif opcode == 0xB0:
                bind(8 * immediate)
            elif opcode == 0xC0:
                count, skip = cursor.uleb(), cursor.uleb()
                for _ in range(count):
                    bind(skip)
            else:
                raise ValueError(f"unknown opcode {byte:#x}")

    def _read_chains(self, found):
        at = self._chained
        _, starts, imports, names, _, form, _ = struct.unpack_from("<7I", self.data, at)
        if form != 1:
            raise ValueError("the imports have another form")
        starts += at
        segments, = struct.unpack_from("<I", self.data, starts)
        for info in filter(None, struct.unpack_from(f"<{segments}I", self.data, starts + 4)):
            page, _, segment, _, pages = struct.unpack_from("<HHQIH", self.data, starts + info + 4)
            for i, first in enumerate(
                    struct.unpack_from(f"<{pages}H", self.data, starts + info + 22)):
                address, step = self.base + segment + page * i + first, first != 0xFFFF
                while step:
                    link, = struct.unpack_from("<Q", self.data, self.offset_of(address))
                    if link >> 63:
                        entry, = struct.unpack_from("<I", self.data,
                                                    at + imports + 4 * (link & 0xFFFFFF))
                        found[address] = (self._text_at(at + names + (entry >> 9)),
                                          self.libraries[(entry & 0xFF) - 1][0],
                                          bool(entry & 0x100), False)
                    step = 4 * (link >> 51 & 0xFFF)
                    address += step

    def name_at(self, slot):
        """The name of what a pointer refers to: imported, or of the image itself."""
        if slot in self.bindings:
            return self.bindings[slot][0]
        target, = self._pointers(slot, 1)
        return next((name for name, kind, _, address in self.symbols()
                     if kind & 0x0E == 0x0E and address == target), None)

    # Objective-C's tables

    def offset_of(self, address):
        """Where the file holds what the address refers to."""
        for start, offset, size in self._segments:
            if start <= address < start + size:
                return offset + address - start
        raise ValueError(f"no section holds the address {address:#x}")

    def _pointers(self, address, count):
        pointers = struct.unpack_from(f"<{count}Q", self.data, self.offset_of(address))
        if self._chained is None:
            return pointers
        # Each is a link of a chain: 36 bits are the address, the highest marks an imported symbol.
        return tuple(0 if each >> 63 else each & 0xFFFFFFFFF for each in pointers)

    def _text(self, address):
        return self._text_at(self.offset_of(address))

    def _list(self, section):
        address, size = self.sections.get(section, (0, 0))
        return self._pointers(address, size // 8) if size else ()

    def _methods(self, address):
        """Selectors and their type encodings."""
        if address == 0:
            return {}
        flags, count = struct.unpack_from("<II", self.data, self.offset_of(address))
        size = flags & 0xFFFC
        if size != (12 if flags & RELATIVE_METHODS else 24):
            raise ValueError("the list of methods has another form")
        methods = {}
        for i in range(count):
            entry = address + 8 + size * i
            if flags & RELATIVE_METHODS:
                selector, types = self._relative_method(entry)
            else:
                selector, types, _ = self._pointers(entry, 3)
            methods[self._text(selector)] = self._text(types)
        return methods

    def _relative_method(self, entry):
        """The addresses of a method's selector and types, which are given by their distances. The
        selector is reached through a pointer that the runtime makes unique."""
        name, types = struct.unpack_from("<ii", self.data, self.offset_of(entry))
        return self._pointers(entry + name, 1)[0], entry + 4 + types

    def _variables(self, address):
        if address == 0:
            return []
        _, count = struct.unpack_from("<II", self.data, self.offset_of(address))
        return [tuple(map(self._text, self._pointers(address + 8 + 32 * i, 3)[1:]))
                for i in range(count)]

    def _class_data(self, address):
        data = self._pointers(address, 5)[4] & ~7
        # flags, start, size, reserved; then layout, name, methods, protocols, variables
        _, name, methods, _, variables = self._pointers(data + 16, 5)
        return self._text(name), self._methods(methods), self._variables(variables)

    def classes(self):
        """{class: {"+": methods, "-": methods, "variables": [(name, type)], "categories": {name:
        selectors}}}. The class's methods include those of its categories."""
        found, by_address = {}, {}
        for address in self._list("__objc_classlist"):
            name, instance, variables = self._class_data(address)
            _, own, _ = self._class_data(self._pointers(address, 1)[0])
            by_address[address] = found[name] = {
                "+": own, "-": instance, "variables": variables, "categories": {}}
        for address in self._list("__objc_catlist"):
            name, of, instance, own = self._pointers(address, 4)
            by_address[of]["-"].update(self._methods(instance))
            by_address[of]["+"].update(self._methods(own))
            by_address[of]["categories"][self._text(name)] = (
                set(self._methods(instance)) | set(self._methods(own)))
        return found


class Cursor:
    """Reads a file's bytes one after the other, from `at` to `end`."""

    def __init__(self, data, at, end=None):
        self._data, self.at = data, at
        self._end = len(data) if end is None else end

    def at_end(self):
        return self.at >= self._end

    def number(self, form):
        value, = struct.unpack_from(form, self._data, self.at)
        self.at += struct.calcsize(form)
        return value

    def byte(self):
        return self.number("<B")

    def uleb(self):
        value = shift = 0
        while True:
            byte = self.byte()
            value |= (byte & 0x7F) << shift
            shift += 7
            if byte < 0x80:
                return value

    def text(self):
        start = self.at
        self.at = self._data.index(b"\0", start) + 1
        return self._data[start:self.at - 1].decode()
