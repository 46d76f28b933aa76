#pragma once

#include <QSet>
#include <QString>
#include <QStringList>

#include "common/file_io.h"

namespace sky::alerts {

// The stations the user watches: callsign patterns such as "EDDF_*", "*_CTR" or "LON_?_CTR", where
// "*" stands for any run of characters and "?" for one. Case does not matter; each pattern is kept
// once, in the order it was added, at most kMaxPatterns of them. Kept in data/watch.dat, one pattern a
// line.
class WatchList {
public:
    static constexpr qsizetype kMaxPatterns = 10000;

    static WatchList Load(const QString& path); // a missing or unreadable file: an empty list
    // The patterns of the text's lines, in linear time; those beyond kMaxPatterns are counted in
    // Refused().
    static WatchList Parse(const QString& text);

    // A pattern is letters, digits, "_", "-", "*" and "?" only, at most 20 of them; true when added
    // (false too when the list is full).
    bool Add(const QString& pattern);
    bool Remove(const QString& pattern);
    bool Contains(const QString& pattern) const { return m_kept.contains(Normalised(pattern)); }
    bool Full() const { return m_patterns.size() >= kMaxPatterns; }
    // True when callsign matches one of the patterns.
    bool Matches(const QString& callsign) const;
    const QStringList& Patterns() const { return m_patterns; }
    // The patterns Parse left out because the list was full.
    qsizetype Refused() const { return m_refused; }

    QByteArray ToBytes() const;

    // The pattern as it is kept (upper case, blanks trimmed), or empty when it is no pattern.
    static QString Normalised(const QString& pattern);

private:
    QStringList m_patterns;
    QSet<QString> m_kept;    // the patterns, for lookup
    QSet<QString> m_exact;   // those without "*" or "?", matched by lookup
    QStringList m_wildcards; // the others, matched one by one
    qsizetype m_refused = 0;
};

// True when callsign matches the pattern ("*" any run, "?" one character), ignoring case.
bool MatchesPattern(QStringView pattern, QStringView callsign);

} // namespace sky::alerts
