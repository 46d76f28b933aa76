#include "network/lines.h"

namespace sky::network {

QList<QStringView> SplitNetworkLines(QStringView text) {
    constexpr qsizetype kMinimumPieces = 5;
    // A separator that occurs four times gives five pieces.
    if (text.count(u"\r\n") >= kMinimumPieces - 1)
        return text.split(u"\r\n");
    if (text.count(u'\r') >= kMinimumPieces - 1)
        return text.split(u'\r');
    if (text.count(u'\n') >= kMinimumPieces - 1)
        return text.split(u'\n');
    return {};
}

} // namespace sky::network
