"""Checks the signature that a linker puts into an image for Arm: digests of the file's pages. The
system ends a process that runs a page with another digest."""
import hashlib
import struct

EMBEDDED, DIRECTORY = 0xFADE0CC0, 0xFADE0C02
AD_HOC, BY_LINKER = 0x2, 0x20000
SHA_256 = 2


def complaints(image):
    """What is wrong with an image's signature; an empty list if nothing is."""
    if image.signature is None:
        return ["there is no signature"]
    start, size = image.signature
    if start + size != len(image.data):
        return ["the signature does not end with the file"]
    magic, length, blobs, kind, directory = struct.unpack_from(">5I", image.data, start)
    if (magic, blobs, kind) != (EMBEDDED, 1, 0) or length > size:
        return ["the signature is not a code directory alone"]
    return list(_wrong_in_directory(image, start + directory))


def _wrong_in_directory(image, at):
    (magic, length, version, flags, digests, _, special, pages, limit, digest_size, algorithm, _,
     page_bits) = struct.unpack_from(">9I4B", image.data, at)
    if magic != DIRECTORY or version < 0x20400 or (digest_size, algorithm) != (32, SHA_256):
        yield "the code directory has another form"
        return
    start, _ = image.signature
    segment, segment_size, _ = struct.unpack_from(">3Q", image.data, at + 64)
    page = 1 << page_bits
    if flags != AD_HOC | BY_LINKER:
        yield f"the flags are {flags:#x}"
    if special:
        yield f"there are {special} digests of other files"
    if limit != start:
        yield f"the pages end at {limit:#x}, the signature begins at {start:#x}"
    if (segment, segment_size) != image.text_segment:
        yield "the segment with the code lies elsewhere"
    if pages != -(-limit // page) or digests + 32 * pages > length:
        yield f"there are digests of {pages} pages"
        return
    for i in range(pages):
        digest = hashlib.sha256(image.data[page * i:min(page * (i + 1), limit)]).digest()
        if digest != image.data[at + digests + 32 * i:at + digests + 32 * (i + 1)]:
            yield f"page {i} has another digest"
