#pragma once

#include <ostream>

#include <QString>
#include <QStringList>

// Readable Qt strings in test failures.
inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QStringList& list, std::ostream* out) {
    *out << '{';
    for (const QString& text : list) {
        PrintTo(text, out);
        *out << ", ";
    }
    *out << '}';
}
