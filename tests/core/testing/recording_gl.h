#pragma once

#include <map>
#include <string>
#include <vector>

#include "render/gl_api.h"

namespace sky::render {

// A GlApi that draws nothing and remembers everything: what each display list holds, and the calls
// made outside lists (a frame). Tests read it back.
class RecordingGl final : public GlApi {
public:
    enum class Op {
        CallList,
        ListBase,
        CallListByte,
        Begin,
        End,
        Vertex,
        Colour,
        RasterPos,
        BitmapMove,
        TextOutline,
        BindTexture,
        TexCoord,
        AlphaFunc,
        LineTolerance,
        LineWidth,
        PointSize,
        Enable,
        Disable,
        BlendFunc,
        StencilFunc,
        StencilOp,
        ColourMask,
        ClearColour,
        Clear,
        Viewport,
        LoadIdentity,
        Ortho,
        PushMatrix,
        PopMatrix,
        Translate,
        Rotate,
        Scale,
        DeleteList,
        DrawVertexArray
    };
    struct Call {
        Op What;
        int Number = 0; // list, primitive, capability ...
        float Values[6] = {};
    };

    void NewList(int list) override;
    void EndList() override;
    void DeleteList(int list) override;
    bool IsList(int list) const override { return m_lists.count(list) != 0; }
    void CallList(int list) override { Add({Op::CallList, list}); }
    void ListBase(int base) override { Add({Op::ListBase, base}); }
    void CallListByte(unsigned char code) override { Add({Op::CallListByte, code}); }
    void Begin(Primitive primitive) override { Add({Op::Begin, int(primitive)}); }
    void End() override { Add({Op::End}); }
    void Vertex(float x, float y, float z) override { Add({Op::Vertex, 0, {x, y, z}}); }
    void Colour(float r, float g, float b, float a) override { Add({Op::Colour, 0, {r, g, b, a}}); }
    void RasterPos(float x, float y, float z) override { Add({Op::RasterPos, 0, {x, y, z}}); }
    void BitmapMove(float dx, float dy) override { Add({Op::BitmapMove, 0, {dx, dy}}); }
    void TextOutline(float r, float g, float b, float a) override { Add({Op::TextOutline, 0, {r, g, b, a}}); }
    // A definition is made at once, outside any list: the texture's side and alpha bytes are kept.
    void DefineAlphaTexture(int texture, int sizeTexels, const unsigned char* alpha) override {
        m_textures[texture] = {sizeTexels,
                               std::vector<unsigned char>(alpha, alpha + sizeTexels * sizeTexels)};
    }
    void BindTexture(int texture) override { Add({Op::BindTexture, texture}); }
    void TexCoord(float s, float t) override { Add({Op::TexCoord, 0, {s, t}}); }
    void AlphaFunc(float reference) override { Add({Op::AlphaFunc, 0, {reference}}); }
    // Kept at once, outside any list: the positions of its vertices, three floats each.
    void SetVertexArray(int array, const float* positions, const float*, int count) override {
        m_arrays[array].assign(positions, positions + 3 * count);
    }
    void DrawVertexArray(int array, Primitive primitive) override {
        Add({Op::DrawVertexArray, array, {float(int(primitive))}});
    }
    void LineTolerance(float pixels) override { Add({Op::LineTolerance, 0, {pixels}}); }
    void LineWidth(float width) override { Add({Op::LineWidth, 0, {width}}); }
    void PointSize(float size) override { Add({Op::PointSize, 0, {size}}); }
    void Enable(Capability capability) override { Add({Op::Enable, int(capability)}); }
    void Disable(Capability capability) override { Add({Op::Disable, int(capability)}); }
    void BlendFunc(BlendFactor s, BlendFactor d) override { Add({Op::BlendFunc, int(s), {float(int(d))}}); }
    void StencilFunc(StencilTest t, int reference, unsigned mask) override {
        Add({Op::StencilFunc, int(t), {float(reference), float(mask)}});
    }
    void StencilOp(StencilAction f, StencilAction z, StencilAction p) override {
        Add({Op::StencilOp, int(f), {float(int(z)), float(int(p))}});
    }
    void ColourMask(bool write) override { Add({Op::ColourMask, write ? 1 : 0}); }
    void ClearColour(float r, float g, float b, float a) override { Add({Op::ClearColour, 0, {r, g, b, a}}); }
    void Clear() override { Add({Op::Clear}); }
    void Viewport(int x, int y, int w, int h) override {
        Add({Op::Viewport, 0, {float(x), float(y), float(w), float(h)}});
    }
    void LoadIdentity() override { Add({Op::LoadIdentity}); }
    void Ortho(double l, double r, double b, double t, double n, double f) override {
        Add({Op::Ortho, 0, {float(l), float(r), float(b), float(t), float(n), float(f)}});
    }
    void PushMatrix() override { Add({Op::PushMatrix}); }
    void PopMatrix() override { Add({Op::PopMatrix}); }
    void Translate(float x, float y, float z) override { Add({Op::Translate, 0, {x, y, z}}); }
    void Rotate(float a, float x, float y, float z) override { Add({Op::Rotate, 0, {a, x, y, z}}); }
    void Scale(float x, float y, float z) override { Add({Op::Scale, 0, {x, y, z}}); }

    // The calls recorded into a list; empty for a list that does not exist.
    const std::vector<Call>& List(int list) const;
    // How many times a list was recorded.
    int Recordings(int list) const { return m_recordings.count(list) ? m_recordings.at(list) : 0; }
    // The positions of a vertex array as last set; empty if never set.
    const std::vector<float>& Array(int array) const;
    // The vertices the calls draw from vertex arrays, as the arrays are now.
    int ArrayVertices(const std::vector<Call>& calls) const;
    // The textures defined, by number: their side in texels and their alpha bytes.
    const std::map<int, std::pair<int, std::vector<unsigned char>>>& Textures() const { return m_textures; }
    // Calls made outside any list, in order.
    const std::vector<Call>& Immediate() const { return m_immediate; }
    void ClearImmediate() { m_immediate.clear(); }

    // The calls of that kind, in order, and how many there are (with that number: a primitive, a list
    // base...).
    static std::vector<Call> Calls(const std::vector<Call>& calls, Op what);
    static int Count(const std::vector<Call>& calls, Op what, int number = -1);
    // The Windows-1252 codes printed into calls, as a text.
    static std::vector<unsigned char> Printed(const std::vector<Call>& calls);
    static std::string PrintedText(const std::vector<Call>& calls);

private:
    void Add(const Call& call);

    std::map<int, std::vector<Call>> m_lists;
    std::map<int, int> m_recordings;
    std::map<int, std::vector<float>> m_arrays;
    std::vector<Call> m_immediate;
    std::map<int, std::pair<int, std::vector<unsigned char>>> m_textures;
    int m_recording = -1;
};

} // namespace sky::render
