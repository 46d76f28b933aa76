#include "network/whazzup.h"

#include "network/fields.h"
#include "network/whazzup_parse.h"

namespace sky::network {

void ParsePilot(int network, QStringView line, const ReferenceData& reference, PilotRecord& pilot) {
    detail::ParsePilotFields(network, LineFields(line), reference, pilot);
}

void ParseController(int network, QStringView line, const ReferenceData& reference,
                     ControllerRecord& controller, NetworkData& data) {
    detail::ParseControllerFields(network, LineFields(line), reference, controller, data);
}

InterpretResult InterpretWhazzup(int network, QStringView text, const ReferenceData& reference,
                                 NetworkData& data, const QDateTime& now, const StatusCallback& showStatus) {
    return detail::InterpretLines<LineFields>(network, text, reference, data, now, showStatus);
}

} // namespace sky::network
