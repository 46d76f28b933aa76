#pragma once

// The history file's tables. A snapshot keeps its frame: its lines other than client lines as they
// are, and for each client line a mark naming its kept line (a pilot's without its moving fields)
// and, for a pilot, its flight. A pilot's moving fields are in the positions, which also give each
// flight's track.
//
// Frame marks: "\x1F<line>" for a station, "\x1E<line>:<flight>" for a pilot.
#include <QStringList>

namespace sky::store::schema {

inline constexpr int kVersion = 1;

inline constexpr char16_t kStationMark = u'\x1F';
inline constexpr char16_t kPilotMark = u'\x1E';

inline const QStringList kTableNames = {QStringLiteral("snapshots"), QStringLiteral("lines"),
                                        QStringLiteral("flights"), QStringLiteral("positions")};
inline constexpr const char* kTables[] = {
    "CREATE TABLE IF NOT EXISTS snapshots(id INTEGER PRIMARY KEY, network INTEGER NOT NULL, stamp TEXT, "
    "taken INTEGER NOT NULL, frame BLOB NOT NULL)",
    "CREATE INDEX IF NOT EXISTS snapshots_by_time ON snapshots(network, taken)",
    "CREATE TABLE IF NOT EXISTS lines(id INTEGER PRIMARY KEY, text TEXT NOT NULL)",
    "CREATE TABLE IF NOT EXISTS flights(id INTEGER PRIMARY KEY, network INTEGER NOT NULL, callsign TEXT NOT "
    "NULL, "
    "member TEXT NOT NULL, UNIQUE(network, callsign, member))",
    "CREATE TABLE IF NOT EXISTS positions(snapshot INTEGER NOT NULL, flight INTEGER NOT NULL, lat INTEGER, "
    "lon INTEGER, altitude INTEGER, speed INTEGER, heading INTEGER, PRIMARY KEY(flight, snapshot)) WITHOUT "
    "ROWID",
};

} // namespace sky::store::schema
