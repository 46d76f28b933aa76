#!/usr/bin/env python3
"""Generates data/coastline.dat and data/countries.dat from Natural Earth.

    tools/make_geography.py SOURCES_DIR OUTPUT_DIR

SOURCES_DIR holds natural-earth/ (GeoJSON, longitude first). Each polyline becomes its points as
"latitude:longitude" lines, four decimals, followed by a line "end". The map joins a point to the one
before it unless that one's latitude and longitude add up to exactly 0, so such points are moved by
0.0001 degree of longitude, which no one can see, to keep the lines whole.
"""

import json
import os
import sys


def polylines(path):
    with open(path, encoding="utf-8") as f:
        for feature in json.load(f)["features"]:
            geometry = feature["geometry"]
            if geometry["type"] == "LineString":
                yield geometry["coordinates"]
            elif geometry["type"] == "MultiLineString":
                yield from geometry["coordinates"]


def point_text(lon, lat):
    lat_text, lon_text = "%.4f" % lat, "%.4f" % lon
    if float(lat_text) + float(lon_text) == 0.0:
        lon_text = "%.4f" % (float(lon_text) + (0.0001 if lon <= 179.9999 else -0.0001))
    return "%s:%s" % (lat_text.replace("-0.0000", "0.0000"), lon_text.replace("-0.0000", "0.0000"))


def convert(source, target):
    lines = []
    for line in polylines(source):
        points = [point_text(lon, lat) for lon, lat in line]
        # Drop repeats that the rounding made; they would add nothing but segments of no length.
        kept = [p for i, p in enumerate(points) if i == 0 or p != points[i - 1]]
        if len(kept) >= 2:
            lines.extend(kept)
            lines.append("end")
    with open(target, "w", encoding="utf-8", newline="\n") as f:
        f.write("\n".join(lines) + "\n")


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    sources, output = sys.argv[1], sys.argv[2]
    ne = os.path.join(sources, "natural-earth")
    convert(os.path.join(ne, "ne_50m_coastline.json"), os.path.join(output, "coastline.dat"))
    convert(os.path.join(ne, "ne_50m_admin_0_boundary_lines_land.json"), os.path.join(output, "countries.dat"))


if __name__ == "__main__":
    main()
