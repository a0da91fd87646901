"""Texts as the library takes them."""

# The bounds of the published types, in bytes.
MESSAGE_BOUND = 4096
CATEGORY_BOUND = 512
KIND_BOUND = 256


def encode(text: str, bound: int) -> bytes:
    r"""The text in UTF-8, cut between two characters to at most bound bytes.

    What a C string or UTF-8 cannot hold is shown as an escape: "\x00" for a NUL, "\udc80" for
    half of a surrogate pair.
    """
    encoded = text.encode("utf-8", "backslashreplace")
    if b"\0" in encoded:
        encoded = encoded.replace(b"\0", rb"\x00")
    if len(encoded) > bound:
        end = bound
        while encoded[end] & 0xC0 == 0x80:
            end -= 1
        encoded = encoded[:end]
    return encoded
