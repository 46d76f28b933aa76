#include "network/client_records.h"

using namespace Qt::StringLiterals;

namespace sky::network {

QString NetworkName(int network) {
    return network == 0 ? u"IVAO"_s : u"VATSIM"_s;
}

} // namespace sky::network
