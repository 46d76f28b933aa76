#pragma once

#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include <QByteArray>
#include <QHash>
#include <QString>

#include "common/file_io.h"

namespace sky {

// A small file of named texts, one "key<TAB>text" a line, in the order they were added: the names of
// friends (by member number) and the saved filters (by name). Keys ignore case; a later line with the
// same key replaces an earlier one; lines without a key or a text are skipped.
class KeyedLines {
public:
    static KeyedLines Parse(const QString& text);
    // A missing or unreadable file gives an empty set.
    static KeyedLines Load(const QString& path);

    // The text of key, or empty.
    QString Value(const QString& key) const;
    // Sets the text of key (tabs and line breaks become blanks, both are trimmed); an empty text
    // removes the key. False when the key is empty after trimming.
    bool Set(const QString& key, const QString& text);
    const std::vector<std::pair<QString, QString>>& Entries() const { return m_entries; }
    bool IsEmpty() const { return m_entries.empty(); }

    QByteArray ToBytes() const;

    // Changes the file at path as it is now, under a short-lived lock file beside it (the path and
    // ".lock"), so a change another program made meanwhile is kept; saved through the checked atomic
    // save, making its folder when missing. into receives the file's content as saved (or as read, when
    // saving failed).
    static WriteResult Update(const QString& path, const std::function<void(KeyedLines&)>& change,
                              KeyedLines& into);

private:
    std::vector<std::pair<QString, QString>> m_entries;
    QHash<QString, size_t> m_index; // case-folded key -> entry
};

} // namespace sky
