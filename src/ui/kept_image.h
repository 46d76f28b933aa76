#pragma once

#include <optional>
#include <set>

#include "render/gl_api.h"
#include "text_batch.h"

class QOpenGLExtraFunctions;

namespace sky::ui {

// The image behind GlApi::DrawKept: a colour buffer of the frame buffer's size that a part of a frame
// is drawn into, then copied to the frame buffer; while nothing it depends on changes, later frames copy
// it again instead of drawing that part. Every call needs the context it was made in current.
class KeptImage {
public:
    // Starts drawing into the image, cleared with the clear colour, remembering the frame buffer drawn
    // into until now. False, and nothing changed, without a size or frame buffer objects, or when the
    // key is not the one Begin saw last: while the view moves every frame has a key of its own, and
    // keeping would only add the copy.
    bool Begin(QOpenGLExtraFunctions& gl, const render::GlApi::KeptKey& key, int widthPx, int heightPx,
               const Rgba& clear);
    bool Keeping() const { return m_keeping; }
    // While keeping: a list drawn into the image; recording or deleting it later makes the image stale.
    void Called(int list) { m_lists.insert(list); }
    // While keeping: something drawn can change without a list being recorded (a vertex array), so the
    // image is not kept.
    void Spoil() { m_spoiled = true; }
    // Ends drawing into the image and copies it to the frame buffer Begin found.
    void End(QOpenGLExtraFunctions& gl);
    // Copies the image to the frame buffer drawn into when it was kept under this key, at this size and
    // clear colour, and nothing it drew has changed since; otherwise false.
    bool Draw(QOpenGLExtraFunctions& gl, const render::GlApi::KeptKey& key, int widthPx, int heightPx,
              const Rgba& clear);
    // A list recorded again or deleted.
    void ListChanged(int list);
    void Forget() {
        m_valid = false;
        m_seen.reset();
    }
    // Frees the image's GL objects (its context current).
    void Release(QOpenGLExtraFunctions& gl);

private:
    void Copy(QOpenGLExtraFunctions& gl, unsigned from, unsigned to);

    unsigned m_frameBuffer = 0, m_colour = 0;
    int m_widthPx = 0, m_heightPx = 0;
    int m_failedWidthPx = 0, m_failedHeightPx = 0; // a size GL could not make an image of
    render::GlApi::KeptKey m_key{};
    std::optional<render::GlApi::KeptKey> m_seen; // by the last Begin
    Rgba m_clear{};
    std::set<int> m_lists; // called while keeping
    bool m_keeping = false, m_valid = false, m_spoiled = false;
    int m_drawBuffer = 0, m_readBuffer = 0; // the frame buffers bound when keeping began
};

} // namespace sky::ui
