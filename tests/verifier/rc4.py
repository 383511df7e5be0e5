"""RC4 (ARCFOUR) in plain Python, as fast as a loop allows."""


def keystream(key, length):
    """The first `length` bytes of the keystream of `key`, which has 1 to 256 bytes."""
    if not 1 <= len(key) <= 256:
        raise ValueError("an RC4 key has 1 to 256 bytes")
    state = list(range(256))
    j = 0
    for i in range(256):
        j = (j + state[i] + key[i % len(key)]) & 255
        state[i], state[j] = state[j], state[i]
    stream = bytearray(length)
    i = j = 0
    for position in range(length):
        i = (i + 1) & 255
        left = state[i]
        j = (j + left) & 255
        right = state[j]
        state[i] = right
        state[j] = left
        stream[position] = state[(left + right) & 255]
    return bytes(stream)


def exclusive_or(left, right):
    """Byte by byte. Both sides must have the same length."""
    if len(left) != len(right):
        raise ValueError("the two sides have different lengths")
    both = int.from_bytes(left, "little") ^ int.from_bytes(right, "little")
    return both.to_bytes(len(left), "little")


def rc4(key, data):
    """Encrypts or decrypts `data`."""
    return exclusive_or(data, keystream(key, len(data)))


def cycling_xor(key, data):
    """The exclusive or of each byte i of `data` and byte i mod len(key) of `key`."""
    repeated = key * (len(data) // len(key) + 1)
    return exclusive_or(data, repeated[: len(data)])
