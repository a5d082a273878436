#!/usr/bin/env python3
"""Draws the picture the custom gamma editor shows through its curves: a small landscape (sky,
sun, hills, a lake with the sky's reflection), colour patches and a grey ramp, so that each
channel's curve and the clip points visibly change something. Writes a 24-bit, bottom-up BMP
(54-byte headers, no palette) to src/resources/sample.bmp, the module's resource "sample.bmp".

Run from anywhere: python3 tools/make_gamma_sample.py [output path]
"""
import math
import os
import struct
import sys

WIDTH, HEIGHT = 240, 160
RAMP_TOP = 136          # the grey ramp fills the rows below this one
SCENE_RIGHT = 168       # the landscape fills the columns left of this one


def clamp(v):
    return max(0, min(255, int(round(v))))


def mix(a, b, t):
    return tuple(a[i] + (b[i] - a[i]) * t for i in range(3))


def smoothstep(e0, e1, x):
    t = max(0.0, min(1.0, (x - e0) / (e1 - e0)))
    return t * t * (3 - 2 * t)


def hill(x, base, height, centre, spread):
    return base - height * math.exp(-((x - centre) / spread) ** 2)


def scene(x, y):
    """The landscape, 0 <= x < SCENE_RIGHT, 0 <= y < RAMP_TOP (top-down)."""
    horizon = 80
    sun = (122.0, 34.0, 13.0)
    if y < horizon:
        sky = mix((255, 214, 170), (40, 92, 170), 1 - y / horizon)  # warm at the horizon
        d = math.hypot(x - sun[0], y - sun[1])
        glow = math.exp(-max(0.0, d - sun[2]) / 18.0) * 0.55
        colour = mix(sky, (255, 236, 180), glow)
        if d < sun[2]:
            colour = mix((255, 250, 215), colour, smoothstep(sun[2] - 1.5, sun[2], d))
        far = hill(x, 78, 26, 40, 34)
        near = hill(x, 84, 30, 150, 40)
        if y > far:
            shade = (y - far) / 30.0
            colour = mix((96, 120, 150), (60, 80, 105), shade)
        if y > near:
            shade = (y - near) / 34.0
            colour = mix((72, 130, 60), (28, 70, 30), shade)
        return colour
    # The lake mirrors the sky, darker and rippled; the shore in front is grass and sand.
    shore = 118 + 4 * math.sin(x / 11.0)
    if y < shore:
        my = 2 * horizon - y - 1 + 0.8 * math.sin(x / 4.0 + 0.7 * y)
        reflected = scene(x, max(0, min(horizon - 1, int(my))))
        return mix(reflected, (20, 40, 70), 0.35 + 0.25 * (y - horizon) / (shore - horizon))
    sand = (y - shore) / max(1.0, RAMP_TOP - shore)
    return mix((196, 170, 120), (120, 96, 60), sand)


PATCHES = [
    (230, 40, 40), (40, 180, 60), (40, 70, 220),
    (60, 210, 220), (215, 60, 200), (240, 220, 50),
    (224, 172, 140), (140, 90, 50), (250, 250, 250),
    (128, 128, 128), (40, 40, 40), (255, 140, 0),
]


def patches(x, y):
    """Two columns of six colour patches with a thin dark gap between them."""
    cols, rows = 2, 6
    w = (WIDTH - SCENE_RIGHT) / cols
    h = RAMP_TOP / rows
    cx = int((x - SCENE_RIGHT) / w)
    cy = int(y / h)
    lx = (x - SCENE_RIGHT) - cx * w
    ly = y - cy * h
    if lx < 2 or ly < 2:
        return (16, 16, 16)
    return PATCHES[cy * cols + cx]


def ramp(x, y):
    """Sixteen grey steps over the upper half, a smooth ramp below."""
    if y < RAMP_TOP + (HEIGHT - RAMP_TOP) // 2:
        step = min(15, x * 16 // WIDTH)
        v = step * 255 / 15
    else:
        v = x * 255 / (WIDTH - 1)
    return (v, v, v)


def pixel(x, y):
    if y >= RAMP_TOP:
        return ramp(x, y)
    if x >= SCENE_RIGHT:
        return patches(x, y)
    return scene(x, y)


def bmp_bytes():
    stride = (WIDTH * 3 + 3) & ~3
    rows = []
    for y in range(HEIGHT - 1, -1, -1):  # bottom-up
        row = bytearray()
        for x in range(WIDTH):
            r, g, b = pixel(x, y)
            row += bytes((clamp(b), clamp(g), clamp(r)))
        row += bytes(stride - len(row))
        rows.append(bytes(row))
    pixels = b"".join(rows)
    info = struct.pack("<IiiHHIIiiII", 40, WIDTH, HEIGHT, 1, 24, 0, len(pixels), 2835, 2835, 0, 0)
    header = struct.pack("<2sIHHI", b"BM", 14 + len(info) + len(pixels), 0, 0, 14 + len(info))
    return header + info + pixels


def main():
    here = os.path.dirname(os.path.abspath(__file__))
    out = sys.argv[1] if len(sys.argv) > 1 else os.path.join(here, "..", "src", "resources", "sample.bmp")
    with open(out, "wb") as f:
        f.write(bmp_bytes())
    print(os.path.normpath(out))


if __name__ == "__main__":
    main()
