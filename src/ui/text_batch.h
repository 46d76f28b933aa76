#pragma once

#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "glyph_fonts.h"

class QOpenGLShaderProgram;
class QOpenGLFunctions;

namespace sky::ui {

// A rectangle of device pixels, as glViewport takes it.
struct PixelRect {
    int X = 0, Y = 0, Width = 0, Height = 0;
    bool operator==(const PixelRect&) const = default;
};

struct Rgba {
    float R = 0, G = 0, B = 0, A = 1;
    bool operator==(const Rgba&) const = default;
};

// Text from the glyph atlas. The glyphs printed at a raster position are gathered and recorded as one
// batch of textured quads: each quad carries its raster position as the vertex and its offset in device
// pixels beside it, and a small vertex program puts it there, snapped to whole pixels, after the view's
// transform. So a label keeps its place beside a point on the globe however the globe turns, costs one
// draw with every other label of its list, and, as a raster position does, shows nothing when its point
// lies outside the view. A glyph may have an outline: drawn first in the outline's colour where the glyph
// grown by a pixel is set. In a list, each line of text (the glyphs of one raster position, pen height,
// colour and outline) is composed once into a texture of the list's own and drawn as one quad, its
// outline as one more: a software rasteriser pays for every small quad. Needs the map's GL context current.
class TextBatch {
public:
    TextBatch();
    ~TextBatch();

    // Compiles the program; false when the context cannot run it (the glyph lists' bitmaps draw then).
    bool Initialise(QOpenGLFunctions& functions);
    // Frees the program and the atlas's texture with the context they were made in (current).
    void Release();
    bool Ready() const { return m_program != nullptr; }
    void SetAtlas(const GlyphAtlas& atlas) { m_atlas = atlas; }
    const GlyphAtlas& Atlas() const { return m_atlas; }

    // A new raster position, with the colour its glyphs take when the list chose one (else they take
    // the colour current when the list is called, as a status line does).
    void RasterPos(float x, float y, float z, const std::optional<Rgba>& colour);
    // Moves the pen by logical pixels, as an empty bitmap moves the raster position.
    void Move(float dx, float dy);
    void Glyph(bool bold, unsigned char code);
    // The glyphs from here on get an outline a pixel wide in this colour; none without one (or with an
    // alpha of 0). Outlines are drawn under every glyph of the batch.
    void SetOutline(const std::optional<Rgba>& colour);
    bool Empty() const { return m_quads.empty(); }
    // Records the gathered quads into the list being recorded (or draws them) and forgets them.
    void Flush();
    // A list is recorded from here (its textures of text made before are freed), or no longer (0): the
    // textures its text needs are filled once it is closed.
    void RecordList(int list);
    // The list is gone: its textures too.
    void ForgetList(int list);
    // The viewport of what follows as the map asked for it, and the part of it GL draws into, in device
    // pixels: the glyphs snap to the pixels of the first. Binds the atlas.
    void Viewport(const PixelRect& asked, const PixelRect& drawn);

private:
    struct Quad {
        float X, Y, Z;      // the raster position
        float Left, Bottom; // device pixels from it
        const GlyphBox* Box;
        std::optional<Rgba> Colour;
        std::optional<Rgba> Outline;
        double Line; // the pen's height
    };
    // One texture of a list's text: two bytes a texel (outline, glyph), rows from the bottom up.
    struct Sheet {
        unsigned Texture = 0;
        int Width = 0, Height = 0;
        std::vector<unsigned char> Texels;
    };
    void DrawGlyphQuads();
    void RecordLines();

    QOpenGLFunctions* m_functions = nullptr;
    std::unique_ptr<QOpenGLShaderProgram> m_program;
    int m_viewportLocation = -1;
    int m_drawnLocation = -1;
    GlyphAtlas m_atlas;
    std::vector<Quad> m_quads;
    float m_anchor[3] = {};
    std::optional<Rgba> m_colour;
    std::optional<Rgba> m_outline;
    double m_penX = 0, m_penY = 0;
    int m_list = 0;                                  // the list being recorded, 0 for none
    std::map<int, std::vector<unsigned>> m_textures; // each list's textures of text
    std::vector<Sheet> m_pending;                    // filled when the list is closed
};

} // namespace sky::ui
