#!/usr/bin/env python3
"""Draws the preview's five cursor pictures as 32 x 32 icons with an alpha channel.

    python3 src/preview/make_cursors.py src/resources

ZoomIn and ZoomOut are a magnifier whose lens centre is the hot spot (7, 7); Resize_Move,
Resize_RightDown and Resize_RightUp are arrows around the hot spot (15, 15). Each shape is black
with a white rim, so that it shows on light and dark pages alike.
"""
import math
import struct
import sys
from pathlib import Path

SIZE = 32
SAMPLES = 4  # per pixel and axis
RIM = 1.3    # width of the white rim, pixels


def segment(ax, ay, bx, by, radius):
    def distance(x, y):
        dx, dy = bx - ax, by - ay
        t = max(0.0, min(1.0, ((x - ax) * dx + (y - ay) * dy) / (dx * dx + dy * dy)))
        return math.hypot(x - ax - t * dx, y - ay - t * dy) - radius
    return distance


def ring(cx, cy, radius, half_width):
    return lambda x, y: abs(math.hypot(x - cx, y - cy) - radius) - half_width


def triangle(points):
    edges = list(zip(points, points[1:] + points[:1]))

    def distance(x, y):
        nearest = min(segment(ax, ay, bx, by, 0)(x, y) for (ax, ay), (bx, by) in edges)
        inside = True
        sign = None
        for (ax, ay), (bx, by) in edges:
            cross = (bx - ax) * (y - ay) - (by - ay) * (x - ax)
            if sign is None:
                sign = cross >= 0
            elif (cross >= 0) != sign:
                inside = False
        return -nearest if inside else nearest
    return distance


def arrow(cx, cy, dx, dy, length, head=5.0, width=1.0):
    """A shaft from the centre outwards along (dx, dy), ending in a head."""
    norm = math.hypot(dx, dy)
    ux, uy = dx / norm, dy / norm
    tip = (cx + ux * length, cy + uy * length)
    base = (tip[0] - ux * head, tip[1] - uy * head)
    side = (-uy * head * 0.8, ux * head * 0.8)
    return [segment(cx, cy, base[0], base[1], width),
            triangle([tip, (base[0] + side[0], base[1] + side[1]), (base[0] - side[0], base[1] - side[1])])]


def magnifier(plus):
    shapes = [ring(7, 7, 5.2, 1.0), segment(11, 11, 17, 17, 1.6), segment(4.5, 7, 9.5, 7, 0.8)]
    if plus:
        shapes.append(segment(7, 4.5, 7, 9.5, 0.8))
    return shapes


def double_arrow(dx, dy):
    return arrow(15, 15, dx, dy, 9) + arrow(15, 15, -dx, -dy, 9)


CURSORS = {
    "ZoomIn": magnifier(True),
    "ZoomOut": magnifier(False),
    "Resize_Move": double_arrow(1, 0) + double_arrow(0, 1),
    "Resize_RightDown": double_arrow(1, 1),
    "Resize_RightUp": double_arrow(1, -1),
}


def render(shapes):
    """Rows top down of (b, g, r, a)."""
    rows = []
    for py in range(SIZE):
        row = []
        for px in range(SIZE):
            black = white = 0
            for sy in range(SAMPLES):
                for sx in range(SAMPLES):
                    x = px + (sx + 0.5) / SAMPLES
                    y = py + (sy + 0.5) / SAMPLES
                    d = min(shape(x, y) for shape in shapes)
                    if d < 0:
                        black += 1
                    elif d < RIM:
                        white += 1
            n = SAMPLES * SAMPLES
            alpha = (black + white) * 255 // n
            grey = 255 * white // max(1, black + white)
            row.append((grey, grey, grey, alpha))
        rows.append(row)
    return rows


def ico(rows):
    pixels = b"".join(bytes(p) for row in reversed(rows) for p in row)
    mask = bytes(SIZE * 4)  # the alpha channel decides; the AND mask stays clear
    header = struct.pack("<IiiHHIIiiII", 40, SIZE, SIZE * 2, 1, 32, 0, len(pixels) + len(mask), 0, 0, 0, 0)
    image = header + pixels + mask
    directory = struct.pack("<HHH", 0, 1, 1) + struct.pack("<BBBBHHII", SIZE, SIZE, 0, 0, 1, 32, len(image), 22)
    return directory + image


def main():
    folder = Path(sys.argv[1] if len(sys.argv) > 1 else "src/resources")
    for name, shapes in CURSORS.items():
        (folder / f"{name}.ico").write_bytes(ico(render(shapes)))
        print(f"{folder / name}.ico")


if __name__ == "__main__":
    main()
