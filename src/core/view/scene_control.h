#pragma once

#include <array>

#include <QString>

namespace sky::render {
class GlApi;
}

namespace sky::view {

struct MapState;
class MapHost;

// The map's display lists as the state asks for them: the traffic scene of a network or of the
// comparison, the symbols and labels of the zoom band in view, the highlight of the selection, the
// frame, the status line, the client-count panel and the network marks. Every change that the user
// should see ends in Redraw. Owned by the map session; all map parts reach the lists through it.
class SceneControl {
public:
    SceneControl(MapState& state, render::GlApi& gl, MapHost& host);

    // Records the nine traffic lists of network (0 or 1) unless they are up to date, then sets the
    // status text ("IVAO data of 1423Z displayed").
    void BuildTrafficScene(int network);
    // Lists 30 to 38 and the comparison's status text.
    void BuildComparisonScene();
    // Marks the scene of network (0, 1 or 2) stale and builds it again.
    void RebuildScene(int network);
    // After any change of the view: symbols and labels follow the zoom band.
    void ViewChanged();
    // The client area changed size (pixels): frame, marks and client-count panel again; panels close.
    void Resize(int widthPx, int heightPx);

    void SetStatus(const QString& text); // sets the text and records the status line
    void StatusChanged();                // records the status line from the state's text
    void MarksChanged();                 // records the network marks from the download flags
    void ClientCountChanged();           // records the client-count panel
    // The network's traffic lists, the count panel and the highlight go (before new data).
    void ClearTraffic(int network);

    // The highlight of the selected client (list 42); deleted when nothing is selected.
    void RecordHighlight();
    void DeleteHighlight(); // the selection goes with it
    // Marks an airport with its code in the highlight list; the selection goes.
    void MarkAirport(float latitude, float longitude, const QString& code);
    // Turns the map to face the point at zoom 16, closes the panels and says "Centered on " + name.
    void CentreOn(float latitude, float longitude, const QString& name);

    // Draws a frame now: the zoom band is checked first, so the lists fit the view.
    void Redraw();

private:
    MapState& m_state;
    render::GlApi& m_gl;
    MapHost& m_host;
    std::array<int, 3> m_symbolBand = {0, 0, 0};
    std::array<bool, 3> m_detailedLabels = {false, false, false};
};

} // namespace sky::view
