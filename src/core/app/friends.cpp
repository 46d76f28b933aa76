#include "app/friends.h"

#include "common/text_codec.h"

using namespace Qt::StringLiterals;

namespace sky {
namespace {

QString KeyOf(const QString& memberId) {
    return memberId.toCaseFolded();
}

bool IsFieldBlank(QChar c) {
    return c == u' ' || c == u'\t';
}

// Splits one line into its delimited fields: a comma ends a field, blanks around a field are
// dropped, and a field in double quotes keeps its commas and blanks.
QStringList DelimitedFields(QStringView line) {
    QStringList fields;
    qsizetype pos = 0;
    const qsizetype size = line.size();
    while (pos <= size) {
        while (pos < size && IsFieldBlank(line[pos]))
            ++pos;
        QString field;
        if (pos < size && line[pos] == u'"') {
            const qsizetype close = line.indexOf(u'"', pos + 1);
            const qsizetype end = close < 0 ? size : close;
            field = line.sliced(pos + 1, end - pos - 1).toString();
            pos = close < 0 ? size : close + 1;
            // Whatever stands between the closing quote and the next comma is dropped.
            const qsizetype comma = line.indexOf(u',', pos);
            pos = comma < 0 ? size : comma;
        } else {
            const qsizetype comma = line.indexOf(u',', pos);
            const qsizetype end = comma < 0 ? size : comma;
            field = line.sliced(pos, end - pos).trimmed().toString();
            pos = end;
        }
        fields.append(field);
        if (pos >= size)
            break;
        ++pos; // past the comma
        if (pos == size) {
            fields.append(QString()); // a trailing comma leaves one empty field
            break;
        }
    }
    return fields;
}

} // namespace

Friends Friends::Load(const QString& path) {
    const auto bytes = ReadWholeFile(path);
    return bytes ? Parse(DecodeText(*bytes).Text) : Friends();
}

Friends Friends::Parse(const QString& text) {
    Friends friends;
    for (QStringView line : QStringView(text).split(u'\n')) {
        if (line.endsWith(u'\r'))
            line.chop(1);
        for (const QString& entry : DelimitedFields(line))
            friends.Add(entry);
    }
    return friends;
}

bool Friends::Contains(const QString& memberId) const {
    return m_keys.contains(KeyOf(memberId));
}

bool Friends::Add(const QString& memberId) {
    if (memberId.isEmpty() || Contains(memberId))
        return false;
    m_entries.append(memberId);
    m_keys.insert(KeyOf(memberId));
    return true;
}

bool Friends::Remove(const QString& memberId) {
    if (!m_keys.remove(KeyOf(memberId)))
        return false;
    const QString key = KeyOf(memberId);
    m_entries.removeIf([&](const QString& entry) { return KeyOf(entry) == key; });
    return true;
}

QByteArray Friends::ToBytes() const {
    QByteArray bytes;
    for (const QString& entry : m_entries)
        bytes += entry.toUtf8() + '\n';
    return bytes;
}

Friends Friends::Merged(const Friends& base, const Friends& mine, const Friends& theirs) {
    Friends merged = theirs;
    for (const QString& entry : mine.Entries())
        if (!base.Contains(entry))
            merged.Add(entry);
    for (const QString& entry : base.Entries())
        if (!mine.Contains(entry))
            merged.Remove(entry);
    return merged;
}

FriendsFile::FriendsFile(const QString& path)
    : m_file(path), m_base(Friends::Parse(DecodeText(m_file.Read()).Text)) {}

WriteResult FriendsFile::Save(Friends& list) {
    const WriteResult saved = m_file.Update([&](const QByteArray& current) -> std::optional<QByteArray> {
        list = Friends::Merged(m_base, list, Friends::Parse(DecodeText(current).Text));
        return list.ToBytes();
    });
    // A save that failed keeps the change in this run's list; the next save merges it again.
    if (saved.Ok)
        m_base = list;
    return saved;
}

bool FriendsFile::Reload(Friends& list) {
    const std::optional<QByteArray> changed = m_file.ReadIfChanged();
    if (!changed)
        return false;
    Friends theirs = Friends::Parse(DecodeText(*changed).Text);
    if (theirs.Entries() == list.Entries()) {
        m_base = std::move(theirs);
        return false;
    }
    list = theirs;
    m_base = std::move(theirs);
    return true;
}

FriendToggle ToggleFriend(Friends& friends, const QString& realName, const QString& memberId) {
    // A client without a member number cannot be a friend; nothing changes.
    if (memberId.isEmpty())
        return {};
    const QString who = realName + u" ("_s + memberId + u')';
    if (friends.Add(memberId))
        return {true, who + u" added to friends list"_s};
    friends.Remove(memberId);
    return {false, who + u" removed from friends list"_s};
}

} // namespace sky
