#include "glyph_fonts.h"

#include <cmath>
#include <vector>

#include <GL/gl.h>

#include <QFont>
#include <QFontMetrics>
#include <QImage>
#include <QPainter>
#include <QRect>

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

// The character a code prints; control codes print nothing wide.
QChar CharacterOf(int code) {
    return code < 32 ? QChar(u' ') : DecodeText(QByteArray(1, char(code))).Text.at(0);
}

QImage RenderGlyph(QChar character, const QFont& font, const QFontMetrics& metrics) {
    const int advance = std::max(1, metrics.horizontalAdvance(character));
    QImage image(advance, metrics.ascent() + metrics.descent(), QImage::Format_RGB32);
    image.fill(Qt::black);
    QPainter painter(&image);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(0, metrics.ascent(), QString(character));
    return image;
}

bool IsSet(const QImage& image, int x, int row) {
    return qGray(image.pixel(x, row)) > 127;
}

// One glyph as a GL bitmap list: rows from the bottom up, each padded to whole bytes, leftmost pixel in
// the highest bit.
void RecordGlyphList(int list, const QImage& image, int descent) {
    const int width = image.width(), height = image.height();
    const int rowBytes = (width + 7) / 8;
    std::vector<GLubyte> bits(size_t(rowBytes * height), 0);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            if (IsSet(image, x, height - 1 - y))
                bits[size_t(y * rowBytes + x / 8)] |= GLubyte(0x80 >> (x % 8));
        }
    }
    glNewList(GLuint(list), GL_COMPILE);
    glBitmap(width, height, 0.0f, float(descent), float(width), 0.0f, bits.data());
    glEndList();
}

struct FontGlyphs {
    std::array<QImage, 255> Images;
    int Descent = 0;
};

FontGlyphs RenderFont(int base, const QFont& font) {
    const QFontMetrics metrics(font);
    FontGlyphs glyphs;
    glyphs.Descent = metrics.descent();
    for (int code = 0; code < render::lists::kGlyphCount; ++code) {
        glyphs.Images[size_t(code)] = RenderGlyph(CharacterOf(code), font, metrics);
        RecordGlyphList(base + code, glyphs.Images[size_t(code)], glyphs.Descent);
    }
    return glyphs;
}

// Packs both fonts row by row into one alpha texture, two pixels apart, and notes where each glyph went.
unsigned UploadAtlas(const FontGlyphs& small, const FontGlyphs& bold, GlyphAtlas& atlas) {
    constexpr int kWidth = 1024;
    struct Place {
        const QImage* Image;
        GlyphBox* Box;
        int Descent;
        QRect Ink; // in the image, rows down from the top
        int X = 0, Y = 0;
    };
    std::vector<Place> places;
    const auto ink = [](const QImage& image) {
        QRect box;
        for (int row = 0; row < image.height(); ++row)
            for (int col = 0; col < image.width(); ++col)
                if (IsSet(image, col, row))
                    box |= QRect(col, row, 1, 1);
        return box;
    };
    for (int code = 0; code < render::lists::kGlyphCount; ++code) {
        for (const auto& [font, boxes] : {std::pair{&small, &atlas.Small}, std::pair{&bold, &atlas.Bold}}) {
            const QImage& image = font->Images[size_t(code)];
            places.push_back({&image, &(*boxes)[size_t(code)], font->Descent, ink(image)});
        }
    }
    constexpr int kGap = 2;
    int x = kGap, y = kGap, rowHeight = 0;
    for (Place& p : places) {
        if (x + p.Ink.width() + kGap > kWidth) {
            x = kGap;
            y += rowHeight + kGap;
            rowHeight = 0;
        }
        p.X = x;
        p.Y = y;
        x += p.Ink.width() + kGap;
        rowHeight = std::max(rowHeight, p.Ink.height());
    }
    int height = 1;
    while (height < y + rowHeight + kGap)
        height *= 2;
    atlas.Width = kWidth;
    atlas.Height = height;
    // Two bytes a texel: the glyph grown by a texel each way (its outline's shape), then the glyph.
    std::vector<GLubyte> texels(size_t(2 * kWidth * height), 0);
    for (const Place& p : places) {
        const int w = p.Ink.width(), h = p.Ink.height();
        // Texture rows go up from the bottom, like the bitmaps.
        for (int row = 0; row < h; ++row) {
            for (int col = 0; col < w; ++col) {
                if (!IsSet(*p.Image, p.Ink.left() + col, p.Ink.bottom() - row))
                    continue;
                const size_t at = size_t((p.Y + row) * kWidth + p.X + col);
                texels[2 * at + 1] = 255;
                for (int dy = -1; dy <= 1; ++dy)
                    for (int dx = -1; dx <= 1; ++dx)
                        texels[2 * (at + size_t(dy * kWidth + dx))] = 255;
            }
        }
        const int imageBottom = p.Image->height() - 1;
        *p.Box = GlyphBox{p.Image->width(),
                          w,
                          h,
                          w > 0 ? p.Ink.left() : 0,
                          p.Descent - (imageBottom - p.Ink.bottom()),
                          float(p.X) / kWidth,
                          float(p.Y) / float(height),
                          float(p.X + w) / kWidth,
                          float(p.Y + h) / float(height),
                          p.X,
                          p.Y};
    }
    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_LUMINANCE8_ALPHA8, kWidth, height, 0, GL_LUMINANCE_ALPHA,
                 GL_UNSIGNED_BYTE, texels.data());
    atlas.Texels = std::make_shared<const std::vector<unsigned char>>(std::move(texels));
    return texture;
}

} // namespace

GlyphAtlas BuildGlyphFonts(double devicePixelRatio, unsigned previousTexture) {
    const double ratio = devicePixelRatio > 0.0 && devicePixelRatio < 8.0 ? devicePixelRatio : 1.0;
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    if (previousTexture != 0) {
        const GLuint old = previousTexture;
        glDeleteTextures(1, &old);
    }
    const FontGlyphs small = RenderFont(render::lists::kSmallFontBase,
                                        MakeFont("DejaVu Sans Mono", int(std::lround(10 * ratio)), false));
    const FontGlyphs bold = RenderFont(render::lists::kBoldFontBase,
                                       MakeFont("Liberation Sans", int(std::lround(12 * ratio)), true));
    GlyphAtlas atlas;
    atlas.DevicePixelRatio = ratio;
    atlas.Texture = UploadAtlas(small, bold, atlas);
    return atlas;
}

} // namespace sky::ui
