#pragma once

#include "render/gl_api.h"

namespace sky::render {

// A GlApi that draws nothing, for running the map's logic without a screen (the Companion in a
// terminal).
class NullGl final : public GlApi {
public:
    void NewList(int) override {}
    void EndList() override {}
    void DeleteList(int) override {}
    bool IsList(int) const override { return false; }
    void CallList(int) override {}
    void ListBase(int) override {}
    void CallListByte(unsigned char) override {}
    void Begin(Primitive) override {}
    void End() override {}
    void Vertex(float, float, float) override {}
    void Colour(float, float, float, float) override {}
    void RasterPos(float, float, float) override {}
    void BitmapMove(float, float) override {}
    void LineWidth(float) override {}
    void PointSize(float) override {}
    void Enable(Capability) override {}
    void Disable(Capability) override {}
    void BlendFunc(BlendFactor, BlendFactor) override {}
    void StencilFunc(StencilTest, int, unsigned) override {}
    void StencilOp(StencilAction, StencilAction, StencilAction) override {}
    void ColourMask(bool) override {}
    void ClearColour(float, float, float, float) override {}
    void Clear() override {}
    void Viewport(int, int, int, int) override {}
    void LoadIdentity() override {}
    void Ortho(double, double, double, double, double, double) override {}
    void PushMatrix() override {}
    void PopMatrix() override {}
    void Translate(float, float, float) override {}
    void Rotate(float, float, float, float) override {}
    void Scale(float, float, float) override {}
};

} // namespace sky::render
