#pragma once

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <vector>

#include "detailed_lines.h"
#include "kept_image.h"
#include "render/gl_api.h"
#include "text_batch.h"

class QOpenGLExtraFunctions;
class QOpenGLFunctions;

namespace sky::ui {

// The core's GL interface on the real OpenGL 1.1 of the map window's context. Every call needs that
// context current. The core works in logical pixels; the backend turns viewports, line widths, point
// sizes and text offsets into device pixels by the screen's device pixel ratio. Text printed through
// the glyph lists is gathered per list and drawn from the glyph atlas in one batch (see TextBatch);
// lists of many plain line segments are drawn with as many as the view shows (see DetailedLines).
class GlBackend final : public render::GlApi {
public:
    GlBackend();
    ~GlBackend() override;

    // With a new context current: its function table, the text program, and the glyph lists and atlas
    // for this device pixel ratio. What was made in an earlier context must have been released.
    void Initialise(double devicePixelRatio);
    // With the context current, before it goes: frees every GL object made in it (vertex buffers, the
    // textures, the text program). Lists go with the context; the textures are defined again as the
    // lists that bind them are recorded in the next.
    void Release();
    // The window moved to a screen of another ratio: the glyphs again, at its size.
    void SetDevicePixelRatio(double devicePixelRatio);
    double DevicePixelRatio() const { return m_ratio; }

    // The size of the frame buffer drawn into, in device pixels; 0 when unknown. A viewport reaching
    // beyond it is narrowed to it, with the projection matrix making up the difference, so that GL
    // clips away what falls outside the window before it does any work on it (the map's globe viewport
    // is twice the window's height). Pixels land where they did.
    void SetDrawableSize(int widthPx, int heightPx) { m_drawable = {0, 0, widthPx, heightPx}; }

    int GlyphAdvance(bool bold, unsigned char code) const override;
    void NewList(int list) override;
    void EndList() override;
    void DeleteList(int list) override;
    bool IsList(int list) const override;
    void CallList(int list) override;
    void ListBase(int base) override;
    void CallListByte(unsigned char code) override;
    void Begin(render::Primitive primitive) override;
    void End() override;
    void Vertex(float x, float y, float z) override;
    void Colour(float red, float green, float blue, float alpha) override;
    void RasterPos(float x, float y, float z) override;
    void BitmapMove(float dx, float dy) override;
    // Kept with each glyph of the batch (the glyph lists' bitmaps have none); reset by NewList and EndList.
    void TextOutline(float red, float green, float blue, float alpha) override;
    // Kept for the list's lines drawn with fewer segments (see DetailedLines); nothing for GL.
    void LineTolerance(float pixels) override;
    void LineWidth(float width) override;
    void PointSize(float size) override;
    void Enable(render::Capability capability) override;
    void Disable(render::Capability capability) override;
    void BlendFunc(render::BlendFactor source, render::BlendFactor destination) override;
    void StencilFunc(render::StencilTest test, int reference, unsigned mask) override;
    void StencilOp(render::StencilAction fail, render::StencilAction depthFail,
                   render::StencilAction pass) override;
    void ColourMask(bool write) override;
    // Alpha textures live on the second texture unit, beside the glyphs' on the first.
    void DefineAlphaTexture(int number, int sizeTexels, const unsigned char* alpha) override;
    void BindTexture(int number) override;
    void TexCoord(float s, float t) override;
    void AlphaFunc(float reference) override;
    // Client-side arrays, texture coordinates on the symbols' unit. A list that draws one is recorded
    // in pieces around the draw; calling it calls the pieces and draws the array between them.
    void SetVertexArray(int array, const float* positions, const float* texCoords, int count) override;
    void DrawVertexArray(int array, render::Primitive primitive) override;
    void ClearColour(float red, float green, float blue, float alpha) override;
    void Clear() override;
    void Viewport(int x, int y, int width, int height) override;
    void LoadIdentity() override;
    void Ortho(double left, double right, double bottom, double top, double zNear, double zFar) override;
    void PushMatrix() override;
    void PopMatrix() override;
    void Translate(float x, float y, float z) override;
    void Rotate(float angleDeg, float x, float y, float z) override;
    void Scale(float x, float y, float z) override;
    // The kept part of the frame is drawn into an image of the frame buffer's size (SetDrawableSize);
    // without that size, or without frame buffer objects, nothing is kept.
    bool DrawKept(const KeptKey& key) override;
    void BeginKept(const KeptKey& key) override;
    void EndKept() override;
    // The next frames draw everything, as the first with a new view does (the benchmarks' frame that
    // draws every layer).
    void ForgetKept() { m_kept.Forget(); }

private:
    // A call a list of plain line segments does not make: the list being recorded is left to GL.
    void NotPlainLines() {
        if (m_lines)
            m_lines->Refuse();
    }
    void FlushText();            // before any call that is not text, so the glyphs keep their place in order
    void ForgetDetail(int list); // the list's plain lines, if it had them
    float Device(float logical) const { return float(logical * m_ratio); }
    template <typename Call> void OnSymbolUnit(Call call); // with the second texture unit active
    void UploadTexture(unsigned texture, int sizeTexels, const unsigned char* alpha);
    void DrawArrayNow(int array, unsigned primitive);
    void ForgetPieces(int list); // the pieces of a list recorded around its arrays

    struct VertexArray {
        std::vector<float> Positions, TexCoords;
        int Count = 0;
    };
    // After the list of its number: draw an array, then call the GL list that follows it.
    struct Piece {
        int Array = 0;
        unsigned Primitive = 0;
        unsigned Next = 0;
    };

    std::unique_ptr<QOpenGLFunctions> m_functions;
    std::unique_ptr<QOpenGLExtraFunctions> m_extra; // with frame buffer objects only
    mutable KeptImage m_kept;                       // IsList counts as a use of the list while keeping
    Rgba m_clearColour;
    TextBatch m_text;
    bool m_textReady = false;
    double m_ratio = 1.0;
    PixelRect m_drawable;
    bool m_recording = false;
    int m_recordingList = 0;
    int m_listBase = 0;
    std::optional<Rgba> m_listColour;       // the colour the list being recorded set last
    PixelRect m_asked;                      // the last viewport asked for, in device pixels
    std::unique_ptr<DetailedLines> m_lines; // the list being recorded, as plain lines
    std::map<int, std::unique_ptr<DetailedLines>> m_detailed;
    bool m_fullDetail = false;          // SKYLANTRA_FULL_DETAIL: every list exactly as recorded
    std::map<int, unsigned> m_textures; // by number, made in this context
    std::map<int, std::pair<int, std::vector<unsigned char>>> m_pendingTextures; // made after the list
    std::map<int, VertexArray> m_arrays;
    std::map<int, std::vector<Piece>> m_pieces; // by list number
    std::set<unsigned> m_usedPieces;            // the GL lists of every piece, from lists::kGlLists on
};

} // namespace sky::ui
