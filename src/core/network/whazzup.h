#pragma once

#include <functional>

#include <QDateTime>
#include <QString>
#include <QStringView>

#include "network/client_records.h"

namespace sky {
class ReferenceData;
}

namespace sky::network {

// What an interpretation ended with.
struct InterpretResult {
    bool Read = false;       // the text had lines to read at all
    bool HasClients = false; // the file's client count is above 0
    QString StatusText;      // "<network> data interpreted" or "No data to display"
};

// Shows a status text at once (the map repaints its status line); may be empty.
using StatusCallback = std::function<void(const QString&)>;

// Fills the tables of one network from a whazzup text: resets the counters, reads every PILOT and ATC
// line into the next slot (a full table drops further lines), counts observers, and reads the UPDATE,
// CONNECTED CLIENTS and RELOAD lines. Follow-me cars and ATIS stations are taken off the client count
// as they appear, so that count must come first, as it does in the networks' files. now is stored as
// the time of the download when the file holds clients. The other network is untouched.
InterpretResult InterpretWhazzup(int network, QStringView text, const ReferenceData& reference,
                                 NetworkData& data, const QDateTime& now,
                                 const StatusCallback& showStatus = {});

// Parses one PILOT line into pilot. DepTime and EnrouteTime keep what the record held when the line's
// fields cannot give them.
void ParsePilot(int network, QStringView line, const ReferenceData& reference, PilotRecord& pilot);

// Parses one ATC line into controller: facility, served station and drawn position. Observers add to
// data.ObserverCount and ATIS stations take one off data.ConnectedClients.
void ParseController(int network, QStringView line, const ReferenceData& reference,
                     ControllerRecord& controller, NetworkData& data);

} // namespace sky::network
