#include "network/lines.h"

namespace sky::network {
namespace {

constexpr qsizetype kMinimumPieces = 5;

// Splits on CR LF with one search for LF, the common case of the networks' files; a LF without a CR
// before it stays inside its line, as a split on the pair would leave it.
QList<QStringView> SplitOnCrLf(QStringView text, qsizetype pairs) {
    QList<QStringView> lines;
    lines.reserve(pairs + 1);
    qsizetype start = 0;
    for (qsizetype lf = text.indexOf(u'\n'); lf >= 0; lf = text.indexOf(u'\n', lf + 1)) {
        if (lf > 0 && text[lf - 1] == u'\r') {
            lines.append(text.sliced(start, lf - 1 - start));
            start = lf + 1;
        }
    }
    lines.append(text.sliced(start));
    return lines;
}

} // namespace

QList<QStringView> SplitNetworkLines(QStringView text) {
    qsizetype pairs = 0;
    qsizetype lineFeeds = 0;
    for (qsizetype lf = text.indexOf(u'\n'); lf >= 0; lf = text.indexOf(u'\n', lf + 1)) {
        ++lineFeeds;
        if (lf > 0 && text[lf - 1] == u'\r')
            ++pairs;
    }
    // A separator that occurs four times gives five pieces.
    if (pairs >= kMinimumPieces - 1)
        return SplitOnCrLf(text, pairs);
    if (text.count(u'\r') >= kMinimumPieces - 1)
        return text.split(u'\r');
    if (lineFeeds >= kMinimumPieces - 1)
        return text.split(u'\n');
    return {};
}

} // namespace sky::network
