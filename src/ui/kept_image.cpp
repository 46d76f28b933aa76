#include "kept_image.h"

#include <QOpenGLExtraFunctions>

namespace sky::ui {

bool KeptImage::Begin(QOpenGLExtraFunctions& gl, const render::GlApi::KeptKey& key, int widthPx, int heightPx,
                      const Rgba& clear) {
    m_valid = false;
    const bool seen = m_seen == key;
    m_seen = key;
    if (widthPx <= 0 || heightPx <= 0 || !seen ||
        (widthPx == m_failedWidthPx && heightPx == m_failedHeightPx))
        return false;
    if (widthPx != m_widthPx || heightPx != m_heightPx) {
        Release(gl);
        gl.glGenFramebuffers(1, &m_frameBuffer);
        gl.glGenRenderbuffers(1, &m_colour);
        gl.glBindRenderbuffer(GL_RENDERBUFFER, m_colour);
        gl.glRenderbufferStorage(GL_RENDERBUFFER, GL_RGBA8, widthPx, heightPx);
        gl.glBindRenderbuffer(GL_RENDERBUFFER, 0);
        m_widthPx = widthPx;
        m_heightPx = heightPx;
    }
    gl.glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &m_drawBuffer);
    gl.glGetIntegerv(GL_READ_FRAMEBUFFER_BINDING, &m_readBuffer);
    gl.glBindFramebuffer(GL_FRAMEBUFFER, m_frameBuffer);
    gl.glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, m_colour);
    if (gl.glCheckFramebufferStatus(GL_FRAMEBUFFER) != GL_FRAMEBUFFER_COMPLETE) {
        gl.glBindFramebuffer(GL_DRAW_FRAMEBUFFER, GLuint(m_drawBuffer));
        gl.glBindFramebuffer(GL_READ_FRAMEBUFFER, GLuint(m_readBuffer));
        Release(gl);
        m_failedWidthPx = widthPx; // too large for this GL: not tried again at this size
        m_failedHeightPx = heightPx;
        return false;
    }
    gl.glClear(GL_COLOR_BUFFER_BIT);
    m_key = key;
    m_clear = clear;
    m_lists.clear();
    m_spoiled = false;
    m_keeping = true;
    return true;
}

void KeptImage::End(QOpenGLExtraFunctions& gl) {
    if (!m_keeping)
        return;
    m_keeping = false;
    m_valid = !m_spoiled;
    Copy(gl, m_frameBuffer, GLuint(m_drawBuffer));
}

bool KeptImage::Draw(QOpenGLExtraFunctions& gl, const render::GlApi::KeptKey& key, int widthPx, int heightPx,
                     const Rgba& clear) {
    if (!m_valid || key != m_key || widthPx != m_widthPx || heightPx != m_heightPx || !(clear == m_clear))
        return false;
    GLint drawBuffer = 0;
    gl.glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &drawBuffer);
    gl.glGetIntegerv(GL_READ_FRAMEBUFFER_BINDING, &m_readBuffer);
    Copy(gl, m_frameBuffer, GLuint(drawBuffer));
    return true;
}

void KeptImage::Copy(QOpenGLExtraFunctions& gl, unsigned from, unsigned to) {
    gl.glBindFramebuffer(GL_READ_FRAMEBUFFER, from);
    gl.glBindFramebuffer(GL_DRAW_FRAMEBUFFER, to);
    gl.glBlitFramebuffer(0, 0, m_widthPx, m_heightPx, 0, 0, m_widthPx, m_heightPx, GL_COLOR_BUFFER_BIT,
                         GL_NEAREST);
    gl.glBindFramebuffer(GL_READ_FRAMEBUFFER, GLuint(m_readBuffer));
}

void KeptImage::ListChanged(int list) {
    if (m_lists.count(list) != 0)
        m_valid = false;
}

void KeptImage::Release(QOpenGLExtraFunctions& gl) {
    if (m_frameBuffer != 0)
        gl.glDeleteFramebuffers(1, &m_frameBuffer);
    if (m_colour != 0)
        gl.glDeleteRenderbuffers(1, &m_colour);
    m_frameBuffer = m_colour = 0;
    m_widthPx = m_heightPx = 0;
    m_valid = m_keeping = false;
    m_lists.clear();
}

} // namespace sky::ui
