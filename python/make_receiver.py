#!/usr/bin/env python3
"""Writes the C source of the module wenlolib._receiver, which calls the functions of a C header.

    make_receiver.py HEADER SOURCE
"""
import re
import sys

import cffi


def declarations(header):
    """What the header declares, without its preprocessor lines."""
    text = re.sub(r"/\*.*?\*/", "", header, flags=re.DOTALL)
    text = re.sub(r"^#ifdef __cplusplus\n.*?^#endif\n", "", text, flags=re.DOTALL | re.MULTILINE)
    text = re.sub(r"^#.*\n", "", text, flags=re.MULTILINE)
    return text.replace("WENLOLIB_EXPORT ", "")


def main(header, source):
    builder = cffi.FFI()
    with open(header, encoding="utf-8") as file:
        builder.cdef(declarations(file.read()))
    builder.set_source("wenlolib._receiver", "#include <wenlolib/receiver_c.h>")
    builder.emit_c_code(source)


if __name__ == "__main__":
    main(*sys.argv[1:])
