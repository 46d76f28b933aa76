#!/usr/bin/env python3
"""Generates data/land.dat, the land of the globe as triangles, from Natural Earth.

    tools/make_land.py SOURCES_DIR OUTPUT_DIR

SOURCES_DIR holds natural-earth/ne_50m_land.json and ne_50m_lakes.json (GeoJSON polygons, longitude
first). The land comes in detail bands, each for a range of globe sizes on screen: the outlines are
simplified to the band's tolerance (Douglas-Peucker on the sphere), cut into cells along meridians and
parallels, and each piece of a cell is triangulated by ear clipping in a gnomonic projection about the
cell's centre. There great circles are straight lines, so triangles drawn as flat chords between their
corners cover the piece as its edges do on the globe. Pieces are grouped into tiles, one display list
each, so a zoomed-in view draws only the tiles it shows. data/FORMATS.md describes the file.

Holes need no triangulation of their own: land is drawn, then water on it (the holes of the land, the
lakes), then land again (the islands of the lakes).
"""

import json
import math
import os
import sys

# One row per band: the tolerance in degrees (0 keeps every point), the tile and the cell in degrees,
# and the spacing of the points added along parallels where a cell cuts land. The program holds the
# same table (render/land_layer.h) and skips a band whose header differs from it.
BANDS = [
    (0.12, 15.0, 5.0, 5.0),
    (0.064, 10.0, 10.0, 10.0),
    (0.0356, 10.0, 10.0, 10.0),
    (0.012, 15.0, 15.0, 15.0),
    (0.0, 10.0, 10.0, 10.0),
]

MAGIC = b"SKYLAND1"  # the file's first bytes: its format and the version of it
UNIT = 10000  # coordinates are kept in units of 0.0001 degree, the precision of the data files
LAND, WATER, ISLAND = 0, 1, 2  # drawing order


def rings_of(path, depth_of_outer):
    """Yields (depth, ring) for every ring, outer rings at depth_of_outer, holes one deeper."""
    with open(path, encoding="utf-8") as f:
        features = json.load(f)["features"]
    for feature in features:
        geometry = feature["geometry"]
        polygons = [geometry["coordinates"]] if geometry["type"] == "Polygon" else geometry["coordinates"]
        for polygon in polygons:
            for i, ring in enumerate(polygon):
                yield (depth_of_outer if i == 0 else depth_of_outer + 1), ring


def prepared(ring):
    """The ring in whole units (x longitude, y latitude), without repeats or a closing point, CCW."""
    points = []
    for lon, lat in ring:
        p = (round(lon * UNIT), round(lat * UNIT))
        if not points or p != points[-1]:
            points.append(p)
    while len(points) > 1 and points[0] == points[-1]:
        points.pop()
    if signed_area(points) < 0:
        points.reverse()
    return points


def signed_area(points):
    total = 0
    for i in range(len(points)):
        x0, y0 = points[i - 1]
        x1, y1 = points[i]
        total += x0 * y1 - x1 * y0
    return total / 2


def unit_vector(p):
    lon, lat = math.radians(p[0] / UNIT), math.radians(p[1] / UNIT)
    return (math.cos(lat) * math.cos(lon), math.cos(lat) * math.sin(lon), math.sin(lat))


def simplified(points, tolerance_deg):
    """Douglas-Peucker on the sphere: no left-out point is farther than the tolerance from the chord
    between the points kept around it. The ring is split at its first point, the point farthest from
    it, and every point on a seam of the data (the 180th meridian, the edge along the pole): the cells
    are cut by straight lines in longitude and latitude, which is what an edge along a seam is but not
    what a chord past the pole that replaced it would be."""
    if tolerance_deg == 0 or len(points) < 4:
        return points
    tolerance = math.radians(tolerance_deg)
    v = [unit_vector(p) for p in points]
    n = len(points)
    first = v[0]
    far = max(range(n), key=lambda i: sum((v[i][k] - first[k]) ** 2 for k in range(3)))
    seams = [i for i, p in enumerate(points) if abs(p[0]) == 180 * UNIT or abs(p[1]) >= 8999 * UNIT // 100]
    anchors = sorted({0, far, n} | set(seams))
    keep = [False] * (n + 1)
    for i in anchors:
        keep[i] = True
    v.append(v[0])
    stack = list(zip(anchors, anchors[1:]))
    while stack:
        a, b = stack.pop()
        if b <= a + 1:
            continue
        ax, ay, az = v[a]
        dx, dy, dz = v[b][0] - ax, v[b][1] - ay, v[b][2] - az
        length = dx * dx + dy * dy + dz * dz
        worst, worst_i = -1.0, -1
        for i in range(a + 1, b):
            wx, wy, wz = v[i][0] - ax, v[i][1] - ay, v[i][2] - az
            t = 0.0 if length == 0 else max(0.0, min(1.0, (wx * dx + wy * dy + wz * dz) / length))
            qx, qy, qz = wx - t * dx, wy - t * dy, wz - t * dz
            d = qx * qx + qy * qy + qz * qz
            if d > worst:
                worst, worst_i = d, i
        if math.sqrt(worst) > tolerance:
            keep[worst_i] = True
            stack.append((a, worst_i))
            stack.append((worst_i, b))
    return [p for i, p in enumerate(points) if keep[i]]


def too_small(points, tolerance_deg):
    """A ring that fits within twice the tolerance: less than the coast line drawn over it."""
    if len(points) < 3:
        return True
    xs = [p[0] for p in points]
    ys = [p[1] for p in points]
    width = (max(xs) - min(xs)) * math.cos(math.radians(max(abs(y) for y in ys) / UNIT))
    return max(width, max(ys) - min(ys)) < 2 * tolerance_deg * UNIT


def crossing(a, b, axis, c):
    """Where the segment ab crosses the line coordinate[axis] = c; the same point whichever way round."""
    if (a[axis], a[1 - axis]) > (b[axis], b[1 - axis]):
        a, b = b, a
    t = (c - a[axis]) / (b[axis] - a[axis])
    other = a[1 - axis] + t * (b[1 - axis] - a[1 - axis])
    return (c, other) if axis == 0 else (other, c)


def split(ring, axis, c):
    """Cuts a CCW ring by the line coordinate[axis] = c into the rings below and above it. No point
    of the data lies on a cell line (the lines sit half a unit off), so every crossing is proper. Along
    the line the polygon's inside is the span between the 1st and 2nd crossing, the 3rd and 4th, and so
    on: each piece leaves by one end of such a span and comes back by the other. A ring that does not
    follow that rule (its simplification made it cross itself) loses the pieces that break it."""
    side = [p[axis] > c for p in ring]
    if all(side):
        return [], [ring]
    if not any(side):
        return [ring], []
    n = len(ring)
    start = next(i for i in range(n) if side[i - 1] != side[i])
    chains = []  # [side, points], from a crossing to the next one
    current = None
    for k in range(n):
        i = (start + k) % n
        if side[i - 1] != side[i]:
            point = crossing(ring[i - 1], ring[i], axis, c)
            if current is not None:
                current[1].append(point)
                chains.append(current)
            current = [side[i], [point]]
        current[1].append(ring[i])
    current[1].append(chains[0][1][0] if chains else current[1][0])
    chains.append(current)

    along = sorted({ch[1][0][1 - axis] for ch in chains} | {ch[1][-1][1 - axis] for ch in chains})
    rank = {value: i for i, value in enumerate(along)}
    result = ([], [])
    for s in (False, True):
        mine = [ch for ch in chains if ch[0] == s]
        by_entry = {rank[ch[1][0][1 - axis]]: ch for ch in mine}
        used = set()
        for first in mine:
            if id(first) in used:
                continue
            piece, chain, ok = [], first, True
            while True:
                used.add(id(chain))
                piece.extend(chain[1])
                nxt = by_entry.get(rank[chain[1][-1][1 - axis]] ^ 1)
                if nxt is first:
                    break
                if nxt is None or id(nxt) in used:
                    ok = False
                    break
                chain = nxt
            if ok and len(piece) >= 3:
                result[1 if s else 0].append(piece)
    return result


def cut_into_cells(ring, cell):
    """The pieces of a ring in each cell: {(column, row): [rings]}. Cell lines lie at multiples of
    the cell size from 180 W and 90 S, half a unit off, so a point is never on one."""
    size = cell * UNIT
    counts = (round(360 / cell), round(180 / cell))
    origins = (-180 * UNIT, -90 * UNIT)
    out = {}

    def lowest(value, axis):  # the cell of a piece's least coordinate (a crossing on a line: above it)
        return min(counts[axis] - 1, max(0, math.floor((value - origins[axis] - 0.5) / size)))

    def highest(value, axis):  # the cell of its greatest coordinate (a crossing on a line: below it)
        return min(counts[axis] - 1, max(0, math.ceil((value - origins[axis] - 0.5) / size) - 1))

    def recurse(piece, axis, column):
        low = lowest(min(p[axis] for p in piece), axis)
        high = highest(max(p[axis] for p in piece), axis)
        if low >= high:
            if axis == 0:
                recurse(piece, 1, low)
            else:
                out.setdefault((column, low), []).append(piece)
            return
        middle = (low + high + 1) // 2
        below, above = split(piece, axis, origins[axis] + middle * size + 0.5)
        for part in below + above:
            recurse(part, axis, column)

    recurse(ring, 0, 0)
    return out


def with_parallel_points(ring, cell, step):
    """Adds points every step degrees along the stretches of a piece that run along a parallel cell
    line, at the same places for the cells on both sides, so that the chords drawn stay within a
    fraction of the tolerance of the parallel."""
    size, spacing = cell * UNIT, step * UNIT
    out = []
    for i in range(len(ring)):
        a, b = ring[i - 1], ring[i]
        if a[1] == b[1] and (a[1] - 0.5 + 90 * UNIT) % size == 0 and a[0] != b[0]:
            lo, hi = sorted((a[0], b[0]))
            k0 = math.floor((lo + 180 * UNIT) / spacing) + 1
            k1 = math.ceil((hi + 180 * UNIT) / spacing) - 1
            xs = [-180 * UNIT + k * spacing for k in range(k0, k1 + 1)]
            if a[0] > b[0]:
                xs.reverse()
            out.extend((x, a[1]) for x in xs if lo < x < hi)
        out.append(b)
    return out


def gnomonic(points, centre):
    lon0, lat0 = math.radians(centre[0]), math.radians(centre[1])
    s0, c0 = math.sin(lat0), math.cos(lat0)
    out = []
    for x, y in points:
        lon, lat = math.radians(x / UNIT), math.radians(y / UNIT)
        d = lon - lon0
        cos_c = s0 * math.sin(lat) + c0 * math.cos(lat) * math.cos(d)
        out.append(
            (
                math.cos(lat) * math.sin(d) / cos_c,
                (c0 * math.sin(lat) - s0 * math.cos(lat) * math.cos(d)) / cos_c,
            )
        )
    return out


def cross(o, a, b):
    return (a[0] - o[0]) * (b[1] - o[1]) - (a[1] - o[1]) * (b[0] - o[0])


def triangulated(p):
    """Ear clipping of a CCW ring: index triples. A corner is cut when it turns left and no reflex
    corner lies in or on its triangle. After a round with no such ear (a ring the simplification bent)
    a corner that turns left is cut anyway and a straight one dropped, so every ring ends."""
    n = len(p)
    prev = [(i - 1) % n for i in range(n)]
    nxt = [(i + 1) % n for i in range(n)]

    def turn(i):
        return cross(p[prev[i]], p[i], p[nxt[i]])

    def is_ear(a, i, b):
        pa, pi, pb = p[a], p[i], p[b]
        minx, maxx = min(pa[0], pi[0], pb[0]), max(pa[0], pi[0], pb[0])
        miny, maxy = min(pa[1], pi[1], pb[1]), max(pa[1], pi[1], pb[1])
        for r in reflex:
            q = p[r]
            if minx <= q[0] <= maxx and miny <= q[1] <= maxy and q != pa and q != pi and q != pb:
                if cross(pa, pi, q) >= 0 and cross(pi, pb, q) >= 0 and cross(pb, pa, q) >= 0:
                    return False
        return True

    reflex = {i for i in range(n) if turn(i) <= 0}
    triangles = []
    left, i, misses = n, 0, 0
    while left > 3 and misses <= 2 * left:
        a, b = prev[i], nxt[i]
        t = turn(i)
        stuck = misses > left
        if t > 0 and (stuck or is_ear(a, i, b)):
            triangles.append((a, i, b))
        elif not (t == 0 and stuck):
            i, misses = b, misses + 1
            continue
        nxt[a], prev[b] = b, a
        reflex.discard(i)
        left -= 1
        for j in (a, b):
            if turn(j) > 0:
                reflex.discard(j)
            else:
                reflex.add(j)
        i, misses = b, 0
    if left == 3 and turn(i) > 0:
        triangles.append((prev[i], i, nxt[i]))
    return triangles


def delaunay(p, triangles):
    """Lawson's flips: an edge inside the ring is swapped for the other diagonal of its two triangles
    while that one's opposite corner lies in the first one's circumcircle. Ear clipping leaves fans of
    long slivers; this leaves (constrained) Delaunay triangles, which a rasteriser fills with fewer
    partly covered blocks."""
    tris = [list(t) for t in triangles]
    owner = {}
    for k, (a, b, c) in enumerate(tris):
        owner[(a, b)] = owner[(b, c)] = owner[(c, a)] = k

    def third(k, u, v):
        return next(x for x in tris[k] if x != u and x != v)

    def in_circle(a, b, c, d):
        ax, ay = p[a][0] - p[d][0], p[a][1] - p[d][1]
        bx, by = p[b][0] - p[d][0], p[b][1] - p[d][1]
        cx, cy = p[c][0] - p[d][0], p[c][1] - p[d][1]
        return (
            (ax * ax + ay * ay) * (bx * cy - cx * by)
            - (bx * bx + by * by) * (ax * cy - cx * ay)
            + (cx * cx + cy * cy) * (ax * by - bx * ay)
        )

    stack = [e for e in owner if e[0] < e[1] and (e[1], e[0]) in owner]
    budget = 20 * len(tris) + 100  # float rounding must not keep two diagonals swapping for ever
    while stack and budget > 0:
        budget -= 1
        u, v = stack.pop()
        k1, k2 = owner.get((u, v)), owner.get((v, u))
        if k1 is None or k2 is None:
            continue
        a, b = third(k1, u, v), third(k2, v, u)
        if in_circle(u, v, a, b) <= 0 or cross(p[u], p[b], p[a]) <= 0 or cross(p[b], p[v], p[a]) <= 0:
            continue
        for e in ((u, v), (v, a), (a, u), (v, u), (u, b), (b, v)):
            del owner[e]
        tris[k1], tris[k2] = [u, b, a], [b, v, a]
        for e in ((u, b), (b, a), (a, u)):
            owner[e] = k1
        for e in ((b, v), (v, a), (a, b)):
            owner[e] = k2
        stack.extend((min(e), max(e)) for e in ((u, b), (b, v), (v, a), (a, u)))
    return [tuple(t) for t in tris]


def unsigned(out, value):
    """LEB128: seven bits a byte, low ones first, the top bit set on every byte but the last."""
    while value >= 0x80:
        out.append((value & 0x7F) | 0x80)
        value >>= 7
    out.append(value)


def signed(out, value):
    """Zigzag, then LEB128: 0, -1, 1, -2, ... as 0, 1, 2, 3, ..."""
    unsigned(out, value * 2 if value >= 0 else -value * 2 - 1)


class Writer:
    """The records of land.dat. Points are kept as differences from the point before them in the
    file; a triangle's corners as differences from the corner before them in the piece."""

    def __init__(self):
        self.out = bytearray(MAGIC)
        self.last = (0, 0)  # latitude, longitude

    def band(self, index, tolerance, tile):
        self.out += b"B"
        for value in (index, round(tolerance * UNIT), round(tile)):
            unsigned(self.out, value)

    def tile(self, row, column):
        self.out += b"G"
        unsigned(self.out, row)
        unsigned(self.out, column)

    def piece(self, water, points, triangles):
        self.out += b"W" if water else b"L"
        unsigned(self.out, len(points))
        for x, y in points:
            signed(self.out, y - self.last[0])
            signed(self.out, x - self.last[1])
            self.last = (y, x)
        unsigned(self.out, len(triangles))
        corner = 0
        for triangle in triangles:
            for i in triangle:
                signed(self.out, i - corner)
                corner = i


def write_band(writer, index, rings, tolerance, tile, cell, step):
    tiles = {}
    for order, (depth, points) in enumerate(rings):
        ring = simplified(points, tolerance)
        if too_small(ring, tolerance):
            continue
        for (column, row), pieces in cut_into_cells(ring, cell).items():
            centre = (-180 + (column + 0.5) * cell, -90 + (row + 0.5) * cell)
            per_tile = round(tile / cell)
            key = (row // per_tile, column // per_tile)
            for piece in pieces:
                piece = with_parallel_points(piece, cell, step)
                # Points that the rounding to the file's precision or a pole make one.
                kept = []
                for q in piece:
                    r = (round(q[0]), round(q[1]))
                    if abs(r[1]) == 90 * UNIT:
                        r = (0, r[1])
                    if not kept or r != kept[-1][0]:
                        kept.append((r, q))
                while len(kept) > 1 and kept[0][0] == kept[-1][0]:
                    kept.pop()
                if len(kept) < 3:
                    continue
                plane = gnomonic([q for _, q in kept], centre)
                triangles = delaunay(plane, triangulated(plane))
                if triangles:
                    tiles.setdefault(key, []).append((depth, row, column, order, [r for r, _ in kept], triangles))
    writer.band(index, tolerance, tile)
    for key in sorted(tiles):
        writer.tile(*key)
        for depth, _, _, _, points, triangles in sorted(tiles[key], key=lambda t: t[:4]):
            writer.piece(depth == WATER, points, triangles)


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    sources, output = sys.argv[1], sys.argv[2]
    ne = os.path.join(sources, "natural-earth")
    rings = [
        (depth, prepared(ring))
        for path, outer in (("ne_50m_land.json", LAND), ("ne_50m_lakes.json", WATER))
        for depth, ring in rings_of(os.path.join(ne, path), outer)
    ]
    writer = Writer()
    for index, band in enumerate(BANDS):
        write_band(writer, index, rings, *band)
    with open(os.path.join(output, "land.dat"), "wb") as f:
        f.write(writer.out)


if __name__ == "__main__":
    main()
