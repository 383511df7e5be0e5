"""Reads the parts of Mach-O files that tell what a plug-in offers and needs."""
import struct

ARCHITECTURES = {0x01000007: "x86_64", 0x0100000C: "arm64"}
BUNDLE = 8
SEGMENT, SYMTAB, VERSION_MIN, BUILD_VERSION, CODE_SIGNATURE = 0x19, 0x2, 0x24, 0x32, 0x1D
LOAD_DYLIB, LOAD_WEAK_DYLIB = 0xC, 0x80000018


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
        self.text_segment = None  # (offset, size) of the segment with the code
        self.signature = None  # (offset, size)
        self.oldest = None
        self._segments = []
        self._symbols = None
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
                self.text_segment = offset, file_size
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
        elif command == CODE_SIGNATURE:
            self.signature = struct.unpack_from("<II", self.data, at + 8)

    def _text_at(self, offset):
        return self.data[offset:self.data.index(b"\0", offset)].decode()

    def symbols(self):
        """(name, type, description) of every entry of the symbol table."""
        offset, count, strings, _ = self._symbols
        for i in range(count):
            name, kind, _, description, _ = struct.unpack_from("<IBBHQ", self.data, offset + 16 * i)
            if kind & 0xE0 == 0:  # the others are for debuggers
                yield self._text_at(strings + name), kind, description

    def exported(self):
        """The names that the image defines and exports."""
        return {name for name, kind, _ in self.symbols()
                if kind & 0x01 and not kind & 0x10 and kind & 0x0E}

    def imported(self):
        """(name, path of the library, is weak) of each symbol that the image needs."""
        return {(name, self.libraries[(description >> 8) - 1][0], bool(description & 0x40))
                for name, kind, description in self.symbols() if kind & 0x0F == 0x01}

    # Objective-C's tables

    def _offset(self, address):
        for start, offset, size in self._segments:
            if start <= address < start + size:
                return offset + address - start
        raise ValueError(f"no section holds the address {address:#x}")

    def _pointers(self, address, count):
        return struct.unpack_from(f"<{count}Q", self.data, self._offset(address))

    def _text(self, address):
        return self._text_at(self._offset(address))

    def _list(self, section):
        address, size = self.sections.get(section, (0, 0))
        return self._pointers(address, size // 8) if size else ()

    def _methods(self, address):
        """Selectors and their type encodings."""
        if address == 0:
            return {}
        flags, count = struct.unpack_from("<II", self.data, self._offset(address))
        if flags != 24:
            raise ValueError("the list of methods has another form")
        methods = {}
        for i in range(count):
            selector, types, _ = self._pointers(address + 8 + 24 * i, 3)
            methods[self._text(selector)] = self._text(types)
        return methods

    def _variables(self, address):
        if address == 0:
            return []
        _, count = struct.unpack_from("<II", self.data, self._offset(address))
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
