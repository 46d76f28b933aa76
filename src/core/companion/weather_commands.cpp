#include "companion/weather_commands.h"

#include "common/text_codec.h"
#include "network/download.h"
#include "network/http_client.h"
#include "refdata/reference_data.h"

using namespace Qt::StringLiterals;

namespace sky::companion {

QString StationFileAddress(const QString& server, const QString& command, const QString& code) {
    QString base = server.trimmed();
    while (base.endsWith(u'/'))
        base.chop(1);
    if (command == u"metar")
        return base + u"/data/observations/metar/stations/"_s + code + u".TXT"_s;
    if (command == u"taf")
        return base + u"/data/forecasts/taf/stations/"_s + code + u".TXT"_s;
    return base + u"/data/forecasts/shorttaf/stations/"_s + code + u".TXT"_s;
}

namespace {

// Blanks only: a carriage return at the end of a report is the report's own.
QString TrimBlanks(const QString& text) {
    qsizetype begin = 0, end = text.size();
    while (begin < end && text[begin] == u' ')
        ++begin;
    while (end > begin && text[end - 1] == u' ')
        --end;
    return text.sliced(begin, end - begin);
}

} // namespace

QString ReportFromStationFile(const QString& reply, const QString& code) {
    QString report = reply.mid(17);
    report.chop(1);
    report = TrimBlanks(report);
    if (!report.startsWith(code) && !report.startsWith(u"TAF "_s))
        return {};
    report.replace(u"\n"_s, kCrLf);
    report.replace(u"      "_s, u" "_s);
    return report;
}

void Weather(CommandContext& c, const QString& command, const QString& code) {
    c.AddText(u"> "_s + command + u' ' + code);
    if (!c.Reference.HasAirport(code)) {
        c.AddText(u"Unrecognized ICAO code"_s + kCrLf);
        return;
    }
    network::FetchResult fetched;
    {
        const network::BusyGuard busy(c.Downloads);
        fetched = c.Http.Fetch(StationFileAddress(c.WeatherServer, command, code));
    }
    const QString reply = fetched.Ok ? DecodeText(fetched.Body).Text : QString();
    const QString report = ReportFromStationFile(reply, code);
    if (report.isEmpty()) {
        c.AddText(u"No "_s + command.toUpper() + u" for "_s + code + kCrLf);
        return;
    }
    c.AddText(report + kCrLf);
}

} // namespace sky::companion
