#pragma once

#include <array>

namespace sky::render {

enum class Primitive { Points, Lines, LineStrip, LineLoop, Triangles, TriangleFan, Quads, Polygon };
enum class Capability { Blend, LineSmooth, PointSmooth, StencilTest, LineStipple, Texture, AlphaTest };
enum class BlendFactor { Zero, One, SrcAlpha, OneMinusSrcAlpha };
enum class StencilTest { Always, Equal, NotEqual };
enum class StencilAction { Keep, Zero, Invert };

// The small slice of OpenGL 1.1 the map is drawn with. Scene builders record display lists through it
// and never call OpenGL themselves: the map binds it to the real context, tests to a recorder.
class GlApi {
public:
    virtual ~GlApi() = default;

    // Display lists, by fixed number (see list_numbers.h).
    virtual void NewList(int list) = 0; // records, does not execute
    virtual void EndList() = 0;
    virtual void DeleteList(int list) = 0;
    virtual bool IsList(int list) const = 0;
    virtual void CallList(int list) = 0;
    virtual void ListBase(int base) = 0;
    // Calls list base + code, as a text's glyphs are printed.
    virtual void CallListByte(unsigned char code) = 0;

    virtual void Begin(Primitive primitive) = 0;
    virtual void End() = 0;
    virtual void Vertex(float x, float y, float z) = 0;
    virtual void Colour(float red, float green, float blue, float alpha) = 0;
    virtual void RasterPos(float x, float y, float z) = 0;
    // Moves the raster position by whole pixels, as an empty bitmap does.
    virtual void BitmapMove(float dx, float dy) = 0;

    // Glyphs printed from here on get an outline one pixel wide in this colour, so text stays readable
    // over anything drawn under it; an alpha of 0 turns it off. The setting belongs to what is being
    // recorded: every list starts without an outline. Without support: no outline.
    virtual void TextOutline(float red, float green, float blue, float alpha) {
        (void)red, (void)green, (void)blue, (void)alpha;
    }

    // Textures by fixed number (see list_numbers.h), each a square of alpha bytes, rows from the bottom
    // up; the colour comes from the current colour. Defining a number again replaces its texture. A
    // definition made while a list is recorded is made at once, not recorded: the list only binds it.
    // The defaults do nothing.
    virtual void DefineAlphaTexture(int texture, int sizeTexels, const unsigned char* alpha) {
        (void)texture, (void)sizeTexels, (void)alpha;
    }
    virtual void BindTexture(int texture) { (void)texture; } // 0: none
    // The texture coordinate of the vertices that follow, 0 to 1 across the texture.
    virtual void TexCoord(float s, float t) { (void)s, (void)t; }
    // With Capability::AlphaTest, only fragments whose alpha is greater than this are drawn.
    virtual void AlphaFunc(float reference) { (void)reference; }

    // Vertex arrays by fixed number (see list_numbers.h): count vertices, each a position (x, y, z) and,
    // when texCoords is given, a texture coordinate (s, t); copied. Setting a number again replaces
    // them. A list that draws an array draws it as it is when the list is called, so what moves in it
    // moves without recording the list again. The defaults do nothing.
    virtual void SetVertexArray(int array, const float* positions, const float* texCoords, int count) {
        (void)array, (void)positions, (void)texCoords, (void)count;
    }
    virtual void DrawVertexArray(int array, Primitive primitive) { (void)array, (void)primitive; }

    // The lines of the list being recorded may be drawn up to this many pixels from where they were
    // recorded, so a GL that draws long lists of lines with fewer segments when zoomed out may leave
    // out that much; half a pixel when not said. The default does nothing.
    virtual void LineTolerance(float pixels) { (void)pixels; }
    virtual void LineWidth(float width) = 0;
    virtual void PointSize(float size) = 0;
    virtual void Enable(Capability capability) = 0;
    virtual void Disable(Capability capability) = 0;
    virtual void BlendFunc(BlendFactor source, BlendFactor destination) = 0;
    virtual void StencilFunc(StencilTest test, int reference, unsigned mask) = 0;
    virtual void StencilOp(StencilAction fail, StencilAction depthFail, StencilAction pass) = 0;
    virtual void ColourMask(bool write) = 0;

    virtual void ClearColour(float red, float green, float blue, float alpha) = 0;
    virtual void Clear() = 0; // the colour buffer
    virtual void Viewport(int x, int y, int width, int height) = 0;
    virtual void LoadIdentity() = 0;
    virtual void Ortho(double left, double right, double bottom, double top, double zNear, double zFar) = 0;
    virtual void PushMatrix() = 0;
    virtual void PopMatrix() = 0;
    virtual void Translate(float x, float y, float z) = 0;
    virtual void Rotate(float angleDeg, float x, float y, float z) = 0;
    virtual void Scale(float x, float y, float z) = 0;

    // A picture kept from one frame to the next. What is drawn between BeginKept and EndKept shows as
    // always and may be kept as an image of the whole frame buffer (a GL keeps it when the key is the one
    // of the frame before, not while every frame brings another); DrawKept puts that image back in one
    // copy instead, and says false (drawing nothing) unless it was kept under the same key and nothing it
    // drew has changed since: no list it called recorded again or deleted, the same clear colour and
    // frame buffer size. The key holds what else the picture depends on (the view, the layers shown). GL
    // state set between BeginKept and EndKept does not outlast EndKept, so either way the frame goes on
    // alike. Without support nothing is kept and DrawKept always says false.
    using KeptKey = std::array<float, 7>;
    virtual bool DrawKept(const KeptKey& key) {
        (void)key;
        return false;
    }
    virtual void BeginKept(const KeptKey& key) { (void)key; }
    virtual void EndKept() {}

    // How far a glyph of the small or bold font advances the raster position, in pixels. What the map
    // lays out (labels, panels) is measured with it; this default is the size of the shipped fonts.
    virtual int GlyphAdvance(bool bold, unsigned char code) const {
        (void)code;
        return bold ? 7 : 6;
    }
};

} // namespace sky::render
