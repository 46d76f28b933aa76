#include "network/fields.h"

namespace sky::network {

LineFields::LineFields(QStringView line) {
    qsizetype start = 0;
    while (true) {
        const qsizetype colon = line.indexOf(u':', start);
        if (colon < 0) {
            m_fields.append(line.sliced(start));
            return;
        }
        m_fields.append(line.sliced(start, colon - start));
        start = colon + 1;
    }
}

QString GetField(QStringView line, qsizetype index) {
    if (index < 0)
        return {};
    qsizetype start = 0;
    for (qsizetype field = 0; field < index; ++field) {
        const qsizetype colon = line.indexOf(u':', start);
        if (colon < 0)
            return {};
        start = colon + 1;
    }
    const qsizetype end = line.indexOf(u':', start);
    return line.sliced(start, (end < 0 ? line.size() : end) - start).toString();
}

} // namespace sky::network
