#!/usr/bin/env python3
"""Generates the aeronautical reference data in data/ from the public sources.

    tools/make_refdata.py SOURCES_DIR OUTPUT_DIR

SOURCES_DIR holds ourairports/ and vatspy/ as described in their README. Writes navaids.dat, airports.dat,
firlist.dat, firdisplay.dat and firdisplay.sup (formats in data/FORMATS.md). The output depends only
on the input, so running it again gives the same bytes.
"""

import csv
import json
import os
import sys
from collections import Counter, defaultdict

AIRPORT_TYPES = {"large_airport": 3, "medium_airport": 2, "small_airport": 1}

# FIR ids whose first two letters name no country in the airport data, or name the wrong one.
FIR_COUNTRY_OVERRIDES = {
    "ADR": "HR", "ADR-E": "HR", "ADR-W": "HR",  # Adria, controlled from Zagreb
    "BAIRES": "AR",
    "NAT": "GB",  # Shanwick (and Gander) oceanic, listed under Shanwick's state
    "XVCL": "ZZ",
}
FIR_PREFIX_COUNTRY_OVERRIDES = {"TEH": "IR"}


def clean(text):
    """A text field: no field separator, no line breaks, single blanks."""
    return " ".join((text or "").replace(":", " ").split())


def coordinate(value):
    text = "%.4f" % float(value)
    return "0.0000" if text == "-0.0000" else text


def is_four_letters(code):
    return len(code) == 4 and code.isascii() and code.isalpha() and code.isupper()


def airport_rows(sources):
    with open(os.path.join(sources, "ourairports", "airports.csv"), newline="", encoding="utf-8") as f:
        yield from csv.DictReader(f)


def airport_key(row):
    for column in ("icao_code", "gps_code", "ident"):
        code = row[column]
        if column == "icao_code" and code:
            return code if is_four_letters(code) else None
        if is_four_letters(code):
            return code
    return None


def make_airports(sources):
    """ICAO:Name:City:CountryCode:Latitude:Longitude:IATA, one airport per four-letter code (IATA may be
    empty)."""
    best = {}
    for row in airport_rows(sources):
        rank = AIRPORT_TYPES.get(row["type"])
        if rank is None:
            continue
        key = airport_key(row)
        if key is None:
            continue
        # Of rows sharing a code the larger airport wins, then the one with scheduled service, then
        # the one that carries the code as its official ICAO code, then the older record.
        order = (rank, row["scheduled_service"] == "yes", row["icao_code"] == key, -int(row["id"]))
        if key not in best or order > best[key][0]:
            best[key] = (order, row)
    lines = []
    for key in sorted(best):
        row = best[key][1]
        lines.append(":".join([key, clean(row["name"]), clean(row["municipality"]), row["iso_country"],
                               coordinate(row["latitude_deg"]), coordinate(row["longitude_deg"]),
                               clean(row["iata_code"])]))
    return lines


def country_by_prefix(sources):
    counts = defaultdict(Counter)
    for row in airport_rows(sources):
        if row["icao_code"]:
            counts[row["icao_code"][:2]][row["iso_country"]] += 1
    return {prefix: counter.most_common(1)[0][0] for prefix, counter in counts.items()}


def vatspy_section(sources, name):
    rows, inside = [], False
    with open(os.path.join(sources, "vatspy", "VATSpy.dat"), encoding="utf-8") as f:
        for raw in f:
            line = raw.strip()
            if line.startswith("["):
                inside = line == "[%s]" % name
            elif inside and line and not line.startswith(";"):
                rows.append(line.split("|"))
    return rows


def boundaries(sources):
    with open(os.path.join(sources, "vatspy", "Boundaries.geojson"), encoding="utf-8") as f:
        return json.load(f)["features"]


def fir_country(fir_id, by_prefix):
    if fir_id in FIR_COUNTRY_OVERRIDES:
        return FIR_COUNTRY_OVERRIDES[fir_id]
    for prefix, country in FIR_PREFIX_COUNTRY_OVERRIDES.items():
        if fir_id.startswith(prefix):
            return country
    return by_prefix.get(fir_id[:2], "ZZ")


def make_firs(sources):
    """The FIR list and the two outline files."""
    by_prefix = country_by_prefix(sources)
    features = boundaries(sources)
    # The first feature of an id gives its label; the non-oceanic one where an id has both.
    label = {}
    for feature in sorted(features, key=lambda f: f["properties"]["oceanic"] == "1"):
        p = feature["properties"]
        label.setdefault(p["id"], (p["label_lat"], p["label_lon"]))

    entries = {}  # identifier -> line, first one wins
    users = defaultdict(list)  # boundary id -> identifiers drawn with it

    def add(identifier, fir_id, name, boundary, lat, lon):
        if identifier in entries:
            return
        entries[identifier] = ":".join([identifier, fir_country(fir_id, by_prefix), coordinate(lat),
                                        coordinate(lon), clean(name)])
        if boundary is not None and identifier not in users[boundary]:
            users[boundary].append(identifier)

    for fir_id, name, prefix, boundary in vatspy_section(sources, "FIRs"):
        lat, lon = label[boundary]
        add(fir_id, fir_id, name, boundary, lat, lon)
        if prefix:
            add(prefix, fir_id, name, boundary, lat, lon)

    # Oceanic sectors answer to their flight-service callsigns as "<first four letters>_O".
    for feature in sorted(features, key=lambda f: f["properties"]["id"]):
        p = feature["properties"]
        if p["oceanic"] == "1":
            key = p["id"].split("-")[0][:4] + "_O"
            add(key, p["id"], "%s Oceanic" % p["id"], p["id"], p["label_lat"], p["label_lon"])

    firlist = [entries[key] for key in sorted(entries)]
    display, supplement = [], []
    for feature in features:
        p = feature["properties"]
        # Sub-sectors (ids with a "-") refine a FIR and go to the supplement.
        target = supplement if "-" in p["id"] else display
        target.append("B:%s:%s:%s" % (p["id"], p["oceanic"], ",".join(users[p["id"]])))
        for polygon in feature["geometry"]["coordinates"]:
            for ring in polygon:
                target.append("R")
                target.extend("%s:%s" % (coordinate(lat), coordinate(lon)) for lon, lat in ring)
    return firlist, display, supplement


def make_navaids(sources):
    """IDENT:TYPE:Latitude:Longitude:Name, every navaid (VOR, DME, NDB, TACAN ...) of the public file,
    sorted by identifier, then position. Many navaids share an identifier; the route resolver takes the
    one nearest the route's previous point."""
    rows = []
    with open(os.path.join(sources, "ourairports", "navaids.csv"), encoding="utf-8", newline="") as f:
        for row in csv.DictReader(f):
            ident = clean(row["ident"]).upper()
            if not ident or not row["latitude_deg"] or not row["longitude_deg"]:
                continue
            lat, lon = coordinate(row["latitude_deg"]), coordinate(row["longitude_deg"])
            rows.append((ident, float(lat), float(lon), ":".join([ident, clean(row["type"]), lat, lon, clean(row["name"])])))
    rows.sort()
    return [line for _, _, _, line in rows]


def write(path, lines):
    with open(path, "w", encoding="utf-8", newline="\n") as f:
        f.write("\n".join(lines) + "\n")


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    sources, output = sys.argv[1], sys.argv[2]
    os.makedirs(output, exist_ok=True)
    write(os.path.join(output, "airports.dat"), make_airports(sources))
    firlist, display, supplement = make_firs(sources)
    write(os.path.join(output, "firlist.dat"), firlist)
    write(os.path.join(output, "firdisplay.dat"), display)
    write(os.path.join(output, "firdisplay.sup"), supplement)
    write(os.path.join(output, "navaids.dat"), make_navaids(sources))


if __name__ == "__main__":
    main()
