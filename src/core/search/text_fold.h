#pragma once

#include <QString>
#include <QStringList>

namespace sky::search {

// A text as a search compares it: lower case, accents taken off (é is e, ß is ss, ø is o), and every
// run of what is neither letter nor digit one blank, trimmed. "Zürich-Kloten  Airport" is
// "zurich kloten airport".
QString Fold(const QString& text);

// The words of a folded text.
QStringList Words(const QString& folded);

} // namespace sky::search
