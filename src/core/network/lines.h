#pragma once

#include <QList>
#include <QStringView>

namespace sky::network {

// Splits a downloaded text into lines the way the networks' files are read: on CR LF, or, when that
// gives fewer than five pieces, on CR alone, else on LF alone. Fewer than five pieces on every try
// means the text is not a file of this kind, and the result is empty.
QList<QStringView> SplitNetworkLines(QStringView text);

} // namespace sky::network
