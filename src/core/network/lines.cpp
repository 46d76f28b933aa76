#include "network/lines.h"

namespace sky::network {
namespace {

constexpr qsizetype kMinimumPieces = 5;

// Splits at every LF, dropping the CR before it where there is one: a file written with CR LF that
// had a line added with LF alone reads as its lines, not as one of them holding the next.
QList<QStringView> SplitOnLineFeeds(QStringView text, qsizetype lineFeeds) {
    QList<QStringView> lines;
    lines.reserve(lineFeeds + 1);
    qsizetype start = 0;
    for (qsizetype lf = text.indexOf(u'\n'); lf >= 0; lf = text.indexOf(u'\n', lf + 1)) {
        const qsizetype end = lf > start && text[lf - 1] == u'\r' ? lf - 1 : lf;
        lines.append(text.sliced(start, end - start));
        start = lf + 1;
    }
    lines.append(text.sliced(start));
    return lines;
}

} // namespace

QList<QStringView> SplitNetworkLines(QStringView text) {
    // A separator that occurs four times gives five pieces.
    const qsizetype lineFeeds = text.count(u'\n');
    if (lineFeeds >= kMinimumPieces - 1)
        return SplitOnLineFeeds(text, lineFeeds);
    if (text.count(u'\r') >= kMinimumPieces - 1)
        return text.split(u'\r');
    return {};
}

} // namespace sky::network
