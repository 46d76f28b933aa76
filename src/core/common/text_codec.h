#pragma once

#include <QByteArray>
#include <QString>

// Files and downloads come as UTF-8 from modern tools and as Windows-1252 from older ones; the two are
// told apart by whether the bytes are valid UTF-8.
namespace sky {

enum class TextEncoding { Utf8, Windows1252 };

struct DecodedText {
    QString Text;
    TextEncoding Encoding = TextEncoding::Utf8;
};

// Decodes bytes as UTF-8 when they are valid UTF-8, else as Windows-1252. A leading UTF-8 byte order
// mark is dropped.
DecodedText DecodeText(const QByteArray& bytes);

// Encodes text in the given encoding; characters that Windows-1252 cannot hold become '?'.
QByteArray EncodeText(const QString& text, TextEncoding encoding);

// The Windows-1252 code of a character, or '?' when the code page has none.
unsigned char ToWindows1252(QChar c);

} // namespace sky
