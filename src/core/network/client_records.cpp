#include "network/client_records.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace sky::network {

QString NetworkName(int network) {
    return network == 0 ? u"IVAO"_s : u"VATSIM"_s;
}

ClientSummary Summarise(const ClientTables& tables, const ClientRef& client) {
    const NetworkData& data = tables[size_t(client.Network == 1 ? 1 : 0)];
    if (client.IsPilot) {
        const PilotRecord& p = data.Pilots[size_t(client.Slot)];
        return {p.Callsign, p.VID, p.RealName, p.Latitude, p.Longitude};
    }
    const ControllerRecord& c = data.Controllers[size_t(client.Slot)];
    return {c.Callsign, c.VID, c.RealName, c.DisplayLatitude, c.DisplayLongitude};
}

QString StampTime(const QString& updateStamp) {
    return updateStamp.mid(8, 4);
}

QString LimitNotice(const NetworkData& data, int network) {
    QStringList cut;
    if (data.DroppedPilots > 0)
        cut.append(u"%1 of %2 pilots"_s.arg(data.PilotCount).arg(data.PilotCount + data.DroppedPilots));
    if (data.DroppedControllers > 0)
        cut.append(u"%1 of %2 controllers and observers"_s.arg(data.ControllerCount)
                       .arg(data.ControllerCount + data.DroppedControllers));
    if (cut.isEmpty())
        return {};
    return NetworkName(network) + u": only "_s + cut.join(u" and "_s) +
           u" kept; the Preferences raise the limits"_s;
}

} // namespace sky::network
