#!/usr/bin/env python3
"""Writes samples/bust.obj, the sample mesh for `gritwell paint`: a head on a
neck on shoulders, a surface of revolution with a nose, a chin, brows and
ears pressed into it, with texture coordinates for `gritwell bake`: the side
unrolled around the vertical axis over the top four fifths of the UV square
(the seam at the back), the base and the crown as two discs below it. Python
3 standard library only; the output is the same
bytes on every run, so the committed file can be checked against it.

    tools/samples/make_mesh.py [OUT.obj]    (default: samples/bust.obj)
"""

import math
import os
import sys

SEGMENTS = 96          # around the vertical axis
RINGS_PER_SPAN = 5     # rings between two profile keys

# The profile from the bottom up: height y and the radii across (x) and
# front to back (z). The front of the face looks along +z.
PROFILE = [
    (0.00, 0.85, 0.42),
    (0.25, 0.92, 0.46),
    (0.45, 0.88, 0.44),
    (0.55, 0.60, 0.36),
    (0.65, 0.30, 0.26),
    (0.72, 0.21, 0.21),
    (0.90, 0.21, 0.22),
    (1.00, 0.28, 0.32),
    (1.10, 0.33, 0.39),
    (1.30, 0.36, 0.42),
    (1.50, 0.34, 0.39),
    (1.65, 0.26, 0.30),
    (1.75, 0.14, 0.16),
]
TOP = 1.80


def catmull_rom(p0, p1, p2, p3, t):
    t2 = t * t
    t3 = t2 * t
    return 0.5 * ((2 * p1) + (-p0 + p2) * t + (2 * p0 - 5 * p1 + 4 * p2 - p3) * t2
                  + (-p0 + 3 * p1 - 3 * p2 + p3) * t3)


def profile_at(u):
    """(y, rx, rz) at u in [0, len(PROFILE) - 1], smooth through the keys."""
    last = len(PROFILE) - 1
    i = min(int(u), last - 1)
    t = u - i
    keys = [PROFILE[max(0, min(last, k))] for k in (i - 1, i, i + 1, i + 2)]
    return tuple(catmull_rom(*(key[c] for key in keys), t) for c in range(3))


def bump(phi, y, phi0, y0, width, height, amount):
    d = (phi - phi0 + math.pi) % (2 * math.pi) - math.pi
    return amount * math.exp(-((d / width) ** 2 + ((y - y0) / height) ** 2))


def features(phi, y):
    """How far the surface is pushed out (or in) along its radius."""
    push = bump(phi, y, 0.0, 1.25, 0.13, 0.08, 0.12)           # nose
    push += bump(phi, y, 0.0, 1.03, 0.35, 0.06, 0.03)          # chin
    push += bump(phi, y, 0.0, 1.41, 0.55, 0.035, 0.025)        # brow
    for side in (-1.0, 1.0):
        push -= bump(phi, y, side * 0.36, 1.35, 0.15, 0.045, 0.05)       # eye sockets
        push += bump(phi, y, side * math.pi / 2, 1.30, 0.12, 0.09, 0.05)  # ears
    return push


SIDE_V0 = 0.2          # the side fills v from here to 1
BASE_CENTRE = (0.1, 0.1)
CROWN_CENTRE = (0.3, 0.1)
CAP_RADIUS = 0.09


def build():
    """Vertices, texture coordinates, and faces as (vertex, uv) index pairs."""
    vertices = [(0.0, 0.0, 0.0)]  # the centre of the base
    uvs = []
    faces = []
    rings = (len(PROFILE) - 1) * RINGS_PER_SPAN + 1
    for r in range(rings):
        y, rx, rz = profile_at(r / RINGS_PER_SPAN)
        for s in range(SEGMENTS):
            phi = 2 * math.pi * s / SEGMENTS
            sx, cz = math.sin(phi), math.cos(phi)
            push = features(phi, y)
            vertices.append((sx * (rx + push), y, cz * (rz + push)))
    vertices.append((0.0, TOP, 0.0))
    top = len(vertices) - 1

    def ring(r, s):
        return 1 + r * SEGMENTS + s % SEGMENTS

    # The side's grid has a column more than the ring has vertices: the seam's
    # vertices sit at u = 0 and at u = 1.
    def side_uv(r, s):
        return r * (SEGMENTS + 1) + s

    for r in range(rings):
        for s in range(SEGMENTS + 1):
            uvs.append((s / SEGMENTS, SIDE_V0 + (1 - SIDE_V0) * r / (rings - 1)))

    def cap_uv(centre, s, flip):
        phi = 2 * math.pi * s / SEGMENTS
        return (centre[0] + flip * CAP_RADIUS * math.sin(phi), centre[1] + CAP_RADIUS * math.cos(phi))

    base_centre = len(uvs)
    uvs.append(BASE_CENTRE)
    base_rim = len(uvs)
    uvs += [cap_uv(BASE_CENTRE, s, -1) for s in range(SEGMENTS)]
    crown_centre = len(uvs)
    uvs.append(CROWN_CENTRE)
    crown_rim = len(uvs)
    uvs += [cap_uv(CROWN_CENTRE, s, 1) for s in range(SEGMENTS)]

    for s in range(SEGMENTS):  # the base, facing down
        faces.append(((0, base_centre), (ring(0, s + 1), base_rim + (s + 1) % SEGMENTS),
                      (ring(0, s), base_rim + s)))
    for r in range(rings - 1):  # quads, counter-clockwise seen from outside
        for s in range(SEGMENTS):
            faces.append(((ring(r, s), side_uv(r, s)), (ring(r, s + 1), side_uv(r, s + 1)),
                          (ring(r + 1, s + 1), side_uv(r + 1, s + 1)), (ring(r + 1, s), side_uv(r + 1, s))))
    for s in range(SEGMENTS):  # the crown
        faces.append(((top, crown_centre), (ring(rings - 1, s), crown_rim + s),
                      (ring(rings - 1, s + 1), crown_rim + (s + 1) % SEGMENTS)))
    return vertices, uvs, faces


def main():
    here = os.path.dirname(os.path.abspath(__file__))
    out = sys.argv[1] if len(sys.argv) > 1 else os.path.join(here, "..", "..", "samples", "bust.obj")
    vertices, uvs, faces = build()
    lines = ["# A bust for `gritwell paint` and `gritwell bake`, made by tools/samples/make_mesh.py",
             "# %d vertices, %d faces; y up, the face looks along +z" % (len(vertices), len(faces)),
             "o bust"]
    lines += ["v %.6f %.6f %.6f" % v for v in vertices]
    lines += ["vt %.6f %.6f" % t for t in uvs]
    lines += ["f " + " ".join("%d/%d" % (v + 1, t + 1) for v, t in f) for f in faces]
    with open(out, "w", newline="\n") as f:
        f.write("\n".join(lines) + "\n")


if __name__ == "__main__":
    main()
