#include "common/text_codec.h"

#include <array>

#include <QStringDecoder>

namespace sky {
namespace {

// The characters of codes 0x80 to 0x9F, where Windows-1252 differs from Latin-1. The five codes the
// code page leaves unassigned map to the C1 control of the same number, as Windows itself does.
constexpr std::array<char16_t, 32> kHighControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

QString DecodeWindows1252(const QByteArray& bytes) {
    QString text(bytes.size(), Qt::Uninitialized);
    QChar* out = text.data();
    for (char byte : bytes) {
        const auto code = static_cast<unsigned char>(byte);
        *out++ = (code >= 0x80 && code <= 0x9F) ? QChar(kHighControls[code - 0x80]) : QChar(char16_t(code));
    }
    return text;
}

} // namespace

DecodedText DecodeText(const QByteArray& bytes) {
    QByteArrayView view(bytes);
    if (view.startsWith("\xEF\xBB\xBF"))
        view = view.sliced(3);
    QStringDecoder utf8(QStringConverter::Utf8, QStringConverter::Flag::Stateless);
    QString text = utf8.decode(view);
    if (!utf8.hasError())
        return {std::move(text), TextEncoding::Utf8};
    return {DecodeWindows1252(bytes), TextEncoding::Windows1252};
}

unsigned char ToWindows1252(QChar c) {
    const char16_t code = c.unicode();
    if (code < 0x80 || (code >= 0xA0 && code <= 0xFF))
        return static_cast<unsigned char>(code);
    for (size_t i = 0; i < kHighControls.size(); ++i) {
        if (kHighControls[i] == code)
            return static_cast<unsigned char>(0x80 + i);
    }
    return '?';
}

QByteArray EncodeText(const QString& text, TextEncoding encoding) {
    if (encoding == TextEncoding::Utf8)
        return text.toUtf8();
    QByteArray bytes(text.size(), Qt::Uninitialized);
    for (qsizetype i = 0; i < text.size(); ++i)
        bytes[i] = static_cast<char>(ToWindows1252(text[i]));
    return bytes;
}

} // namespace sky
