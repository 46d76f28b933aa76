#pragma once

#include <vector>

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringView>

#include "common/file_io.h"
#include "common/text_codec.h"

namespace sky {

// An initialisation file with the semantics people know from classic desktop programs: sections and
// keys are found regardless of case, a missing file or key gives the caller's default, and writing a
// key rewrites that key's line only, so comments, unknown keys, blank lines and the order of
// everything else survive. Values read back as stored, with surrounding double quotes removed and at
// most kMaxValueChars characters, as the classic 256-character buffer returned them.
class IniFile {
public:
    static constexpr qsizetype kMaxValueChars = 255;

    IniFile();

    // Reads a file; a missing or unreadable one gives an empty document.
    static IniFile Load(const QString& path);
    static IniFile FromBytes(const QByteArray& bytes);

    // The value of key in section, or fallback when either is missing. Of duplicate sections or keys
    // the first one counts.
    QString Value(QStringView section, QStringView key, const QString& fallback) const;

    // Sets key in section to value: rewrites the key's line, or appends the key at the end of its
    // section, or appends the section at the end of the file.
    void SetValue(const QString& section, const QString& key, const QString& value);

    // The document as bytes in the encoding and line ends it was read with.
    QByteArray ToBytes() const;

    // Writes the document atomically (see WriteFileAtomically).
    WriteResult Save(const QString& path) const;

private:
    struct Line {
        QString Text;
        QString FoldedKey; // empty for comments, blank lines and lines without '='
    };
    struct Section {
        QString Header; // the raw header line; empty for the lines before the first header
        std::vector<Line> Lines;
        QHash<QString, qsizetype> FirstLineOfKey;
    };

    void AddLine(const QString& text);
    qsizetype FindSection(QStringView name) const;

    std::vector<Section> m_sections;
    QHash<QString, qsizetype> m_firstSectionOfName;
    TextEncoding m_encoding = TextEncoding::Utf8;
    bool m_crlf = false;
    bool m_finalLineEnd = true;
};

} // namespace sky
