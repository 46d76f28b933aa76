#include "gl_backend.h"

#include <algorithm>
#include <cmath>

#include <GL/gl.h>

#include <QOpenGLContext>
#include <QOpenGLExtraFunctions>
#include <QOpenGLFunctions>

#include "render/list_numbers.h"

namespace sky::ui {
namespace {

GLenum ToGl(render::Primitive p) {
    switch (p) {
    case render::Primitive::Points:
        return GL_POINTS;
    case render::Primitive::Lines:
        return GL_LINES;
    case render::Primitive::LineStrip:
        return GL_LINE_STRIP;
    case render::Primitive::LineLoop:
        return GL_LINE_LOOP;
    case render::Primitive::Triangles:
        return GL_TRIANGLES;
    case render::Primitive::TriangleFan:
        return GL_TRIANGLE_FAN;
    case render::Primitive::Quads:
        return GL_QUADS;
    case render::Primitive::Polygon:
        return GL_POLYGON;
    }
    return GL_POINTS;
}

GLenum ToGl(render::Capability c) {
    switch (c) {
    case render::Capability::Blend:
        return GL_BLEND;
    case render::Capability::LineSmooth:
        return GL_LINE_SMOOTH;
    case render::Capability::PointSmooth:
        return GL_POINT_SMOOTH;
    case render::Capability::StencilTest:
        return GL_STENCIL_TEST;
    case render::Capability::LineStipple:
        return GL_LINE_STIPPLE;
    case render::Capability::Texture:
        return GL_TEXTURE_2D;
    case render::Capability::AlphaTest:
        return GL_ALPHA_TEST;
    }
    return GL_BLEND;
}

GLenum ToGl(render::BlendFactor f) {
    switch (f) {
    case render::BlendFactor::Zero:
        return GL_ZERO;
    case render::BlendFactor::One:
        return GL_ONE;
    case render::BlendFactor::SrcAlpha:
        return GL_SRC_ALPHA;
    case render::BlendFactor::OneMinusSrcAlpha:
        return GL_ONE_MINUS_SRC_ALPHA;
    }
    return GL_ONE;
}

GLenum ToGl(render::StencilTest t) {
    switch (t) {
    case render::StencilTest::Always:
        return GL_ALWAYS;
    case render::StencilTest::Equal:
        return GL_EQUAL;
    case render::StencilTest::NotEqual:
        return GL_NOTEQUAL;
    }
    return GL_ALWAYS;
}

GLenum ToGl(render::StencilAction a) {
    switch (a) {
    case render::StencilAction::Keep:
        return GL_KEEP;
    case render::StencilAction::Zero:
        return GL_ZERO;
    case render::StencilAction::Invert:
        return GL_INVERT;
    }
    return GL_KEEP;
}

// The part of a viewport inside the drawable; the viewport itself when the drawable is unknown or they
// do not meet.
PixelRect Narrowed(const PixelRect& asked, const PixelRect& drawable) {
    if (drawable.Width <= 0 || drawable.Height <= 0)
        return asked;
    const int left = std::max(asked.X, drawable.X), bottom = std::max(asked.Y, drawable.Y);
    const int right = std::min(asked.X + asked.Width, drawable.X + drawable.Width);
    const int top = std::min(asked.Y + asked.Height, drawable.Y + drawable.Height);
    if (right <= left || top <= bottom)
        return asked;
    return {left, bottom, right - left, top - bottom};
}

} // namespace

GlBackend::GlBackend() : m_fullDetail(qEnvironmentVariableIntValue("SKYLANTRA_FULL_DETAIL") != 0) {}
GlBackend::~GlBackend() = default;

void GlBackend::Initialise(double devicePixelRatio) {
    m_functions = std::make_unique<QOpenGLFunctions>();
    m_functions->initializeOpenGLFunctions();
    m_textReady = m_text.Initialise(*m_functions);
    const QOpenGLContext* context = QOpenGLContext::currentContext();
    if (context &&
        (context->format().majorVersion() >= 3 || context->hasExtension("GL_ARB_framebuffer_object"))) {
        m_extra = std::make_unique<QOpenGLExtraFunctions>();
        m_extra->initializeOpenGLFunctions();
    }
    SetDevicePixelRatio(devicePixelRatio);
}

void GlBackend::SetDevicePixelRatio(double devicePixelRatio) {
    m_kept.Forget();
    m_ratio = devicePixelRatio > 0.0 ? devicePixelRatio : 1.0;
    m_text.SetAtlas(BuildGlyphFonts(m_ratio, m_text.Atlas().Texture));
}

void GlBackend::Release() {
    if (!m_functions)
        return;
    for (auto& [list, lines] : m_detailed)
        lines->Release(*m_functions);
    m_detailed.clear();
    m_lines.reset();
    for (const auto& [number, texture] : m_textures)
        glDeleteTextures(1, &texture);
    m_textures.clear();
    m_pendingTextures.clear();
    m_pieces.clear(); // they go with the context, as the lists do
    m_usedPieces.clear();
    m_text.Release();
    m_textReady = false;
    if (m_extra)
        m_kept.Release(*m_extra);
    m_extra.reset();
    m_recording = false;
    m_functions.reset();
}

int GlBackend::GlyphAdvance(bool bold, unsigned char code) const {
    const GlyphBox& box = m_text.Atlas().Glyph(bold, code);
    return int(std::ceil(box.Advance / m_text.Atlas().DevicePixelRatio - 0.01));
}

void GlBackend::FlushText() {
    if (!m_text.Empty()) {
        m_text.Flush();
        // The batch set its own colours; what the list chose last applies again.
        if (m_listColour)
            glColor4f(m_listColour->R, m_listColour->G, m_listColour->B, m_listColour->A);
    }
}

void GlBackend::NewList(int list) {
    FlushText();
    m_kept.ListChanged(list);
    m_recording = true;
    m_listColour.reset();
    m_text.SetOutline(std::nullopt);
    ForgetPieces(list);
    m_text.RecordList(list);
    glNewList(GLuint(list), GL_COMPILE);
    ForgetDetail(list);
    m_recordingList = list;
    if (m_functions && !m_fullDetail)
        m_lines = std::make_unique<DetailedLines>();
}
void GlBackend::EndList() {
    FlushText();
    glEndList();
    m_text.RecordList(0);
    m_recording = false;
    m_text.SetOutline(std::nullopt);
    for (const auto& [number, pending] : m_pendingTextures)
        UploadTexture(m_textures[number], pending.first, pending.second.data());
    m_pendingTextures.clear();
    m_listColour.reset();
    if (m_lines && m_lines->Finish(*m_functions))
        m_detailed[m_recordingList] = std::move(m_lines);
    m_lines.reset();
}
void GlBackend::DeleteList(int list) {
    m_kept.ListChanged(list);
    glDeleteLists(GLuint(list), 1);
    m_text.ForgetList(list);
    ForgetDetail(list);
    ForgetPieces(list);
}
void GlBackend::ForgetPieces(int list) {
    const auto pieces = m_pieces.find(list);
    if (pieces == m_pieces.end())
        return;
    for (const Piece& piece : pieces->second) {
        glDeleteLists(piece.Next, 1);
        m_usedPieces.erase(piece.Next);
    }
    m_pieces.erase(pieces);
}
void GlBackend::ForgetDetail(int list) {
    const auto detailed = m_detailed.find(list);
    if (detailed != m_detailed.end()) {
        detailed->second->Release(*m_functions);
        m_detailed.erase(detailed);
    }
}
bool GlBackend::IsList(int list) const {
    // A layer that draws a list only once it exists (the land's tiles) is stale when it comes to be.
    if (m_kept.Keeping())
        m_kept.Called(list);
    return glIsList(GLuint(list)) == GL_TRUE;
}
void GlBackend::CallList(int list) {
    FlushText();
    NotPlainLines();
    if (m_kept.Keeping()) {
        m_kept.Called(list);
        if (m_pieces.count(list) != 0)
            m_kept.Spoil();
    }
    if (const auto pieces = m_pieces.find(list); pieces != m_pieces.end()) {
        glCallList(GLuint(list));
        for (const Piece& piece : pieces->second) {
            DrawArrayNow(piece.Array, piece.Primitive);
            glCallList(piece.Next);
        }
        return;
    }
    const auto detailed = m_recording ? m_detailed.end() : m_detailed.find(list);
    if (detailed == m_detailed.end()) {
        glCallList(GLuint(list));
        return;
    }
    // Device pixels to one unit of the vertices: the larger scale of the view's x and y rows, over
    // the viewport the map asked for.
    GLfloat m[16];
    glGetFloatv(GL_MODELVIEW_MATRIX, m);
    const double xScale = std::sqrt(double(m[0]) * m[0] + double(m[4]) * m[4] + double(m[8]) * m[8]);
    const double yScale = std::sqrt(double(m[1]) * m[1] + double(m[5]) * m[5] + double(m[9]) * m[9]);
    const double pixelsPerUnit = std::max(xScale * m_asked.Width, yScale * m_asked.Height) / 2.0;
    DetailedLines& lines = *detailed->second;
    lines.Draw(*m_functions, pixelsPerUnit, Device(lines.ToleranceSet().value_or(0.5f)),
               Device(lines.LineWidthSet().value_or(1.0f)));
}
void GlBackend::ListBase(int base) {
    NotPlainLines();
    m_listBase = base;
    if (!m_textReady)
        glListBase(GLuint(base));
}
void GlBackend::CallListByte(unsigned char code) {
    NotPlainLines();
    const bool small = m_listBase == render::lists::kSmallFontBase;
    if (!m_textReady || (!small && m_listBase != render::lists::kBoldFontBase)) {
        FlushText();
        glListBase(GLuint(m_listBase));
        glCallLists(1, GL_UNSIGNED_BYTE, &code);
        return;
    }
    m_text.Glyph(!small, code);
    if (!m_recording)
        FlushText();
}
void GlBackend::Begin(render::Primitive primitive) {
    FlushText();
    if (m_lines)
        m_lines->Begin(primitive);
    glBegin(ToGl(primitive));
}
void GlBackend::End() {
    if (m_lines)
        m_lines->End();
    glEnd();
}
void GlBackend::Vertex(float x, float y, float z) {
    if (m_lines)
        m_lines->Vertex(x, y, z);
    glVertex3f(x, y, z);
}
void GlBackend::Colour(float r, float g, float b, float a) {
    if (m_recording)
        m_listColour = Rgba{r, g, b, a};
    if (m_lines)
        m_lines->Colour(Rgba{r, g, b, a});
    glColor4f(r, g, b, a);
}
void GlBackend::RasterPos(float x, float y, float z) {
    NotPlainLines();
    if (m_textReady) {
        m_text.RasterPos(x, y, z, m_listColour);
        return;
    }
    glRasterPos3f(x, y, z);
}
void GlBackend::BitmapMove(float dx, float dy) {
    NotPlainLines();
    if (m_textReady) {
        m_text.Move(dx, dy);
        return;
    }
    // An empty bitmap moves the raster position only when called at once; recorded in a list it needs
    // a pixel of its own (left unset).
    static const GLubyte kBlank = 0;
    glBitmap(1, 1, 0.0f, 0.0f, Device(dx), Device(dy), &kBlank);
}
void GlBackend::TextOutline(float r, float g, float b, float a) {
    NotPlainLines();
    m_text.SetOutline(Rgba{r, g, b, a});
}
void GlBackend::LineTolerance(float pixels) {
    if (m_lines)
        m_lines->Tolerance(pixels);
}
void GlBackend::LineWidth(float width) {
    FlushText();
    if (m_lines)
        m_lines->LineWidth(width);
    glLineWidth(Device(width));
}
void GlBackend::PointSize(float size) {
    FlushText();
    NotPlainLines();
    glPointSize(Device(size));
}
void GlBackend::Enable(render::Capability c) {
    FlushText();
    NotPlainLines();
    if (c == render::Capability::Texture)
        OnSymbolUnit([] { glEnable(GL_TEXTURE_2D); });
    else
        glEnable(ToGl(c));
}
void GlBackend::Disable(render::Capability c) {
    FlushText();
    NotPlainLines();
    if (c == render::Capability::Texture)
        OnSymbolUnit([] { glDisable(GL_TEXTURE_2D); });
    else
        glDisable(ToGl(c));
}
void GlBackend::DefineAlphaTexture(int number, int sizeTexels, const unsigned char* alpha) {
    if (!m_functions || sizeTexels <= 0 || sizeTexels > 4096 || !alpha)
        return;
    GLuint& texture = m_textures[number];
    if (texture == 0)
        glGenTextures(1, &texture); // made at once, even while a list is recorded
    // Image data in a list would be compiled into it and sent again on every call: made after it.
    if (m_recording) {
        m_pendingTextures[number] = {sizeTexels,
                                     std::vector<unsigned char>(alpha, alpha + sizeTexels * sizeTexels)};
        return;
    }
    UploadTexture(texture, sizeTexels, alpha);
}
void GlBackend::UploadTexture(unsigned texture, int sizeTexels, const unsigned char* alpha) {
    OnSymbolUnit([&] {
        glBindTexture(GL_TEXTURE_2D, texture);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
        glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
        glTexImage2D(GL_TEXTURE_2D, 0, GL_ALPHA8, sizeTexels, sizeTexels, 0, GL_ALPHA, GL_UNSIGNED_BYTE,
                     alpha);
        glBindTexture(GL_TEXTURE_2D, 0);
    });
}
void GlBackend::BindTexture(int number) {
    FlushText();
    NotPlainLines();
    const auto found = m_textures.find(number);
    const GLuint texture = found == m_textures.end() ? 0 : found->second;
    OnSymbolUnit([&] { glBindTexture(GL_TEXTURE_2D, texture); });
}
void GlBackend::TexCoord(float s, float t) {
    NotPlainLines();
    glMultiTexCoord2f(GL_TEXTURE1, s, t);
}
void GlBackend::AlphaFunc(float reference) {
    FlushText();
    NotPlainLines();
    glAlphaFunc(GL_GREATER, reference);
}
void GlBackend::SetVertexArray(int array, const float* positions, const float* texCoords, int count) {
    VertexArray& a = m_arrays[array];
    count = positions ? std::max(count, 0) : 0;
    a.Positions.assign(positions, positions + 3 * size_t(count));
    if (texCoords)
        a.TexCoords.assign(texCoords, texCoords + 2 * size_t(count));
    else
        a.TexCoords.clear();
    a.Count = count;
}
void GlBackend::DrawVertexArray(int array, render::Primitive primitive) {
    FlushText();
    NotPlainLines();
    if (!m_recording) {
        DrawArrayNow(array, ToGl(primitive));
        return;
    }
    // Arrays drawn in a list would be copied into it: the list ends here and goes on in a new one.
    GLuint next = render::lists::kGlLists;
    while (m_usedPieces.count(next) != 0)
        ++next;
    m_usedPieces.insert(next);
    glEndList();
    m_pieces[m_recordingList].push_back({array, ToGl(primitive), next});
    glNewList(next, GL_COMPILE);
}
void GlBackend::DrawArrayNow(int array, unsigned primitive) {
    const auto found = m_arrays.find(array);
    if (found == m_arrays.end() || found->second.Count == 0)
        return;
    const VertexArray& a = found->second;
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(3, GL_FLOAT, 0, a.Positions.data());
    const bool textured = !a.TexCoords.empty();
    if (textured) {
        glClientActiveTexture(GL_TEXTURE1);
        glEnableClientState(GL_TEXTURE_COORD_ARRAY);
        glTexCoordPointer(2, GL_FLOAT, 0, a.TexCoords.data());
    }
    glDrawArrays(primitive, 0, a.Count);
    if (textured) {
        glDisableClientState(GL_TEXTURE_COORD_ARRAY);
        glClientActiveTexture(GL_TEXTURE0);
    }
    glDisableClientState(GL_VERTEX_ARRAY);
}
template <typename Call> void GlBackend::OnSymbolUnit(Call call) {
    if (!m_functions)
        return;
    m_functions->glActiveTexture(GL_TEXTURE1);
    call();
    m_functions->glActiveTexture(GL_TEXTURE0);
}
void GlBackend::BlendFunc(render::BlendFactor s, render::BlendFactor d) {
    FlushText();
    NotPlainLines();
    glBlendFunc(ToGl(s), ToGl(d));
}
void GlBackend::StencilFunc(render::StencilTest t, int reference, unsigned mask) {
    FlushText();
    NotPlainLines();
    glStencilFunc(ToGl(t), reference, mask);
}
void GlBackend::StencilOp(render::StencilAction f, render::StencilAction z, render::StencilAction p) {
    FlushText();
    NotPlainLines();
    glStencilOp(ToGl(f), ToGl(z), ToGl(p));
}
void GlBackend::ColourMask(bool write) {
    FlushText();
    NotPlainLines();
    const GLboolean flag = write ? GL_TRUE : GL_FALSE;
    glColorMask(flag, flag, flag, flag);
}
void GlBackend::ClearColour(float r, float g, float b, float a) {
    NotPlainLines();
    glClearColor(r, g, b, a);
    m_clearColour = Rgba{r, g, b, a};
}
void GlBackend::Clear() {
    FlushText();
    NotPlainLines();
    glClear(GL_COLOR_BUFFER_BIT);
}
void GlBackend::Viewport(int x, int y, int w, int h) {
    FlushText();
    const auto device = [this](int v) { return int(std::lround(v * m_ratio)); };
    NotPlainLines();
    const PixelRect asked{device(x), device(y), device(w), device(h)};
    m_asked = asked;
    const PixelRect drawn = Narrowed(asked, m_drawable);
    glViewport(drawn.X, drawn.Y, drawn.Width, drawn.Height);
    // The projection takes the asked viewport's coordinates to the drawn one's: x' = a x + b per axis.
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    if (drawn != asked) {
        const auto offset = [](int askedStart, int askedSize, int drawnStart, int drawnSize) {
            return double(2 * (askedStart - drawnStart) + askedSize - drawnSize) / drawnSize;
        };
        glTranslated(offset(asked.X, asked.Width, drawn.X, drawn.Width),
                     offset(asked.Y, asked.Height, drawn.Y, drawn.Height), 0.0);
        glScaled(double(asked.Width) / drawn.Width, double(asked.Height) / drawn.Height, 1.0);
    }
    glMatrixMode(GL_MODELVIEW);
    m_text.Viewport(asked, drawn);
}
void GlBackend::LoadIdentity() {
    FlushText();
    NotPlainLines();
    glLoadIdentity();
}
void GlBackend::Ortho(double l, double r, double b, double t, double n, double f) {
    FlushText();
    NotPlainLines();
    glOrtho(l, r, b, t, n, f);
}
void GlBackend::PushMatrix() {
    FlushText();
    NotPlainLines();
    glPushMatrix();
}
void GlBackend::PopMatrix() {
    FlushText();
    NotPlainLines();
    glPopMatrix();
}
void GlBackend::Translate(float x, float y, float z) {
    FlushText();
    NotPlainLines();
    glTranslatef(x, y, z);
}
void GlBackend::Rotate(float a, float x, float y, float z) {
    FlushText();
    NotPlainLines();
    glRotatef(a, x, y, z);
}
void GlBackend::Scale(float x, float y, float z) {
    FlushText();
    NotPlainLines();
    glScalef(x, y, z);
}

bool GlBackend::DrawKept(const KeptKey& key) {
    FlushText();
    NotPlainLines();
    return m_extra && !m_recording &&
           m_kept.Draw(*m_extra, key, m_drawable.Width, m_drawable.Height, m_clearColour);
}
void GlBackend::BeginKept(const KeptKey& key) {
    FlushText();
    NotPlainLines();
    glPushAttrib(GL_ALL_ATTRIB_BITS);
    if (m_extra && !m_recording)
        m_kept.Begin(*m_extra, key, m_drawable.Width, m_drawable.Height, m_clearColour);
}
void GlBackend::EndKept() {
    FlushText();
    NotPlainLines();
    if (m_extra)
        m_kept.End(*m_extra);
    glPopAttrib();
}

} // namespace sky::ui
