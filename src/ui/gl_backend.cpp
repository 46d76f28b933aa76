#include "gl_backend.h"

#include <GL/gl.h>

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

} // namespace

void GlBackend::NewList(int list) {
    glNewList(GLuint(list), GL_COMPILE);
}
void GlBackend::EndList() {
    glEndList();
}
void GlBackend::DeleteList(int list) {
    glDeleteLists(GLuint(list), 1);
}
bool GlBackend::IsList(int list) const {
    return glIsList(GLuint(list)) == GL_TRUE;
}
void GlBackend::CallList(int list) {
    glCallList(GLuint(list));
}
void GlBackend::ListBase(int base) {
    glListBase(GLuint(base));
}
void GlBackend::CallListByte(unsigned char code) {
    glCallLists(1, GL_UNSIGNED_BYTE, &code);
}
void GlBackend::Begin(render::Primitive primitive) {
    glBegin(ToGl(primitive));
}
void GlBackend::End() {
    glEnd();
}
void GlBackend::Vertex(float x, float y, float z) {
    glVertex3f(x, y, z);
}
void GlBackend::Colour(float r, float g, float b, float a) {
    glColor4f(r, g, b, a);
}
void GlBackend::RasterPos(float x, float y, float z) {
    glRasterPos3f(x, y, z);
}
void GlBackend::BitmapMove(float dx, float dy) {
    glBitmap(0, 0, 0, 0, dx, dy, nullptr);
}
void GlBackend::LineWidth(float width) {
    glLineWidth(width);
}
void GlBackend::PointSize(float size) {
    glPointSize(size);
}
void GlBackend::Enable(render::Capability c) {
    glEnable(ToGl(c));
}
void GlBackend::Disable(render::Capability c) {
    glDisable(ToGl(c));
}
void GlBackend::BlendFunc(render::BlendFactor s, render::BlendFactor d) {
    glBlendFunc(ToGl(s), ToGl(d));
}
void GlBackend::StencilFunc(render::StencilTest t, int reference, unsigned mask) {
    glStencilFunc(ToGl(t), reference, mask);
}
void GlBackend::StencilOp(render::StencilAction f, render::StencilAction z, render::StencilAction p) {
    glStencilOp(ToGl(f), ToGl(z), ToGl(p));
}
void GlBackend::ColourMask(bool write) {
    const GLboolean flag = write ? GL_TRUE : GL_FALSE;
    glColorMask(flag, flag, flag, flag);
}
void GlBackend::ClearColour(float r, float g, float b, float a) {
    glClearColor(r, g, b, a);
}
// The stencil is cleared too, so a fill cut short by a lost frame cannot leave marks behind.
void GlBackend::Clear() {
    glClear(GL_COLOR_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
}
void GlBackend::Viewport(int x, int y, int w, int h) {
    glViewport(x, y, w, h);
}
void GlBackend::LoadIdentity() {
    glLoadIdentity();
}
void GlBackend::Ortho(double l, double r, double b, double t, double n, double f) {
    glOrtho(l, r, b, t, n, f);
}
void GlBackend::PushMatrix() {
    glPushMatrix();
}
void GlBackend::PopMatrix() {
    glPopMatrix();
}
void GlBackend::Translate(float x, float y, float z) {
    glTranslatef(x, y, z);
}
void GlBackend::Rotate(float a, float x, float y, float z) {
    glRotatef(a, x, y, z);
}
void GlBackend::Scale(float x, float y, float z) {
    glScalef(x, y, z);
}

} // namespace sky::ui
