#include "detailed_lines.h"

#include <cstddef>

#include <GL/gl.h>

#include <QOpenGLFunctions>

namespace sky::ui {

using render::LineDetail;

void DetailedLines::LineWidth(float width) {
    if (m_stage != Stage::Before)
        m_usable = false;
    m_lineWidth = width;
}

void DetailedLines::Tolerance(float pixels) {
    if (m_stage != Stage::Before)
        m_usable = false;
    m_tolerance = pixels;
}

void DetailedLines::Colour(const Rgba& colour) {
    if (m_stage == Stage::After)
        m_usable = false;
    m_colour = colour;
}

void DetailedLines::Begin(render::Primitive primitive) {
    if (m_stage != Stage::Before || primitive != render::Primitive::Lines)
        m_usable = false;
    m_stage = Stage::Inside;
}

void DetailedLines::Vertex(float x, float y, float z) {
    // Without a colour of its own the list would draw in its caller's: left to GL.
    if (m_stage != Stage::Inside || !m_colour) {
        m_usable = false;
        return;
    }
    if (!m_usable)
        return;
    const LineDetail::Vertex v{x, y, z, m_colour->R, m_colour->G, m_colour->B, m_colour->A};
    if (!m_pending) {
        m_pending = v;
        return;
    }
    m_lines.AddSegment(*m_pending, v);
    m_pending.reset();
}

void DetailedLines::End() {
    if (m_stage != Stage::Inside)
        m_usable = false;
    m_stage = Stage::After;
}

bool DetailedLines::Finish(QOpenGLFunctions& gl) {
    m_usable = m_usable && m_stage == Stage::After && m_lines.SegmentCount() >= kMinSegments;
    if (!m_usable)
        return false;
    m_lines.Finish();
    const auto& points = m_lines.Points();
    gl.glGenBuffers(1, &m_buffer);
    gl.glBindBuffer(GL_ARRAY_BUFFER, m_buffer);
    gl.glBufferData(GL_ARRAY_BUFFER, GLsizeiptr(points.size() * sizeof(LineDetail::Vertex)), points.data(),
                    GL_STATIC_DRAW);
    gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
    return true;
}

void DetailedLines::Draw(QOpenGLFunctions& gl, double pixelsPerUnit, double pixels, float deviceLineWidth) {
    const auto& segments = m_lines.Segments(pixelsPerUnit > 0 ? pixels / pixelsPerUnit : 0.0);
    if (m_lineWidth)
        glLineWidth(deviceLineWidth);
    gl.glBindBuffer(GL_ARRAY_BUFFER, m_buffer);
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_COLOR_ARRAY);
    constexpr GLsizei stride = sizeof(LineDetail::Vertex);
    glVertexPointer(3, GL_FLOAT, stride, reinterpret_cast<const void*>(offsetof(LineDetail::Vertex, X)));
    glColorPointer(4, GL_FLOAT, stride, reinterpret_cast<const void*>(offsetof(LineDetail::Vertex, R)));
    // A segment in the colour of its second vertex, as each was recorded.
    glShadeModel(GL_FLAT);
    glDrawElements(GL_LINES, GLsizei(segments.size()), GL_UNSIGNED_INT, segments.data());
    glShadeModel(GL_SMOOTH);
    glDisableClientState(GL_COLOR_ARRAY);
    glDisableClientState(GL_VERTEX_ARRAY);
    gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
    // What follows finds the colour the list left current, as after calling it.
    glColor4f(m_colour->R, m_colour->G, m_colour->B, m_colour->A);
}

void DetailedLines::Release(QOpenGLFunctions& gl) {
    if (m_buffer != 0)
        gl.glDeleteBuffers(1, &m_buffer);
    m_buffer = 0;
}

} // namespace sky::ui
