#include "history/snapshot_codec.h"

#include <cmath>

#include <QVarLengthArray>

#include "common/numbers.h"
#include "network/lines.h"

using namespace Qt::StringLiterals;

namespace sky::history {
namespace {

constexpr int kLatitude = 5, kLongitude = 6, kAltitude = 7, kSpeed = 8;

int HeadingField(int network) {
    return network == 0 ? 45 : 38;
}

std::int32_t Micro(QStringView field) {
    return ToInt32(LeadingNumber(field) * 1e6);
}

QString FromMicro(std::int32_t value) {
    return QString::number(double(value) / 1e6, 'f', 6);
}

} // namespace

SplitSnapshot Split(int network, const QString& text) {
    SplitSnapshot split;
    const int heading = HeadingField(network);
    QVarLengthArray<qsizetype, 64> colons;
    for (QStringView line : network::SplitNetworkLines(text)) {
        colons.clear();
        for (qsizetype i = line.indexOf(u':'); i >= 0; i = line.indexOf(u':', i + 1))
            colons.append(i);
        // Field k runs from after colon k-1 to colon k (or the line's end).
        const auto field = [&](int k) {
            const qsizetype from = k == 0 ? 0 : colons[k - 1] + 1;
            return line.sliced(from, (k < colons.size() ? colons[k] : line.size()) - from);
        };
        const qsizetype fields = colons.size() + 1;
        const QStringView type = fields > 3 ? field(3) : QStringView();
        const bool client = fields > 8 && (type == u"PILOT" || type == u"ATC" || type == u"FOLME");
        if (!client) {
            // A line that starts as a kept file's marks do is no line the networks write.
            if (!line.startsWith(u'\x1E') && !line.startsWith(u'\x1F'))
                split.Frame.append(line.toString());
            continue;
        }
        ClientPosition p;
        p.Callsign = field(0).toString();
        p.Member = field(1).toString();
        p.Pilot = type == u"PILOT";
        p.LatMicro = Micro(field(kLatitude));
        p.LonMicro = Micro(field(kLongitude));
        // A station stays where it is, so its whole line seldom changes; an aircraft moves, climbs,
        // speeds and turns.
        if (!p.Pilot) {
            split.StaticLines.append(line.toString());
        } else {
            p.AltitudeFt = ToInt32(LeadingNumber(field(kAltitude)));
            p.SpeedKt = ToInt32(LeadingNumber(field(kSpeed)));
            p.Heading = heading < fields ? ToInt32(LeadingNumber(field(heading))) : 0;
            QString kept;
            kept.reserve(line.size());
            for (int k = 0; k < fields; ++k) {
                if (k > 0)
                    kept += u':';
                if (k != kLatitude && k != kLongitude && k != kAltitude && k != kSpeed && k != heading)
                    kept += field(k);
            }
            split.StaticLines.append(kept);
        }
        split.Frame.append(kClientMark);
        split.Positions.push_back(p);
    }
    return split;
}

QString JoinLine(int network, const QString& staticLine, const ClientPosition& p) {
    if (!p.Pilot)
        return staticLine;
    QStringList fields = staticLine.split(u':');
    const auto set = [&](int index, const QString& value) {
        if (index < fields.size())
            fields[index] = value;
    };
    set(kLatitude, FromMicro(p.LatMicro));
    set(kLongitude, FromMicro(p.LonMicro));
    set(kAltitude, QString::number(p.AltitudeFt));
    set(kSpeed, QString::number(p.SpeedKt));
    set(HeadingField(network), QString::number(p.Heading));
    return fields.join(u':');
}

QString Join(int network, const SplitSnapshot& snapshot) {
    QStringList lines;
    lines.reserve(snapshot.Frame.size());
    size_t client = 0;
    for (const QString& line : snapshot.Frame) {
        if (line != kClientMark) {
            lines.append(line);
            continue;
        }
        if (qsizetype(client) >= snapshot.StaticLines.size() || client >= snapshot.Positions.size())
            break;
        lines.append(JoinLine(network, snapshot.StaticLines[qsizetype(client)], snapshot.Positions[client]));
        ++client;
    }
    return lines.join(u"\r\n"_s) + u"\r\n"_s;
}

} // namespace sky::history
