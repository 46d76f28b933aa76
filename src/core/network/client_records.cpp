#include "network/client_records.h"

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

} // namespace sky::network
