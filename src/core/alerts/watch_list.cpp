#include "alerts/watch_list.h"

#include "common/text_codec.h"

namespace sky::alerts {

bool MatchesPattern(QStringView pattern, QStringView callsign) {
    // The usual greedy matcher: on a mismatch after a "*", the star takes one character more.
    qsizetype p = 0, c = 0, star = -1, resume = 0;
    while (c < callsign.size()) {
        if (p < pattern.size() && (pattern[p] == u'?' || pattern[p].toUpper() == callsign[c].toUpper())) {
            ++p;
            ++c;
        } else if (p < pattern.size() && pattern[p] == u'*') {
            star = p++;
            resume = c;
        } else if (star >= 0) {
            p = star + 1;
            c = ++resume;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == u'*')
        ++p;
    return p == pattern.size();
}

QString WatchList::Normalised(const QString& pattern) {
    const QString kept = pattern.trimmed().toUpper();
    if (kept.isEmpty() || kept.size() > 20)
        return {};
    for (QChar c : kept) {
        if (!(c.isLetterOrNumber() && c.unicode() < 128) && c != u'_' && c != u'-' && c != u'*' && c != u'?')
            return {};
    }
    return kept;
}

WatchList WatchList::Load(const QString& path) {
    const auto bytes = ReadWholeFile(path);
    return bytes ? Parse(DecodeText(*bytes).Text) : WatchList();
}

WatchList WatchList::Parse(const QString& text) {
    WatchList list;
    for (QStringView line : QStringView(text).split(u'\n')) {
        if (list.Full()) {
            list.m_refused += Normalised(line.toString()).isEmpty() ? 0 : 1;
            continue;
        }
        list.Add(line.toString());
    }
    return list;
}

namespace {

bool IsWildcard(const QString& pattern) {
    return pattern.contains(u'*') || pattern.contains(u'?');
}

} // namespace

bool WatchList::Add(const QString& pattern) {
    const QString kept = Normalised(pattern);
    if (kept.isEmpty() || Full() || m_kept.contains(kept))
        return false;
    m_patterns.append(kept);
    m_kept.insert(kept);
    if (IsWildcard(kept))
        m_wildcards.append(kept);
    else
        m_exact.insert(kept);
    return true;
}

bool WatchList::Remove(const QString& pattern) {
    const QString kept = Normalised(pattern);
    if (!m_kept.remove(kept))
        return false;
    m_patterns.removeOne(kept);
    m_wildcards.removeOne(kept);
    m_exact.remove(kept);
    return true;
}

bool WatchList::Matches(const QString& callsign) const {
    if (m_exact.contains(callsign.toUpper()))
        return true;
    for (const QString& pattern : m_wildcards) {
        if (MatchesPattern(pattern, callsign))
            return true;
    }
    return false;
}

QByteArray WatchList::ToBytes() const {
    QByteArray bytes;
    for (const QString& pattern : m_patterns)
        bytes += pattern.toUtf8() + '\n';
    return bytes;
}

} // namespace sky::alerts
