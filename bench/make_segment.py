#!/usr/bin/env python3
"""Writes a tar of printer logs of 2 KiB, as from 500 printers, for measuring `wenlolib rows` and
`wenlolib collect`. Two calls with the same number write the same bytes.

    make_segment.py NUMBER FILE
"""
import datetime
import hashlib
import io
import random
import sys
import tarfile

PRINTERS = 500


def rc4(key, data):
    s, j, out = list(range(256)), 0, bytearray()
    for i in range(256):
        j = (j + s[i] + key[i % 16]) % 256
        s[i], s[j] = s[j], s[i]
    j = 0
    for n, byte in enumerate(data, 1):
        i = n % 256
        j = (j + s[i]) % 256
        s[i], s[j] = s[j], s[i]
        out.append(byte ^ s[(s[i] + s[j]) % 256])
    return bytes(out)


def contents(numbers):
    lines = (f"{name}={numbers.randrange(10**6)}" for _ in range(20) for name in
             ("jobs", "pages", "ink", "jams", "sleep", "wake"))
    return "\n".join(lines).encode()[:847]


def document(number, text):
    date = datetime.datetime(2026, 11, 1) + datetime.timedelta(seconds=97 * number)
    date = date.strftime("%Y-%m-%dT%H:%M:%S+01:00")
    payload = rc4(hashlib.md5(date.encode()).digest(), text).hex().upper()
    printer = number % PRINTERS
    body = (f"<Version>1.0</Version><OSVersion>M.6.1.55</OSVersion><Date>{date}</Date>"
            f"<Locale>en_US</Locale><ID>{{{printer:08X}-7B0D-4E6A-9D15-C08E2B7F4A63}}</ID>"
            f"<Printer><DeviceID>MFG:Orvan;MDL:QX 200;</DeviceID><SN>QX200-{printer:07}</SN>"
            f'<ROMVER>2.14</ROMVER><PLI C="R">{payload}</PLI></Printer>').encode()
    digest = hashlib.md5(body).hexdigest().upper().encode()
    return b'<OrvanQXPrinter SUM="' + digest + b'">' + body + b"</OrvanQXPrinter>"


numbers = random.Random(1)
with tarfile.open(sys.argv[2], "w") as tar:
    for number in range(int(sys.argv[1])):
        data = document(number, contents(numbers))
        entry = tarfile.TarInfo(f"{number % PRINTERS:03}/QX200_{number // PRINTERS + 1}.PLM")
        entry.size = len(data)
        tar.addfile(entry, io.BytesIO(data))
