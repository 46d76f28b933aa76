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
