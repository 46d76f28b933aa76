#include "common/keyed_lines.h"

#include "common/shared_file.h"
#include "common/text_codec.h"

using namespace Qt::StringLiterals;

namespace sky {
namespace {

QString OneLine(const QString& text) {
    QString line = text;
    for (QChar& c : line)
        if (c == u'\t' || c == u'\n' || c == u'\r')
            c = u' ';
    return line.trimmed();
}

} // namespace

KeyedLines KeyedLines::Parse(const QString& text) {
    KeyedLines lines;
    for (QStringView line : QStringView(text).split(u'\n')) {
        const qsizetype tab = line.indexOf(u'\t');
        if (tab > 0)
            lines.Set(line.left(tab).toString(), line.mid(tab + 1).toString());
    }
    return lines;
}

KeyedLines KeyedLines::Load(const QString& path) {
    const auto bytes = ReadWholeFile(path);
    return bytes ? Parse(DecodeText(*bytes).Text) : KeyedLines();
}

QString KeyedLines::Value(const QString& key) const {
    const auto found = m_index.constFind(OneLine(key).toCaseFolded());
    return found == m_index.cend() ? QString() : m_entries[*found].second;
}

bool KeyedLines::Set(const QString& key, const QString& text) {
    const QString k = OneLine(key), value = OneLine(text);
    if (k.isEmpty())
        return false;
    const QString folded = k.toCaseFolded();
    const auto found = m_index.constFind(folded);
    if (found != m_index.cend() && !value.isEmpty()) {
        m_entries[*found].second = value;
    } else if (found != m_index.cend()) {
        m_entries.erase(m_entries.begin() + qsizetype(*found));
        m_index.clear();
        for (size_t i = 0; i < m_entries.size(); ++i)
            m_index.insert(m_entries[i].first.toCaseFolded(), i);
    } else if (!value.isEmpty()) {
        m_index.insert(folded, m_entries.size());
        m_entries.emplace_back(k, value);
    }
    return true;
}

QByteArray KeyedLines::ToBytes() const {
    QByteArray bytes;
    for (const auto& [key, value] : m_entries)
        bytes += (key + u'\t' + value).toUtf8() + '\n';
    return bytes;
}

WriteResult KeyedLines::Update(const QString& path, const std::function<void(KeyedLines&)>& change,
                               KeyedLines& into) {
    return SharedFile(path).Update([&](const QByteArray& current) -> std::optional<QByteArray> {
        into = Parse(DecodeText(current).Text);
        change(into);
        return into.ToBytes();
    });
}

} // namespace sky
