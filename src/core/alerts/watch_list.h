#pragma once

#include <QString>
#include <QStringList>

#include "common/file_io.h"

namespace sky::alerts {

// The stations the user watches: callsign patterns such as "EDDF_*", "*_CTR" or "LON_?_CTR", where
// "*" stands for any run of characters and "?" for one. Case does not matter; each pattern is kept
// once, in the order it was added. Kept in data/watch.dat, one pattern a line.
class WatchList {
public:
    static WatchList Load(const QString& path); // a missing or unreadable file: an empty list
    static WatchList Parse(const QString& text);

    // A pattern is letters, digits, "_", "-", "*" and "?" only, at most 20 of them; true when added.
    bool Add(const QString& pattern);
    bool Remove(const QString& pattern);
    // True when callsign matches one of the patterns.
    bool Matches(const QString& callsign) const;
    const QStringList& Patterns() const { return m_patterns; }

    QByteArray ToBytes() const;
    WriteResult Save(const QString& path) const;

    // The pattern as it is kept (upper case, blanks trimmed), or empty when it is no pattern.
    static QString Normalised(const QString& pattern);

private:
    QStringList m_patterns;
};

// True when callsign matches the pattern ("*" any run, "?" one character), ignoring case.
bool MatchesPattern(QStringView pattern, QStringView callsign);

} // namespace sky::alerts
