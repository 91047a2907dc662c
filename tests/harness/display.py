"""A display for tests and benchmarks, which needs Xvfb."""
import contextlib
import mmap
import os
import shutil
import struct
import subprocess
import tempfile
import zlib

WIDTH, HEIGHT = 390, 844  # of a window that has just opened
BAR = 52  # the height of its navigation bar, above the page


class Display:
    """An X server without a window manager, for all tests."""

    def __init__(self, *options):
        read, write = os.pipe()
        self.folder = tempfile.mkdtemp(prefix="display-")
        self.process = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write), "-screen", "0", "1280x1024x24", "-nolisten", "tcp", "-noreset",
             "-fbdir", self.folder, *options], pass_fds=[write], stderr=subprocess.DEVNULL)
        os.close(write)
        with os.fdopen(read) as number:
            self.name = ":" + number.readline().strip()

    @contextlib.contextmanager
    def screen(self):
        """The width and height of what is on the screen, and what gives a line of it: blue, green, red and nothing for
        each pixel. The server keeps them in a file, in the format of xwd."""
        with open(os.path.join(self.folder, "Xvfb_screen0"), "rb") as file, \
                mmap.mmap(file.fileno(), 0, access=mmap.ACCESS_READ) as screen:
            header = struct.unpack(">25I", screen[:100])
            start, width, height, stride = header[0] + 12 * header[19], header[4], header[5], header[12]
            yield width, height, lambda y: screen[start + y * stride:start + y * stride + 4 * width]

    def color_at(self, x, y):
        with self.screen() as (_, _, line):
            return "#" + line(y)[4 * x:4 * x + 3][::-1].hex()

    def save_picture(self, path):
        """What is on the screen now, as a PNG file."""
        with self.screen() as (width, height, line):
            lines = []
            for y in range(height):
                colours = bytearray(3 * width)
                colours[0::3], colours[1::3], colours[2::3] = line(y)[2::4], line(y)[1::4], line(y)[0::4]
                lines.append(b"\0" + bytes(colours))
        with open(path, "wb") as file:
            file.write(b"\x89PNG\r\n\x1a\n")
            for kind, content in ((b"IHDR", struct.pack(">2I5B", width, height, 8, 2, 0, 0, 0)),
                                  (b"IDAT", zlib.compress(b"".join(lines))), (b"IEND", b"")):
                file.write(struct.pack(">I", len(content)) + kind + content +
                           struct.pack(">I", zlib.crc32(kind + content)))

    def stop(self):
        self.process.terminate()
        self.process.wait()
        shutil.rmtree(self.folder, True)
