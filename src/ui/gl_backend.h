#pragma once

#include "render/gl_api.h"

namespace sky::ui {

// The core's GL interface on the real OpenGL 1.1 of the map window's context. Every call needs that
// context current.
class GlBackend final : public render::GlApi {
public:
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
    void LineWidth(float width) override;
    void PointSize(float size) override;
    void Enable(render::Capability capability) override;
    void Disable(render::Capability capability) override;
    void BlendFunc(render::BlendFactor source, render::BlendFactor destination) override;
    void StencilFunc(render::StencilTest test, int reference, unsigned mask) override;
    void StencilOp(render::StencilAction fail, render::StencilAction depthFail,
                   render::StencilAction pass) override;
    void ColourMask(bool write) override;
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
};

} // namespace sky::ui
