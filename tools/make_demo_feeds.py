#!/usr/bin/env python3
"""Writes the bundled demo feeds: data/demo/ivao/ and data/demo/vatsim/.

    tools/make_demo_feeds.py DATA_DIR

Each network gets a status.txt naming the data files beside it, whazzup.txt in that network's field
layout and whazzup.txt.gz; VATSIM also its v3 data with prefiled flights, and the answers of its
bookings and events services (bookings.json, events.json). The traffic is drawn from DATA_DIR/airports.dat and firlist.dat with a
fixed seed, so the same reference data always give the same bytes.
"""

import gzip
import json
import math
import zlib
import os
import random
import sys

UPDATE = "20261121142300"
SEED = 20261121

# Busy airports that demo flights connect; those missing from airports.dat are skipped.
HUBS = """EDDF EDDM EDDB EDDH EDDL EGLL EGKK EGCC EHAM EBBR LFPG LFPO LFMN LEMD LEBL LPPT LIRF LIMC LSZH LOWW
EKCH ESSA ENGM EFHK EPWA LKPR LHBP LROP LGAV LTFM UUEE OMDB OTHH OERK LLBG HECA DNMM FAOR HKJK VIDP VABB
VTBS WSSS WMKK WIII RPLL VHHH RCTP ZBAA ZSPD ZGGG RJTT RJAA RKSI YSSY YMML YBBN NZAA KJFK KEWR KBOS KIAD
KATL KORD KDFW KDEN KLAX KSFO KSEA KMIA KMCO KLAS KPHX KIAH KMSP KDTW CYYZ CYVR CYUL MMMX MPTO SKBO SEQM
SPJC SCEL SAEZ SBGR SBGL SBBR TNCM MKJP BIKF BGSF PANC PHNL""".split()

AIRCRAFT = ["A320", "A321", "A319", "A20N", "A21N", "B738", "B38M", "B739", "A333", "A359", "B77W", "B772",
            "B789", "B788", "A388", "B744", "E190", "E195", "CRJ9", "DH8D", "AT76", "C172", "PA28", "BE58"]
AIRLINES = ["DLH", "BAW", "AFR", "KLM", "UAL", "AAL", "DAL", "SWR", "AUA", "IBE", "EZY", "RYR", "UAE", "QTR",
            "SIA", "QFA", "ANA", "JAL", "ACA", "THY", "SAS", "TAP", "AZA", "LOT", "FIN", "ETD", "CPA", "KAL"]
FIRST = ["Anna", "Ben", "Carla", "David", "Elena", "Felix", "Greta", "Hugo", "Ines", "Jonas", "Karin", "Lars",
         "Maria", "Nils", "Olga", "Pablo", "Quentin", "Rosa", "Sven", "Tomas", "Ute", "Victor", "Wiebke", "Yusuf",
         "Zoe", "José", "Søren", "Chloé", "Björn", "Ana"]
LAST = ["Becker", "Smith", "Dubois", "Rossi", "Novak", "García", "Jansen", "Kowalski", "Müller", "Olsen",
        "Petit", "Quinn", "Schulz", "Tanaka", "Weber", "Nakamura", "Silva", "Larsen", "Fischer", "Moreau"]

IVAO_FIELDS = 46   # fields 0 to 45
VATSIM_FIELDS = 42  # fields 0 to 41


def read_table(path, minimum):
    table = {}
    with open(path, encoding="utf-8") as f:
        for line in f:
            parts = line.rstrip("\n").split(":")
            if len(parts) >= minimum:
                table[parts[0]] = parts
    return table


def great_circle_point(lat1, lon1, lat2, lon2, fraction):
    p1, l1, p2, l2 = map(math.radians, (lat1, lon1, lat2, lon2))
    d = 2 * math.asin(math.sqrt(math.sin((p2 - p1) / 2) ** 2 +
                                math.cos(p1) * math.cos(p2) * math.sin((l2 - l1) / 2) ** 2))
    if d == 0:
        return lat1, lon1
    a = math.sin((1 - fraction) * d) / math.sin(d)
    b = math.sin(fraction * d) / math.sin(d)
    x = a * math.cos(p1) * math.cos(l1) + b * math.cos(p2) * math.cos(l2)
    y = a * math.cos(p1) * math.sin(l1) + b * math.cos(p2) * math.sin(l2)
    z = a * math.sin(p1) + b * math.sin(p2)
    return math.degrees(math.atan2(z, math.hypot(x, y))), math.degrees(math.atan2(y, x))


def on_airport(lat, lon, u, v):
    """A point of an airport's area for u, v in -1..1: parked and taxiing aircraft spread over about
    3 by 4 km round the reference point, as stands and taxiways lie, not all on one spot."""
    angle = math.pi * u
    radius = 0.5 + 0.5 * abs(v)
    return (lat + 0.014 * radius * math.sin(angle),
            lon + 0.018 * radius * math.cos(angle) / max(math.cos(math.radians(lat)), 0.2))


def distance_nm(lat1, lon1, lat2, lon2):
    p1, l1, p2, l2 = map(math.radians, (lat1, lon1, lat2, lon2))
    h = math.sin((p2 - p1) / 2) ** 2 + math.cos(p1) * math.cos(p2) * math.sin((l2 - l1) / 2) ** 2
    return 2 * 3440.065 * math.asin(math.sqrt(h))


def bearing(lat1, lon1, lat2, lon2):
    p1, l1, p2, l2 = map(math.radians, (lat1, lon1, lat2, lon2))
    y = math.sin(l2 - l1) * math.cos(p2)
    x = math.cos(p1) * math.sin(p2) - math.sin(p1) * math.cos(p2) * math.cos(l2 - l1)
    return (math.degrees(math.atan2(y, x)) + 360) % 360


class Feed:
    def __init__(self, network, rng, airports, firs):
        self.network = network
        self.rng = rng
        self.airports = airports
        self.hubs = [code for code in HUBS if code in airports]
        self.firs = firs
        self.width = IVAO_FIELDS if network == 0 else VATSIM_FIELDS
        self.used_callsigns = set()
        self.next_vid = 200000 if network == 0 else 800000

    def vid(self):
        self.next_vid += self.rng.randint(1, 97)
        return str(self.next_vid)

    def name(self, pilot):
        r = self.rng.random()
        base = "%s %s" % (self.rng.choice(FIRST), self.rng.choice(LAST))
        if pilot and r < 0.15:
            return base + " " + self.rng.choice(self.hubs)  # a home base at the end
        if r < 0.22:
            return base + "°" + str(self.rng.randint(1, 9))  # text after a degree sign is dropped
        return base

    def logon(self):
        minutes = self.rng.randint(1, 600)
        hh, mm = int(UPDATE[8:10]), int(UPDATE[10:12])
        total = hh * 60 + mm - minutes
        day = int(UPDATE[6:8]) - (1 if total < 0 else 0)
        total %= 24 * 60
        return "%s%02d%02d%02d%s" % (UPDATE[:6], day, total // 60, total % 60, "00")

    def line(self, values):
        fields = [""] * self.width
        for index, value in values.items():
            fields[index] = str(value).replace(":", " ")
        return ":".join(fields)

    def unique(self, make):
        while True:
            callsign = make()
            if callsign not in self.used_callsigns:
                self.used_callsigns.add(callsign)
                return callsign

    def common(self, callsign, kind, lat, lon):
        return {0: callsign, 1: self.vid(), 3: kind, 5: "%.5f" % lat, 6: "%.5f" % lon,
                14: self.rng.choice(["EU1", "EU2", "US1", "ASIA1"]), 37: self.logon()}

    def pilot(self, phase):
        rng = self.rng
        dep, dest = rng.sample(self.hubs, 2)
        d = self.airports[dep]
        a = self.airports[dest]
        dlat, dlon, alat, alon = float(d[4]), float(d[5]), float(a[4]), float(a[5])
        total = distance_nm(dlat, dlon, alat, alon)
        level = rng.choice([310, 330, 350, 370, 390]) if total > 300 else rng.choice([150, 190, 230])
        cruise_kts = 450 if total > 300 else 280
        # Phase: (fraction of the route flown, altitude, ground speed).
        near = lambda nm: min(0.5, nm / max(total, 1.0))
        phases = {
            "boarding": (0.0, 0, 0),
            "taxiing": (0.0, 0, 14),
            "departing": (near(5), 2500, 180),
            "climbing": (near(60), level * 100 * 0.5, 320),
            "enroute": (rng.uniform(0.25, 0.75), level * 100, cruise_kts),
            "descending": (1 - near(110), level * 100 * 0.45, 330),
            "approach": (1 - near(20), 4000, 190),
            "landed": (1.0, 0, 18),
            "onblocks": (1.0, 0, 0),
        }
        if phase == "diverted":
            alternate = rng.choice([h for h in self.hubs if h not in (dep, dest)])
            x = self.airports[alternate]
            lat, lon, alt, gs = float(x[4]), float(x[5]), 0, 0
        else:
            fraction, alt, gs = phases[phase]
            lat, lon = great_circle_point(dlat, dlon, alat, alon, fraction)
            if fraction in (0.0, 1.0):  # on a stand or taxiway, somewhere on the airport
                lat, lon = on_airport(lat, lon, rng.uniform(-0.01, 0.01) * 100, rng.uniform(-0.01, 0.01) * 100)
        heading = bearing(lat, lon, alat, alon) if phase not in ("onblocks", "diverted") else rng.randint(0, 359)
        callsign = self.unique(lambda: "%s%d" % (rng.choice(AIRLINES), rng.randint(1, 9999)))
        if phase == "diverted":  # parked at the alternate; placed from its callsign, so the draws stay as they were
            spread = zlib.crc32(callsign.encode())
            lat, lon = on_airport(lat, lon, (spread % 2001) / 1000 - 1, (spread // 2001 % 2001) / 1000 - 1)
        aircraft = rng.choice(AIRCRAFT[:20])
        prefix = "H/" if aircraft in ("A388", "B744", "B77W") else ""
        suffix = rng.choice(["/L", "/G", ""]) if self.network == 1 else ""
        values = self.common(callsign, "PILOT", lat, lon)
        deptime = "%d" % rng.choice([630, 930, 1215, 1440, 1805, 2110])
        minutes = int(total / cruise_kts * 60) + 20
        values.update({
            2: self.name(True), 7: int(alt), 8: int(gs), 9: prefix + aircraft + suffix, 10: cruise_kts,
            11: dep, 12: "FL%03d" % level, 13: dest, 16: self.pilot_rating(), 17: "%04d" % rng.randint(1000, 7777),
            21: "I", 22: deptime, 23: deptime, 24: minutes // 60, 25: minutes % 60, 26: minutes // 60 + 1,
            27: rng.randint(0, 59), 28: rng.choice(self.hubs), 29: "PBN/A1B1C1D1 DOF/261121 /v/",
            30: "DCT %s DCT" % rng.choice(["ABTAL", "NIVNU", "BELUS", "TOMPA", "KERAX", "RILAX"]),
        })
        values.update(self.network_fields(heading, pilot=True))
        return self.line(values)

    def pilot_without_plan(self):
        rng = self.rng
        base = self.airports[rng.choice(self.hubs)]
        lat, lon = float(base[4]) + rng.uniform(-0.5, 0.5), float(base[5]) + rng.uniform(-0.5, 0.5)
        callsign = self.unique(lambda: "D%s" % "".join(rng.choice("ABCDEFGHKLMNOPRSTUVWXYZ") for _ in range(4)))
        values = self.common(callsign, "PILOT", lat, lon)
        values.update({2: self.name(True), 7: rng.randint(1500, 4500), 8: rng.randint(90, 120),
                       16: self.pilot_rating(), 17: "7000"})
        values.update(self.network_fields(rng.randint(0, 359), pilot=True))
        return self.line(values)

    def pilot_rating(self):
        return self.rng.randint(2, 10) if self.network == 0 else self.rng.choice([1, 1, 1, 3, 7])

    def network_fields(self, heading, pilot, rating=None, admin=None):
        rng = self.rng
        if self.network == 0:
            values = {38: rng.choice(["IvAp", "Altitude"]) if pilot else "Aurora", 39: rng.choice(["2.0.2", "1.1.4"]),
                      40: admin if admin is not None else rng.choice([2, 2, 2, 5]),
                      45: int(round(heading))}
            values[41] = rating if rating is not None else rng.randint(2, 10)
            if pilot:
                values[43] = rng.choice(["S", "S", "N", "G", "M"])
                values[44] = rng.randint(1, 300)
            return values
        return {38: int(round(heading)), 39: "29.92", 40: "1013"}

    def controller(self, callsign, lat, lon, frequency, visual_range, rating, atis=None, admin=None):
        values = self.common(callsign, "ATC", lat, lon)
        values.update({2: self.name(False), 4: frequency, 18: 0, 19: visual_range})
        if self.network == 1:
            values[16] = rating
        if atis:
            values[35] = atis
        values.update(self.network_fields(0, pilot=False, rating=rating, admin=admin))
        return self.line(values)

    def atis_text(self, icao, letter):
        rng = self.rng
        lines = ["%s information %s" % (icao, letter), "Time %s20Z" % UPDATE[8:10],
                 "Wind %03d/%02d" % (rng.randrange(0, 360, 10), rng.randint(2, 25)),
                 "QNH %d" % rng.randint(990, 1035), "Runway %02d in use" % rng.randint(1, 36)]
        if self.network == 1:
            lines.insert(0, "$ rw.liveatc.example/%s_ATIS" % icao)  # the voice server line
        return "^§".join(lines)

    def airport_stations(self, count):
        rng = self.rng
        candidates = []
        for icao in self.hubs:
            # Three-letter US codes stand for the K-code ("JFK_TWR" is KJFK's tower) on half the fields.
            station = icao[1:] if icao.startswith("K") and rng.random() < 0.5 else icao
            for suffix, freq, range_nm in (("DEL", "121.900", 5), ("GND", "121.700", 5), ("TWR", "118.700", 25),
                                           ("APP", "119.100", 60), ("N_APP", "120.800", 60), ("ATIS", "128.250", 5)):
                candidates.append((icao, station, suffix, freq, range_nm))
        lines = []
        for icao, station, suffix, freq, range_nm in rng.sample(candidates, min(count, len(candidates))):
            a = self.airports[icao]
            callsign = self.unique(lambda: "%s_%s" % (station, suffix))
            atis = None
            if suffix == "ATIS":
                atis = self.atis_text(icao, rng.choice("ABCDEFGH"))
            elif suffix == "TWR" and self.network == 0:
                atis = "%s Tower^§Departures contact %s" % (a[1], freq)
            rating = rng.randint(2, 7) if self.network == 0 else rng.choice([2, 3, 4, 5])
            lines.append(self.controller(callsign, float(a[4]) + rng.uniform(-0.02, 0.02),
                                         float(a[5]) + rng.uniform(-0.02, 0.02), freq, range_nm, rating, atis=atis))
        return lines

    def area_stations(self, count):
        rng = self.rng
        identifiers = sorted(k for k in self.firs if not k.endswith("_O") and "-" not in k)
        oceanic = sorted(k for k in self.firs if k.endswith("_O"))
        lines = []
        for identifier in rng.sample(identifiers, count):
            fir = self.firs[identifier]
            callsign = self.unique(lambda: "%s_CTR" % identifier)
            lines.append(self.controller(callsign, float(fir[2]) + rng.uniform(-1, 1), float(fir[3]) + rng.uniform(-1, 1),
                                         "%d.%03d" % (rng.randint(118, 135), rng.randrange(0, 1000, 25)), 300,
                                         rng.randint(5, 9) if self.network == 0 else rng.choice([5, 7, 8])))
        for key in oceanic[:3]:
            fir = self.firs[key]
            callsign = self.unique(lambda: "%s_FSS" % key[:-2])
            lines.append(self.controller(callsign, float(fir[2]), float(fir[3]), "131.800", 1500, 7))
        return lines

    def observers(self, count):
        rng = self.rng
        lines = []
        for i in range(count):
            lat, lon = rng.uniform(-50, 65), rng.uniform(-170, 170)
            if i % 3 == 0:
                callsign = self.unique(lambda: "%s_OBS" % rng.choice(LAST).upper().replace("Ü", "U").replace("Í", "I"))
            else:
                callsign = self.unique(lambda: "%s%d_OBS" % (rng.choice(["EDDF", "EGLL", "LFPG"]), rng.randint(1, 99)))
            lines.append(self.controller(callsign, lat, lon, "199.998", 0, 1 if self.network == 1 else 2))
        # Supervisors: an admin rating above 10.
        for i in range(3):
            callsign = self.unique(lambda: "XX-SUP%d" % (i + 1)) if self.network == 0 else self.unique(lambda: "SUP%d_SUP" % (i + 1))
            lines.append(self.controller(callsign, rng.uniform(40, 55), rng.uniform(-5, 20), "199.998", 0,
                                         11 if self.network == 1 else 10, admin=11 + i % 2))
        return lines

    def follow_me(self, count):
        lines = []
        for i in range(count):
            a = self.airports[self.hubs[i]]
            values = self.common("%s_FM%d" % (self.hubs[i], i + 1), "FOLME", float(a[4]), float(a[5]))
            values.update({2: self.name(False), 8: 12})
            lines.append(self.line(values))
        return lines

    def whazzup(self, pilots, controllers):
        rng = self.rng
        phases = ["boarding", "taxiing", "departing", "climbing", "enroute", "enroute", "enroute", "enroute",
                  "descending", "approach", "landed", "onblocks", "diverted"]
        pilot_lines = [self.pilot_without_plan() if i % 25 == 0 else self.pilot(phases[i % len(phases)])
                       for i in range(pilots)]
        rng.shuffle(pilot_lines)
        atc = self.area_stations(controllers // 4)
        observers = self.observers(max(6, controllers // 20))
        atc += self.airport_stations(controllers - len(atc) - len(observers)) + observers
        rng.shuffle(atc)
        folme = self.follow_me(4) if self.network == 0 else []
        clients = len(pilot_lines) + len(atc) + len(folme)
        lines = ["; Skylantra demo data, generated by tools/make_demo_feeds.py", "!GENERAL", "VERSION = 8",
                 "RELOAD = 1", "UPDATE = " + UPDATE, "CONNECTED CLIENTS = %d" % clients,
                 "CONNECTED SERVERS = 4", "!CLIENTS"] + atc + pilot_lines + folme
        lines += ["!SERVERS", "EU1:127.0.0.1:Europe:Demo server one:1:", "US1:127.0.0.1:Americas:Demo server two:1:"]
        return lines


def iso(stamp):
    """yyyymmddhhmmss as the JSON feeds write a time."""
    return "%s-%s-%sT%s:%s:%sZ" % (stamp[0:4], stamp[4:6], stamp[6:8], stamp[8:10], stamp[10:12], stamp[12:14])


def client_lines(lines, kind):
    return [line.split(":") for line in lines if len(line.split(":")) > 3 and line.split(":")[3] == kind]


def number(text, default=0):
    try:
        value = float(text)
    except ValueError:
        return default
    return int(value) if value == int(value) else value


def shifted(minutes):
    """The whole hour of the demo's data time moved by so many minutes, as yyyymmddhhmmss."""
    day, hh = int(UPDATE[6:8]), int(UPDATE[8:10])
    total = (day * 24 + hh) * 60 + minutes
    return "%s%02d%02d%02d00" % (UPDATE[:6], total // (24 * 60), total // 60 % 24, total % 60)


def spaced(stamp):
    """yyyymmddhhmmss as the bookings service writes a time: "2026-11-21 18:00:00", in UTC."""
    return "%s-%s-%s %s:%s:%s" % (stamp[0:4], stamp[4:6], stamp[6:8], stamp[8:10], stamp[10:12], stamp[12:14])


def prefiles(rng, hubs, used):
    """Flight plans filed by members not yet connected: some from every hub, three from EDDF."""
    plans = []
    for i in range(14):
        dep = "EDDF" if i < 3 and "EDDF" in hubs else rng.choice(hubs)
        dest = rng.choice([h for h in hubs if h != dep])
        callsign = "%s%d" % (rng.choice(AIRLINES), rng.randint(10, 9999))
        while callsign in used:
            callsign = "%s%d" % (rng.choice(AIRLINES), rng.randint(10, 9999))
        used.add(callsign)
        leave = shifted(rng.randrange(40, 8 * 60, 5))
        minutes = rng.randint(50, 600)
        plans.append({"cid": 1500000 + rng.randint(1, 99999), "name": "%s %s" % (rng.choice(FIRST), rng.choice(LAST)),
                      "callsign": callsign,
                      "flight_plan": {"flight_rules": "I", "aircraft": rng.choice(AIRCRAFT[:20]), "departure": dep,
                                      "arrival": dest, "alternate": rng.choice(hubs), "cruise_tas": "450",
                                      "altitude": str(rng.choice([310, 350, 390]) * 100), "deptime": leave[8:12],
                                      "enroute_time": "%02d%02d" % (minutes // 60, minutes % 60),
                                      "fuel_time": "%02d%02d" % (minutes // 60 + 1, minutes % 60),
                                      "remarks": "PBN/A1B1C1D1 /v/",
                                      "route": "DCT %s DCT" % rng.choice(["ABTAL", "NIVNU", "BELUS", "TOMPA", "KERAX"]),
                                      "revision_id": 1, "assigned_transponder": "0000"},
                      "last_updated": iso(UPDATE)})
    return plans


def bookings(rng, lines, hubs):
    """Controller bookings round the demo's time. At EDDF each position online is booked now and one
    that is not online too; the others later. Elsewhere positions booked today and tomorrow."""
    online = {f[0] for f in client_lines(lines, "ATC")}
    plan = []
    late = False
    for suffix in ("DEL", "GND", "TWR", "APP"):
        callsign = "EDDF_" + suffix
        if callsign in online:
            plan.append((callsign, -30, 120))
        elif not late:
            plan.append((callsign, 0, 120))
            late = True
        else:
            plan.append((callsign, 4 * 60, 120))
    places = sorted(f[0] for f in client_lines(lines, "ATC")
                    if f[0][:4] in hubs and f[0].rsplit("_", 1)[-1] in ("DEL", "GND", "TWR", "APP"))
    for callsign in rng.sample(places, 6) + ["EGLL_APP", "LFPG_TWR"]:
        plan.append((callsign, rng.randrange(-60, 24 * 60, 30), rng.choice([90, 120, 180])))
    entries = []
    for i, (callsign, start, length) in enumerate(plan):
        entries.append({"id": 4000 + i, "callsign": callsign, "cid": 1200000 + rng.randint(1, 99999),
                        "type": rng.choice(["booking", "booking", "booking", "event", "training"]),
                        "start": spaced(shifted(start)), "end": spaced(shifted(start + length)),
                        "division": "EUD", "subdivision": ""})
    return sorted(entries, key=lambda b: b["start"])


def events(rng, hubs):
    """Events of the demo's week: one running now at EDDF and EDDM, the others later; the last beyond
    the week the events page shows. Names and addresses are made up."""
    plan = [("Rhine Valley Evening Rush", ["EDDF", "EDDM"], -60, 240),
            ("Alpine Crossings", ["LSZH", "LOWW", "LIMC"], 5 * 60, 180),
            ("Northern Lights Shuttle", ["ENGM", "ESSA", "EKCH"], 26 * 60, 180),
            ("Transatlantic Tuesday", ["EGLL", "KJFK"], 3 * 24 * 60, 360),
            ("Island Hopping", ["TNCM", "MKJP"], 5 * 24 * 60, 240),
            ("Southern Cross Overnight", ["YSSY", "NZAA"], 9 * 24 * 60, 300)]
    data = []
    for i, (name, airports, start, length) in enumerate(plan):
        first, last = shifted(start), shifted(start + length)
        data.append({"id": 9000 + i, "type": "Event", "name": name,
                     "link": "https://example.org/demo-events/%d" % (9000 + i),
                     "organisers": [{"region": "EMEA", "division": "EUD", "subdivision": None,
                                     "organised_by_vatsim": False}],
                     "airports": [{"icao": a} for a in airports if a in hubs],
                     "routes": [{"departure": airports[0], "arrival": airports[-1], "route": "DCT"}],
                     "start_time": iso(first)[:-1] + ".000000Z", "end_time": iso(last)[:-1] + ".000000Z",
                     "short_description": "Demo event: made up for the demo.", "description": "",
                     "banner": "https://example.org/demo-events/%d.png" % (9000 + i)})
    return {"data": data}


def vatsim_json(lines, clients):
    """The demo traffic as VATSIM's v3 data file and its transceivers file."""
    pilots, controllers, atis, transceivers = [], [], [], []
    for f in client_lines(lines, "PILOT"):
        plan = None
        if f[13]:
            enroute = "%02d%02d" % (number(f[24]), number(f[25]))
            plan = {"flight_rules": f[21], "aircraft": f[9], "aircraft_faa": f[9], "aircraft_short": f[9].split("/")[0],
                    "departure": f[11], "arrival": f[13], "alternate": f[28], "cruise_tas": f[10],
                    "altitude": f[12].replace("FL", "") + "00", "deptime": f[22].zfill(4), "enroute_time": enroute,
                    "fuel_time": "%02d%02d" % (number(f[26]), number(f[27])), "remarks": f[29], "route": f[30],
                    "revision_id": 1, "assigned_transponder": f[17]}
        pilots.append({"cid": number(f[1]), "name": f[2], "callsign": f[0], "server": f[14],
                       "pilot_rating": number(f[16]), "military_rating": 0, "latitude": number(f[5]),
                       "longitude": number(f[6]), "altitude": number(f[7]), "groundspeed": number(f[8]),
                       "transponder": f[17], "heading": number(f[38]), "qnh_i_hg": 29.92, "qnh_mb": 1013,
                       "flight_plan": plan, "logon_time": iso(f[37]), "last_updated": iso(UPDATE)})
    for f in client_lines(lines, "ATC"):
        entry = {"cid": number(f[1]), "name": f[2], "callsign": f[0], "frequency": f[4], "facility": number(f[18]),
                 "rating": number(f[16]), "server": f[14], "visual_range": number(f[19]),
                 "text_atis": f[35].split("^§") if f[35] else None, "last_updated": iso(UPDATE),
                 "logon_time": iso(f[37])}
        if f[0].endswith("ATIS"):
            entry["atis_code"] = f[35].split(" information ")[1][0] if " information " in f[35] else None
            atis.append(entry)
        else:
            controllers.append(entry)
        if f[5]:
            transceivers.append({"callsign": f[0], "transceivers": [
                {"id": 0, "frequency": int(float(f[4] or 0) * 1e6), "latDeg": number(f[5]), "lonDeg": number(f[6]),
                 "heightMslM": 100.0, "heightAglM": 10.0}]})
    data = {"general": {"version": 3, "reload": 1, "update": UPDATE, "update_timestamp": iso(UPDATE),
                        "connected_clients": clients, "unique_users": clients},
            "pilots": pilots, "controllers": controllers, "atis": atis, "servers": [], "prefiles": [],
            "facilities": [], "ratings": [], "pilot_ratings": []}
    return data, transceivers


def ivao_json(lines):
    """The demo traffic as IVAO's v2 whazzup; that feed carries no names."""
    def base(f):
        return {"time": 600, "id": number(f[1]) * 10, "userId": number(f[1]), "callsign": f[0], "serverId": f[14],
                "softwareTypeId": f[38], "softwareVersion": f[39], "rating": number(f[41]),
                "createdAt": iso(f[37]),
                "lastTrack": {"latitude": number(f[5]), "longitude": number(f[6]), "altitude": number(f[7]),
                              "groundSpeed": number(f[8]), "heading": number(f[45]), "transponder": number(f[17]),
                              "onGround": number(f[8]) < 40, "timestamp": iso(UPDATE)}}
    pilots, atcs, observers, follow = [], [], [], []
    for f in client_lines(lines, "PILOT"):
        entry = base(f)
        if f[13]:
            dep = f[22].zfill(4)
            entry["flightPlan"] = {"aircraftId": f[9].replace("H/", ""), "departureId": f[11], "arrivalId": f[13],
                                   "alternativeId": f[28], "route": f[30], "remarks": f[29],
                                   "speed": "N%04d" % number(f[10]), "level": f[12].replace("FL", "F"),
                                   "flightRules": f[21], "flightType": f[43],
                                   "eet": (number(f[24]) * 60 + number(f[25])) * 60,
                                   "departureTime": (int(dep[:2]) * 60 + int(dep[2:])) * 60,
                                   "peopleOnBoard": number(f[44])}
        pilots.append(entry)
    for f in client_lines(lines, "ATC"):
        entry = base(f)
        if f[0].endswith("_OBS") or "-" in f[0]:
            observers.append(entry)
            continue
        entry["atcSession"] = {"frequency": number(f[4]), "position": f[0].split("_")[-1]}
        entry["atis"] = {"lines": f[35].split("^§"), "revision": "A"} if f[35] else None
        atcs.append(entry)
    for f in client_lines(lines, "FOLME"):
        follow.append(base(f))
    total = len(pilots) + len(atcs) + len(observers) + len(follow)
    return {"updatedAt": iso(UPDATE), "servers": [], "voiceServers": [],
            "clients": {"pilots": pilots, "atcs": atcs, "observers": observers, "followMe": follow},
            "connections": {"total": total, "supervisor": 3, "atc": len(atcs), "observer": len(observers),
                            "pilot": len(pilots), "worldTour": 0, "followMe": len(follow)}}


def write_json(path, document):
    with open(path, "w", encoding="utf-8", newline="\n") as f:
        json.dump(document, f, ensure_ascii=False, separators=(",", ":"))
        f.write("\n")


def write_network(folder, name, feed, pilots, controllers, encoding, message):
    os.makedirs(folder, exist_ok=True)
    lines = feed.whazzup(pilots, controllers)
    text = "\r\n".join(lines) + "\r\n"
    data = text.encode(encoding)
    with open(os.path.join(folder, "whazzup.txt"), "wb") as f:
        f.write(data)
    with open(os.path.join(folder, "whazzup.txt.gz"), "wb") as f:
        f.write(gzip.compress(data, compresslevel=9, mtime=0))
    clients = int([l for l in lines if l.startswith("CONNECTED CLIENTS")][0].split("=")[1])
    if name == "VATSIM":
        data, transceivers = vatsim_json(lines, clients)
        # What is coming: drawn from a random source of their own, so the traffic stays as it was.
        coming = random.Random(SEED + 2)
        data["prefiles"] = prefiles(coming, feed.hubs, {f[0] for f in client_lines(lines, "PILOT")})
        write_json(os.path.join(folder, "vatsim-data.json"), data)
        write_json(os.path.join(folder, "transceivers-data.json"), transceivers)
        write_json(os.path.join(folder, "bookings.json"), bookings(coming, lines, feed.hubs))
        write_json(os.path.join(folder, "events.json"), events(coming, feed.hubs))
    else:
        write_json(os.path.join(folder, "whazzup.json"), ivao_json(lines))
    status = ["; %s demo status file: the data files beside it" % name, "url0=whazzup.txt",
              "gzurl0=whazzup.txt.gz", "user0=https://example.org/%s/member" % name.lower()]
    if name == "VATSIM":
        status.append("json3=vatsim-data.json")
    if message:
        status.append("msg0=" + message)
    status += ["; end", ""]
    with open(os.path.join(folder, "status.txt"), "w", encoding="utf-8", newline="\n") as f:
        f.write("\n".join(status))


def write_weather(folder, airports):
    """Weather reports for the demo's airports, as the weather server's station files lay them out
    (a time line, then the report), so the Companion's weather commands answer offline with --demo.
    Drawn from a random source of their own: the feeds stay as they are."""
    rng = random.Random(SEED + 1)
    day, time = UPDATE[6:8], UPDATE[8:12]
    stamp = "%s/%s/%s %s:%s" % (UPDATE[0:4], UPDATE[4:6], day, time[:2], time[2:])
    kinds = {"metar": os.path.join(folder, "data", "observations", "metar", "stations"),
             "taf": os.path.join(folder, "data", "forecasts", "taf", "stations"),
             "shorttaf": os.path.join(folder, "data", "forecasts", "shorttaf", "stations")}
    for path in kinds.values():
        os.makedirs(path, exist_ok=True)
    # A few airports in fog, mist or snow, so the weather layer shows every flight category.
    poor = {"EHAM": ("0300 FG", "VV001"), "KSFO": ("1/2SM FG", "OVC003"), "EGKK": ("0800 FG", "BKN002"),
            "LFPG": ("2500 BR", "BKN009"), "KORD": ("3SM -SN", "OVC015"), "RJTT": ("1200 RA", "OVC006")}
    metars = []
    for icao in HUBS:
        if icao not in airports:
            continue
        wind = "%03d%02dKT" % (rng.randrange(10, 361, 10), rng.randint(3, 22))
        clouds = rng.choice(["FEW020", "SCT035", "BKN012", "FEW040 SCT250", "OVC008", "NSC"])
        temperature = rng.randint(-4, 24)
        dew = temperature - rng.randint(1, 8)
        sign = lambda t: ("M%02d" % -t) if t < 0 else "%02d" % t
        visibility, sky = poor.get(icao, ("9999", clouds))
        metar = "%s %s%sZ %s %s %s %s/%s Q%04d NOSIG" % (icao, day, time, wind, visibility, sky, sign(temperature),
                                                    sign(dew), rng.randint(998, 1032))
        metars.append(metar)
        valid = "%s12/%02d18" % (day, int(day) + 1)
        taf = "%s %s1100Z %s %s 9999 %s\n      BECMG %s20/%s22 %s" % (
            icao, day, valid, wind, clouds, day, day, "%03d%02dKT" % (rng.randrange(10, 361, 10), rng.randint(3, 18)))
        reports = {"metar": metar, "taf": "TAF " + taf, "shorttaf": "TAF " + taf.split("\n")[0]}
        for kind, report in reports.items():
            with open(os.path.join(kinds[kind], icao + ".TXT"), "w", encoding="ascii", newline="\n") as f:
                f.write("%s\n%s\n" % (stamp, report))
    # The same reports as one list of many stations, as the weather layer asks for them.
    with open(os.path.join(folder, "metars.txt"), "w", encoding="ascii", newline="\n") as f:
        f.write("".join(metar + "\n" for metar in metars))


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    data = sys.argv[1]
    airports = read_table(os.path.join(data, "airports.dat"), 6)
    firs = read_table(os.path.join(data, "firlist.dat"), 5)
    rng = random.Random(SEED)
    write_network(os.path.join(data, "demo", "ivao"), "IVAO", Feed(0, rng, airports, firs), 900, 300, "cp1252",
                  None)
    write_network(os.path.join(data, "demo", "vatsim"), "VATSIM", Feed(1, rng, airports, firs), 1300, 450,
                  "utf-8", "This is demo data: the traffic is made up, and the network is not contacted.")
    write_weather(os.path.join(data, "demo", "weather"), airports)


if __name__ == "__main__":
    main()
