#pragma once

#include "companion/command_context.h"

namespace sky::companion {

// metar, taf and shorttaf: fetches the station file of CODE from the weather server and prints the
// report. command is the command word ("metar", "taf", "shorttaf").
void Weather(CommandContext& c, const QString& command, const QString& code);

// The address of a station file on server (which stands before "/data/...").
QString StationFileAddress(const QString& server, const QString& command, const QString& code);

// The report part of a station file, or empty when the reply is not a report for code: the date line
// (17 characters) and the last character go, blanks around are trimmed, and the rest must begin with
// the station code or "TAF ". Line feeds become CR LF and every run of six blanks one blank.
QString ReportFromStationFile(const QString& reply, const QString& code);

} // namespace sky::companion
