#!/usr/bin/env python3
"""Draws velmora.exe's icon (a screen with a red record dot) as a 16 and a
32 pixel 32-bit .ico. Run once when the design changes; the .ico is kept."""
import struct
import sys


def pixel(x, y, n):
    u, v = (x + 0.5) / n, (y + 0.5) / n
    if 0.06 < u < 0.94 and 0.12 < v < 0.78:  # screen: dark frame, blue face
        if 0.12 < u < 0.88 and 0.18 < v < 0.72:
            if (u - 0.5) ** 2 + (v - 0.45) ** 2 < 0.16 ** 2:
                return (220, 30, 40, 255)
            return (60, 120, 200, 255)
        return (40, 40, 48, 255)
    if 0.40 < u < 0.60 and 0.78 <= v < 0.86:  # stand
        return (40, 40, 48, 255)
    if 0.26 < u < 0.74 and 0.86 <= v < 0.92:
        return (40, 40, 48, 255)
    return (0, 0, 0, 0)


def image(n):
    rows = []
    for y in reversed(range(n)):  # bottom-up
        rows.append(b"".join(struct.pack("BBBB", b, g, r, a)
                             for r, g, b, a in (pixel(x, y, n) for x in range(n))))
    mask = b"\0" * (((n + 31) // 32) * 4 * n)
    header = struct.pack("<IiiHHIIiiII", 40, n, 2 * n, 1, 32, 0, 0, 0, 0, 0, 0)
    return header + b"".join(rows) + mask


def main(path):
    images = [image(16), image(32)]
    out = struct.pack("<HHH", 0, 1, len(images))
    offset = 6 + 16 * len(images)
    for n, data in zip((16, 32), images):
        out += struct.pack("<BBBBHHII", n, n, 0, 0, 1, 32, len(data), offset)
        offset += len(data)
    with open(path, "wb") as f:
        f.write(out + b"".join(images))


if __name__ == "__main__":
    main(sys.argv[1])
