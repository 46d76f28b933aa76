#include "app/ini_file.h"

using namespace Qt::StringLiterals;

namespace sky {
namespace {

QString Fold(QStringView text) {
    return text.trimmed().toString().toCaseFolded();
}

bool IsComment(QStringView trimmed) {
    return trimmed.startsWith(u';') || trimmed.startsWith(u'#');
}

// The name inside "[name]"; a header missing its closing bracket still names a section.
QStringView HeaderName(QStringView trimmed) {
    QStringView inner = trimmed.sliced(1);
    const qsizetype close = inner.indexOf(u']');
    if (close >= 0)
        inner = inner.first(close);
    return inner.trimmed();
}

QString StripQuotes(QStringView value) {
    if (value.size() >= 2 && value.startsWith(u'"') && value.endsWith(u'"'))
        value = value.sliced(1, value.size() - 2);
    return value.first(std::min(value.size(), IniFile::kMaxValueChars)).toString();
}

} // namespace

IniFile::IniFile() {
    m_sections.push_back({});
}

IniFile IniFile::Load(const QString& path) {
    const auto bytes = ReadWholeFile(path);
    return bytes ? FromBytes(*bytes) : IniFile();
}

IniFile IniFile::FromBytes(const QByteArray& bytes) {
    IniFile ini;
    if (bytes.isEmpty())
        return ini;
    DecodedText decoded = DecodeText(bytes);
    ini.m_encoding = decoded.Encoding;
    QStringView text(decoded.Text);
    const qsizetype firstBreak = text.indexOf(u'\n');
    ini.m_crlf = firstBreak > 0 && text[firstBreak - 1] == u'\r';
    ini.m_finalLineEnd = text.endsWith(u'\n');
    if (ini.m_finalLineEnd)
        text.chop(1);
    qsizetype start = 0;
    while (start <= text.size()) {
        qsizetype end = text.indexOf(u'\n', start);
        if (end < 0)
            end = text.size();
        QStringView line = text.sliced(start, end - start);
        if (line.endsWith(u'\r'))
            line.chop(1);
        ini.AddLine(line.toString());
        start = end + 1;
    }
    return ini;
}

void IniFile::AddLine(const QString& text) {
    const QStringView trimmed = QStringView(text).trimmed();
    if (trimmed.startsWith(u'[')) {
        const QString name = Fold(HeaderName(trimmed));
        m_sections.push_back({text, {}, {}});
        if (!m_firstSectionOfName.contains(name))
            m_firstSectionOfName.insert(name, qsizetype(m_sections.size() - 1));
        return;
    }
    Section& section = m_sections.back();
    QString foldedKey;
    const qsizetype equals = trimmed.indexOf(u'=');
    if (!IsComment(trimmed) && equals > 0)
        foldedKey = Fold(trimmed.first(equals));
    if (!foldedKey.isEmpty() && !section.FirstLineOfKey.contains(foldedKey))
        section.FirstLineOfKey.insert(foldedKey, qsizetype(section.Lines.size()));
    section.Lines.push_back({text, std::move(foldedKey)});
}

qsizetype IniFile::FindSection(QStringView name) const {
    const auto it = m_firstSectionOfName.constFind(Fold(name));
    return it == m_firstSectionOfName.cend() ? -1 : *it;
}

QString IniFile::Value(QStringView section, QStringView key, const QString& fallback) const {
    const qsizetype sectionIndex = FindSection(section);
    if (sectionIndex < 0)
        return fallback.first(std::min(fallback.size(), kMaxValueChars));
    const Section& found = m_sections[sectionIndex];
    const auto it = found.FirstLineOfKey.constFind(Fold(key));
    if (it == found.FirstLineOfKey.cend())
        return fallback.first(std::min(fallback.size(), kMaxValueChars));
    const QStringView line = QStringView(found.Lines[*it].Text).trimmed();
    return StripQuotes(line.sliced(line.indexOf(u'=') + 1).trimmed());
}

void IniFile::SetValue(const QString& section, const QString& key, const QString& value) {
    qsizetype sectionIndex = FindSection(section);
    if (sectionIndex < 0) {
        // A new section goes at the end, set off by a blank line from what came before.
        Section& last = m_sections.back();
        const bool fileIsEmpty = m_sections.size() == 1 && last.Lines.empty();
        const bool endsWithBlank = !last.Lines.empty() && last.Lines.back().Text.trimmed().isEmpty();
        if (!fileIsEmpty && !endsWithBlank)
            last.Lines.push_back({});
        m_sections.push_back({u'[' + section + u']', {}, {}});
        sectionIndex = qsizetype(m_sections.size() - 1);
        m_firstSectionOfName.insert(Fold(section), sectionIndex);
    }
    Section& target = m_sections[sectionIndex];
    const QString foldedKey = Fold(key);
    const auto it = target.FirstLineOfKey.constFind(foldedKey);
    if (it != target.FirstLineOfKey.cend()) {
        // Keep the key as the user spelled it; only the value changes.
        Line& line = target.Lines[*it];
        const QStringView trimmed = QStringView(line.Text).trimmed();
        line.Text = trimmed.first(trimmed.indexOf(u'=')).trimmed().toString() + u'=' + value;
        return;
    }
    // A new key goes after the section's last non-blank line, so blank lines before the next section
    // stay where they are.
    qsizetype insertAt = qsizetype(target.Lines.size());
    while (insertAt > 0 && target.Lines[insertAt - 1].Text.trimmed().isEmpty())
        --insertAt;
    target.Lines.insert(target.Lines.begin() + insertAt, {key + u'=' + value, foldedKey});
    for (auto& lineIndex : target.FirstLineOfKey) {
        if (lineIndex >= insertAt)
            ++lineIndex;
    }
    target.FirstLineOfKey.insert(foldedKey, insertAt);
    m_finalLineEnd = true;
}

QByteArray IniFile::ToBytes() const {
    const QString lineEnd = m_crlf ? u"\r\n"_s : u"\n"_s;
    QString text;
    bool first = true;
    auto append = [&](const QString& line) {
        if (!first)
            text += lineEnd;
        text += line;
        first = false;
    };
    for (const Section& section : m_sections) {
        if (&section != &m_sections.front())
            append(section.Header);
        for (const Line& line : section.Lines)
            append(line.Text);
    }
    if (!first && m_finalLineEnd)
        text += lineEnd;
    return EncodeText(text, m_encoding);
}

WriteResult IniFile::Save(const QString& path) const {
    return WriteFileAtomically(path, ToBytes());
}

} // namespace sky
