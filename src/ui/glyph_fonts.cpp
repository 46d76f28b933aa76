#include "glyph_fonts.h"

#include <vector>

#include <GL/gl.h>

#include <QFont>
#include <QFontMetrics>
#include <QImage>
#include <QPainter>

#include "common/text_codec.h"
#include "render/list_numbers.h"

namespace sky::ui {
namespace {

QFont MakeFont(const char* family, int pixelSize, bool bold) {
    QFont font(QString::fromLatin1(family));
    font.setPixelSize(pixelSize);
    font.setBold(bold);
    font.setStyleStrategy(QFont::NoAntialias);
    font.setHintingPreference(QFont::PreferFullHinting);
    return font;
}

// One glyph as a GL bitmap: rows from the bottom up, each padded to whole bytes, leftmost pixel in the
// highest bit.
void RecordGlyph(int list, QChar character, const QFont& font, const QFontMetrics& metrics) {
    const int advance = std::max(1, metrics.horizontalAdvance(character));
    const int height = metrics.ascent() + metrics.descent();
    QImage image(advance, height, QImage::Format_RGB32);
    image.fill(Qt::black);
    {
        QPainter painter(&image);
        painter.setFont(font);
        painter.setPen(Qt::white);
        painter.drawText(0, metrics.ascent(), QString(character));
    }
    const int rowBytes = (advance + 7) / 8;
    std::vector<GLubyte> bits(size_t(rowBytes * height), 0);
    for (int y = 0; y < height; ++y) {
        const QRgb* row = reinterpret_cast<const QRgb*>(image.constScanLine(height - 1 - y));
        for (int x = 0; x < advance; ++x) {
            if (qGray(row[x]) > 127)
                bits[size_t(y * rowBytes + x / 8)] |= GLubyte(0x80 >> (x % 8));
        }
    }
    glNewList(GLuint(list), GL_COMPILE);
    glBitmap(advance, height, 0.0f, float(metrics.descent()), float(advance), 0.0f, bits.data());
    glEndList();
}

void RecordFont(int base, const QFont& font) {
    const QFontMetrics metrics(font);
    for (int code = 0; code < render::lists::kGlyphCount; ++code) {
        const QString decoded = DecodeText(QByteArray(1, char(code))).Text;
        // Control codes print nothing wide; they still get a list so every code calls something.
        const QChar character = code < 32 ? QChar(u' ') : decoded.at(0);
        RecordGlyph(base + code, character, font, metrics);
    }
}

} // namespace

void BuildGlyphFonts() {
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    RecordFont(render::lists::kSmallFontBase, MakeFont("DejaVu Sans Mono", 10, false));
    RecordFont(render::lists::kBoldFontBase, MakeFont("Liberation Sans", 12, true));
}

} // namespace sky::ui
