#pragma once

#include <utility>
#include <vector>

#include <QString>
#include <QStringList>

namespace sky::network::testing {

using Fields = std::vector<std::pair<int, QString>>;

// A whazzup line as wide as the network's layout (46 fields for IVAO, 40 for VATSIM), or wider when a
// field beyond is given, with the given fields set and the client type in field 3.
inline QString ClientLine(int network, const QString& clientType, const Fields& fields) {
    QStringList parts(network == 0 ? 46 : 40);
    parts[3] = clientType;
    for (const auto& [index, value] : fields) {
        if (index >= parts.size())
            parts.resize(index + 1);
        parts[index] = value;
    }
    return parts.join(u':');
}

// The same with the fields written as "index=value" pairs between bars: "0=DLH1|5=50.1|6=8.6".
inline QString ClientLine(int network, const QString& clientType, const QString& fields) {
    Fields parsed;
    for (const QString& field : fields.split(u'|', Qt::SkipEmptyParts))
        parsed.push_back({field.section(u'=', 0, 0).toInt(), field.section(u'=', 1)});
    return ClientLine(network, clientType, parsed);
}

inline QString PilotLine(int network, const QString& fields) {
    return ClientLine(network, QStringLiteral("PILOT"), fields);
}
inline QString AtcLine(int network, const QString& fields) {
    return ClientLine(network, QStringLiteral("ATC"), fields);
}
inline QString PilotLine(int network, const Fields& fields) {
    return ClientLine(network, QStringLiteral("PILOT"), fields);
}
inline QString AtcLine(int network, const Fields& fields) {
    return ClientLine(network, QStringLiteral("ATC"), fields);
}

// A whazzup file of these client lines in CR LF lines: its general section with this update stamp and
// reload interval, and a client count of the lines given unless another is.
inline QString WhazzupText(const QStringList& clients,
                           const QString& update = QStringLiteral("20261121142305"), int reloadMinutes = 2,
                           qsizetype connected = -1) {
    QStringList lines = {
        QStringLiteral("!GENERAL"), QStringLiteral("RELOAD = %1").arg(reloadMinutes),
        QStringLiteral("UPDATE = ") + update,
        QStringLiteral("CONNECTED CLIENTS = %1").arg(connected < 0 ? clients.size() : connected),
        QStringLiteral("!CLIENTS")};
    return (lines + clients).join(QStringLiteral("\r\n")) + QStringLiteral("\r\n");
}

} // namespace sky::network::testing
