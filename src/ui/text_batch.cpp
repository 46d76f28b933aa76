#include "text_batch.h"

#include <algorithm>
#include <climits>
#include <cmath>

#include <GL/gl.h>

#include <QOpenGLFunctions>
#include <QOpenGLShaderProgram>

namespace sky::ui {
namespace {

// The raster position's point goes through the view's transform as any vertex does; the glyph's corner
// is then that pixel, rounded as a raster position is, plus its offset. A point outside the view volume
// moves the quad out of it, so the label is not drawn. The view is the model-view matrix and the viewport
// the map asked for; the projection only narrows that viewport to the drawable (see GlBackend::Viewport).
const char* const kVertexShader = R"(#version 120
uniform vec4 viewport;
uniform vec4 drawn;
varying vec2 texel;
varying vec4 outline;
void main() {
    vec4 clip = gl_ModelViewMatrix * gl_Vertex;
    if (clip.w <= 0.0 || any(greaterThan(abs(clip.xyz), vec3(clip.w)))) {
        gl_Position = vec4(2.0, 2.0, 2.0, 1.0);
    } else {
        vec2 ndc = clip.xy / clip.w;
        vec2 pixel = floor(viewport.xy + (ndc * 0.5 + 0.5) * viewport.zw + 0.5) + gl_MultiTexCoord1.xy;
        gl_Position = vec4((pixel - drawn.xy) / drawn.zw * 2.0 - 1.0, 0.0, 1.0);
    }
    gl_FrontColor = gl_Color;
    texel = gl_MultiTexCoord0.xy;
    outline = gl_MultiTexCoord2;
}
)";

// As a bitmap: the set pixels take the colour, the others are left alone. An outline's quad (an outline
// colour with an alpha above 0) takes its colour where the glyph grown by a pixel is set instead; the
// glyph itself is then drawn over it.
const char* const kFragmentShader = R"(#version 120
uniform sampler2D glyphs;
varying vec2 texel;
varying vec4 outline;
void main() {
    vec4 t = texture2D(glyphs, texel);
    if ((outline.a > 0.0 ? t.r : t.a) < 0.5)
        discard;
    gl_FragColor = outline.a > 0.0 ? outline : gl_Color;
}
)";

} // namespace

TextBatch::TextBatch() = default;
TextBatch::~TextBatch() = default;

void TextBatch::Release() {
    m_program.reset();
    if (m_atlas.Texture != 0) {
        const GLuint texture = m_atlas.Texture;
        glDeleteTextures(1, &texture);
    }
    m_atlas = GlyphAtlas();
    m_quads.clear();
    for (const auto& [list, textures] : m_textures)
        glDeleteTextures(GLsizei(textures.size()), textures.data());
    m_textures.clear();
    m_pending.clear();
    m_list = 0;
    m_functions = nullptr;
}

bool TextBatch::Initialise(QOpenGLFunctions& functions) {
    m_functions = &functions;
    auto program = std::make_unique<QOpenGLShaderProgram>();
    if (!program->addShaderFromSourceCode(QOpenGLShader::Vertex, kVertexShader) ||
        !program->addShaderFromSourceCode(QOpenGLShader::Fragment, kFragmentShader) || !program->link())
        return false;
    program->bind();
    program->setUniformValue("glyphs", 0);
    m_viewportLocation = program->uniformLocation("viewport");
    m_drawnLocation = program->uniformLocation("drawn");
    program->release();
    m_program = std::move(program);
    return true;
}

void TextBatch::RasterPos(float x, float y, float z, const std::optional<Rgba>& colour) {
    m_anchor[0] = x;
    m_anchor[1] = y;
    m_anchor[2] = z;
    m_colour = colour;
    m_penX = m_penY = 0;
}

void TextBatch::Move(float dx, float dy) {
    m_penX += std::round(dx * m_atlas.DevicePixelRatio);
    m_penY += std::round(dy * m_atlas.DevicePixelRatio);
}

void TextBatch::Glyph(bool bold, unsigned char code) {
    const GlyphBox& box = m_atlas.Glyph(bold, code);
    if (box.Width > 0 && box.Height > 0)
        m_quads.push_back(Quad{m_anchor[0], m_anchor[1], m_anchor[2], float(m_penX + box.Left),
                               float(m_penY - box.Descent), &box, m_colour, m_outline, m_penY});
    m_penX += box.Advance;
}

void TextBatch::Flush() {
    if (m_quads.empty() || !m_program)
        return;
    m_functions->glUseProgram(m_program->programId());
    if (m_list != 0 && m_atlas.Texels)
        RecordLines();
    else
        DrawGlyphQuads();
    m_functions->glUseProgram(0);
    m_quads.clear();
}

void TextBatch::DrawGlyphQuads() {
    const auto corner = [](const Quad& q, float x, float y, float u, float v) {
        glMultiTexCoord2f(GL_TEXTURE0, u, v);
        glMultiTexCoord2f(GL_TEXTURE1, x, y);
        glVertex3f(q.X, q.Y, q.Z);
    };
    // Every outline first, a texel and a pixel larger each way than its glyph, then every glyph over
    // them: no outline covers any glyph, of its own label or another.
    const float du = 1.0f / float(m_atlas.Width), dv = 1.0f / float(m_atlas.Height);
    glBegin(GL_QUADS);
    for (const Quad& q : m_quads) {
        if (!q.Outline)
            continue;
        const GlyphBox& b = *q.Box;
        glMultiTexCoord4f(GL_TEXTURE2, q.Outline->R, q.Outline->G, q.Outline->B, q.Outline->A);
        const float left = q.Left - 1, bottom = q.Bottom - 1;
        const float right = q.Left + float(b.Width) + 1, top = q.Bottom + float(b.Height) + 1;
        corner(q, left, bottom, b.U0 - du, b.V0 - dv);
        corner(q, right, bottom, b.U1 + du, b.V0 - dv);
        corner(q, right, top, b.U1 + du, b.V1 + dv);
        corner(q, left, top, b.U0 - du, b.V1 + dv);
    }
    glMultiTexCoord4f(GL_TEXTURE2, 0, 0, 0, 0);
    std::optional<Rgba> current;
    for (const Quad& q : m_quads) {
        if (q.Colour && q.Colour != current) {
            glColor4f(q.Colour->R, q.Colour->G, q.Colour->B, q.Colour->A);
            current = q.Colour;
        }
        const GlyphBox& b = *q.Box;
        const float right = q.Left + float(b.Width), top = q.Bottom + float(b.Height);
        corner(q, q.Left, q.Bottom, b.U0, b.V0);
        corner(q, right, q.Bottom, b.U1, b.V0);
        corner(q, right, top, b.U1, b.V1);
        corner(q, q.Left, top, b.U0, b.V1);
    }
    glEnd();
}

void TextBatch::RecordLines() {
    // A line of text: its glyphs (quads First to End), its box in device pixels from the raster position
    // with a pixel round it for the outline, and where that box went in which sheet.
    struct Line {
        size_t First, End;
        int Left, Bottom, Width, Height;
        size_t Sheet;
        int X, Y;
    };
    const auto sameLine = [](const Quad& a, const Quad& b) {
        return a.X == b.X && a.Y == b.Y && a.Z == b.Z && a.Line == b.Line && a.Colour == b.Colour &&
               a.Outline == b.Outline;
    };
    constexpr int kSheetWidth = 1024, kSheetHeight = 2048;
    std::vector<Line> lines;
    std::vector<Sheet> sheets;
    int x = 0, y = 0, rowHeight = 0;
    for (size_t first = 0; first < m_quads.size();) {
        size_t end = first + 1;
        while (end < m_quads.size() && sameLine(m_quads[first], m_quads[end]))
            ++end;
        int left = INT_MAX, bottom = INT_MAX, right = INT_MIN, top = INT_MIN;
        for (size_t i = first; i < end; ++i) {
            const Quad& q = m_quads[i];
            left = std::min(left, int(q.Left) - 1);
            bottom = std::min(bottom, int(q.Bottom) - 1);
            right = std::max(right, int(q.Left) + q.Box->Width + 1);
            top = std::max(top, int(q.Bottom) + q.Box->Height + 1);
        }
        Line line{first, end, left, bottom, right - left, top - bottom, 0, 0, 0};
        if (x + line.Width > kSheetWidth) {
            x = 0;
            y += rowHeight;
            rowHeight = 0;
        }
        if (sheets.empty() || y + line.Height > kSheetHeight) {
            sheets.emplace_back();
            x = y = rowHeight = 0;
        }
        Sheet& sheet = sheets.back();
        line.Sheet = sheets.size() - 1;
        line.X = x;
        line.Y = y;
        x += line.Width;
        rowHeight = std::max(rowHeight, line.Height);
        sheet.Width = std::max(sheet.Width, x);
        sheet.Height = std::max(sheet.Height, y + line.Height);
        lines.push_back(line);
        first = end;
    }
    // Each glyph's texels, and the outline's a texel round them, laid into its line's box.
    const std::vector<unsigned char>& atlas = *m_atlas.Texels;
    for (Sheet& sheet : sheets)
        sheet.Texels.assign(size_t(2 * sheet.Width * sheet.Height), 0);
    for (const Line& line : lines) {
        Sheet& sheet = sheets[line.Sheet];
        for (size_t i = line.First; i < line.End; ++i) {
            const Quad& q = m_quads[i];
            const GlyphBox& b = *q.Box;
            const int toX = line.X + int(q.Left) - 1 - line.Left,
                      toY = line.Y + int(q.Bottom) - 1 - line.Bottom;
            for (int row = 0; row < b.Height + 2; ++row) {
                const size_t from = size_t(2 * ((b.TexelY - 1 + row) * m_atlas.Width + b.TexelX - 1));
                const size_t to = size_t(2 * ((toY + row) * sheet.Width + toX));
                for (int k = 0; k < 2 * (b.Width + 2); ++k)
                    sheet.Texels[to + size_t(k)] =
                        std::max(sheet.Texels[to + size_t(k)], atlas[from + size_t(k)]);
            }
        }
    }
    for (Sheet& sheet : sheets) {
        GLuint texture = 0;
        glGenTextures(1, &texture); // made at once; its texels go in when the list is closed
        sheet.Texture = texture;
        m_textures[m_list].push_back(texture);
    }
    const auto corner = [](const Quad& q, const Sheet& sheet, int dx, int dy, int u, int v) {
        glMultiTexCoord2f(GL_TEXTURE0, float(u) / float(sheet.Width), float(v) / float(sheet.Height));
        glMultiTexCoord2f(GL_TEXTURE1, float(dx), float(dy));
        glVertex3f(q.X, q.Y, q.Z);
    };
    // Every outline first, then every line of glyphs over them, as the glyphs' own quads are drawn.
    std::optional<Rgba> current;
    for (const bool outlines : {true, false}) {
        for (size_t s = 0; s < sheets.size(); ++s) {
            glBindTexture(GL_TEXTURE_2D, sheets[s].Texture);
            glBegin(GL_QUADS);
            glMultiTexCoord4f(GL_TEXTURE2, 0, 0, 0, 0);
            for (const Line& line : lines) {
                const Quad& q = m_quads[line.First];
                if (line.Sheet != s || (outlines && !q.Outline))
                    continue;
                if (outlines)
                    glMultiTexCoord4f(GL_TEXTURE2, q.Outline->R, q.Outline->G, q.Outline->B, q.Outline->A);
                else if (q.Colour && q.Colour != current) {
                    glColor4f(q.Colour->R, q.Colour->G, q.Colour->B, q.Colour->A);
                    current = q.Colour;
                }
                const int right = line.Left + line.Width, top = line.Bottom + line.Height;
                corner(q, sheets[s], line.Left, line.Bottom, line.X, line.Y);
                corner(q, sheets[s], right, line.Bottom, line.X + line.Width, line.Y);
                corner(q, sheets[s], right, top, line.X + line.Width, line.Y + line.Height);
                corner(q, sheets[s], line.Left, top, line.X, line.Y + line.Height);
            }
            glEnd();
        }
    }
    glBindTexture(GL_TEXTURE_2D, m_atlas.Texture);
    for (Sheet& sheet : sheets)
        m_pending.push_back(std::move(sheet));
}

void TextBatch::RecordList(int list) {
    if (list != 0)
        ForgetList(list);
    m_list = list;
    if (list != 0 || m_pending.empty())
        return;
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    for (const Sheet& sheet : m_pending) {
        glBindTexture(GL_TEXTURE_2D, sheet.Texture);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
        glTexImage2D(GL_TEXTURE_2D, 0, GL_LUMINANCE8_ALPHA8, sheet.Width, sheet.Height, 0, GL_LUMINANCE_ALPHA,
                     GL_UNSIGNED_BYTE, sheet.Texels.data());
    }
    m_pending.clear();
    glBindTexture(GL_TEXTURE_2D, m_atlas.Texture);
}

void TextBatch::ForgetList(int list) {
    const auto found = m_textures.find(list);
    if (found == m_textures.end())
        return;
    glDeleteTextures(GLsizei(found->second.size()), found->second.data());
    m_textures.erase(found);
}

void TextBatch::SetOutline(const std::optional<Rgba>& colour) {
    m_outline = colour && colour->A > 0.0f ? colour : std::nullopt;
}

void TextBatch::Viewport(const PixelRect& asked, const PixelRect& drawn) {
    if (!m_program)
        return;
    m_functions->glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D, m_atlas.Texture);
    m_functions->glUseProgram(m_program->programId());
    m_functions->glUniform4f(m_viewportLocation, float(asked.X), float(asked.Y),
                             float(std::max(asked.Width, 1)), float(std::max(asked.Height, 1)));
    m_functions->glUniform4f(m_drawnLocation, float(drawn.X), float(drawn.Y), float(std::max(drawn.Width, 1)),
                             float(std::max(drawn.Height, 1)));
    m_functions->glUseProgram(0);
}

} // namespace sky::ui
