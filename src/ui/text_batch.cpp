#include "text_batch.h"

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
                               float(m_penY - box.Descent), &box, m_colour, m_outline});
    m_penX += box.Advance;
}

void TextBatch::Flush() {
    if (m_quads.empty() || !m_program)
        return;
    m_functions->glUseProgram(m_program->programId());
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
    m_functions->glUseProgram(0);
    m_quads.clear();
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
