"""Writes PNG files, for the scripts that draw icons and the colour map. Needs nothing but Python."""
import struct
import zlib

RGB = 2
RGBA = 6


def png(width, height, colours, rows):
    """A file of 8 bits a channel; each row is bytes that begin with the number of its filter."""
    header = struct.pack(">IIBBBBB", width, height, 8, colours, 0, 0, 0)
    pixels = zlib.compress(b"".join(rows), 9)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", pixels) + chunk(b"IEND", b"")


def chunk(name, body):
    return struct.pack(">I", len(body)) + name + body + struct.pack(">I", zlib.crc32(name + body))
