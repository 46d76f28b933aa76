#pragma once

#include <QList>
#include <QStringView>

namespace sky::network {

// Splits a downloaded text into lines the way the networks' files are read: a line ends in CR LF or in
// LF alone, the two mixed in one file as they come; a text with fewer than four line feeds is split on
// CR alone. Fewer than five pieces either way means the text is not a file of this kind, and the
// result is empty.
QList<QStringView> SplitNetworkLines(QStringView text);

} // namespace sky::network
