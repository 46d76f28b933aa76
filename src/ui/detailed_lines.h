#pragma once

#include <optional>

#include "render/gl_api.h"
#include "render/line_detail.h"
#include "text_batch.h"

class QOpenGLFunctions;

namespace sky::ui {

// A display list of many plain line segments (the coastlines, the borders), drawn with no more of
// them than the view can show. The list is recorded as GL records it and, beside it, into this; a list
// that turns out to hold anything but a line width, a tolerance, colours and one block of separate line
// segments is left to GL. Drawn, the segments go from a vertex buffer through LineDetail at the list's
// tolerance (half a pixel unless it says otherwise): lines stay within it of where the full list puts them,
// and a zoomed-out frame spares Mesa's software rasteriser most of the set-up of segments shorter than
// a pixel.
class DetailedLines {
public:
    // Fewer segments than this are drawn from the GL list as recorded.
    static constexpr std::size_t kMinSegments = 4096;

    // What the list being recorded does, call by call.
    void LineWidth(float width);
    void Tolerance(float pixels);
    void Colour(const Rgba& colour);
    void Begin(render::Primitive primitive);
    void Vertex(float x, float y, float z);
    void End();
    void Refuse() { m_usable = false; } // any other call

    // After the list's end: true when it is drawn from here, its vertices then uploaded (the list's
    // context current).
    bool Finish(QOpenGLFunctions& gl);
    // Draws as calling the list would, with segments no point of which is farther than pixels from the
    // full list's, at pixelsPerUnit device pixels to the vertices' unit.
    void Draw(QOpenGLFunctions& gl, double pixelsPerUnit, double pixels, float deviceLineWidth);
    std::optional<float> LineWidthSet() const { return m_lineWidth; }
    std::optional<float> ToleranceSet() const { return m_tolerance; } // in logical pixels
    // Frees the vertex buffer (the list's context current).
    void Release(QOpenGLFunctions& gl);

private:
    enum class Stage { Before, Inside, After };
    Stage m_stage = Stage::Before;
    bool m_usable = true;
    std::optional<float> m_lineWidth;
    std::optional<float> m_tolerance;
    std::optional<Rgba> m_colour; // the colour current at this point of the list
    std::optional<render::LineDetail::Vertex> m_pending;
    render::LineDetail m_lines;
    unsigned m_buffer = 0;
};

} // namespace sky::ui
