#include <algorithm>
#include <array>
#include <fstream>
#include <map>
#include <string>

#include <time.h>

#include <benchmark/benchmark.h>

#include <GL/gl.h>

#include <QGuiApplication>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QUrl>

#include "common/file_io.h"
#include "gl_backend.h"
#include "network/http_client.h"
#include "render/draw_scene.h"
#include "render/land_layer.h"
#include "render/list_numbers.h"
#include "view/demo_live_feed.h"
#include "view/map_session.h"

using namespace Qt::StringLiterals;

// The map on real OpenGL (Mesa's software rasteriser under Xvfb): start-up, the scene build of the
// VATSIM demo feed and one frame, against an empty frame.
namespace {

const QString kBuild = QStringLiteral(SKYLANTRA_BINARY_DIR);

class DemoFiles : public sky::network::HttpClient {
public:
    sky::network::FetchResult Fetch(const QString& url) override {
        const auto bytes = sky::ReadWholeFile(QUrl(url).toLocalFile());
        return bytes ? sky::network::FetchResult{true, *bytes, {}} : sky::network::FetchResult{false, {}, {}};
    }
};

class NoHost : public sky::view::MapHost {
public:
    void Redraw() override {}
    void ShowCompanion() override {}
    void ShowNetworkMessage(const QString&) override {}
    void EnableAutoDownload(bool) override {}
    void OpenUrl(const QString&) override {}
};

// A current GL context with a frame buffer of colour alone, as the map window has; 800 x 600 unless a
// benchmark asks for another size.
struct GlTarget {
    void Resize(int width, int height) {
        if (fbo && fbo->size() == QSize(width, height))
            return;
        fbo.reset();
        QOpenGLFramebufferObjectFormat fboFormat;
        fboFormat.setAttachment(QOpenGLFramebufferObject::NoAttachment);
        fbo = std::make_unique<QOpenGLFramebufferObject>(width, height, fboFormat);
        fbo->bind();
    }
    GlTarget() {
        QSurfaceFormat format;
        format.setProfile(QSurfaceFormat::CompatibilityProfile);
        format.setVersion(2, 1);
        surface.setFormat(format);
        surface.create();
        context.setFormat(format);
        context.create();
        context.makeCurrent(&surface);
        Resize(800, 600);
    }
    QOffscreenSurface surface;
    QOpenGLContext context;
    std::unique_ptr<QOpenGLFramebufferObject> fbo;
};

// Made and destroyed by main, inside the application object's lifetime.
GlTarget* g_target = nullptr;

GlTarget& Target(int width = 800, int height = 600) {
    g_target->Resize(width, height);
    return *g_target;
}

std::unique_ptr<sky::view::MapSession> NewSession(sky::render::GlApi& gl, NoHost& host, DemoFiles& files) {
    sky::network::FeedAddresses demo;
    for (int n = 0; n < 2; ++n)
        demo.Status[size_t(n)] = QUrl::fromLocalFile(kBuild + (n == 0 ? u"/data/demo/ivao/status.txt"_s
                                                                      : u"/data/demo/vatsim/status.txt"_s))
                                     .toString();
    auto session = std::make_unique<sky::view::MapSession>(sky::Folders::OneFolder(kBuild), sky::Settings{},
                                                           sky::Friends{}, gl, host, files, nullptr, demo);
    session->Resize(800, 600);
    return session;
}

// A session that has started and downloaded the VATSIM demo feed.
std::unique_ptr<sky::view::MapSession> DemoSession(sky::render::GlApi& gl, NoHost& host, DemoFiles& files) {
    auto session = NewSession(gl, host, files);
    session->StartUp();
    session->Downloader().BtnDownload(1);
    return session;
}

// The map on the current target: a backend with its glyphs and the target's size, and a session that
// has downloaded the VATSIM demo unless told not to.
struct DemoMap {
    explicit DemoMap(bool download = true) {
        gl.Initialise(1.0);
        gl.SetDrawableSize(g_target->fbo->width(), g_target->fbo->height());
        session = download ? DemoSession(gl, host, files) : NewSession(gl, host, files);
    }
    ~DemoMap() { gl.Release(); }
    // Settings changed as the Preferences change them.
    template <typename Change> void Configure(Change change) {
        sky::Settings settings = session->Config();
        change(settings);
        session->ApplyPreferences(settings);
    }
    sky::ui::GlBackend gl;
    NoHost host;
    DemoFiles files;
    std::unique_ptr<sky::view::MapSession> session;
};

long ResidentKb() {
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line)) {
        if (line.rfind("VmRSS:", 0) == 0)
            return std::stol(line.substr(6));
    }
    return 0;
}

void BM_StartUpToReady(benchmark::State& state) {
    Target();
    DemoMap map(false);
    // From the context to "Ready" and the first frame's lists: the glyph fonts, the frame, the reference
    // data, the geography and the land the view draws.
    for (auto _ : state) {
        map.gl.SetDevicePixelRatio(1.0);
        auto session = NewSession(map.gl, map.host, map.files);
        benchmark::DoNotOptimize(session->StartUp());
        benchmark::DoNotOptimize(session->Frame());
        glFinish();
    }
}
BENCHMARK(BM_StartUpToReady)->Unit(benchmark::kMillisecond);

void BM_BuildTrafficSceneVatsimDemo(benchmark::State& state) {
    Target();
    DemoMap map;
    auto& session = map.session;
    for (auto _ : state) {
        session->Scene().MarkStale(1);
        session->Scene().BuildTrafficScene(1);
        glFinish();
    }
    state.counters["resident_MB"] = double(ResidentKb()) / 1024.0;
}
BENCHMARK(BM_BuildTrafficSceneVatsimDemo)->Unit(benchmark::kMillisecond);

// Airline prefixes of the demo's pilots that, taken in turn from the most common on, hold about a
// tenth of them: a filter text ("DLH BAW ...") for each of two such sets.
std::array<QString, 2> TenthFilters(const sky::network::NetworkData& data) {
    std::map<QString, int> airlines;
    for (int slot = 1; slot <= data.PilotCount; ++slot)
        ++airlines[data.Pilots[size_t(slot)].Callsign.left(3)];
    std::vector<std::pair<int, QString>> byCount;
    for (const auto& [airline, count] : airlines)
        byCount.push_back({-count, airline});
    std::sort(byCount.begin(), byCount.end());
    std::array<QString, 2> filters;
    size_t next = 0;
    for (QString& filter : filters) {
        for (int held = 0; held * 10 < data.PilotCount && next < byCount.size(); ++next) {
            held -= byCount[next].first;
            filter += byCount[next].second + u' ';
        }
    }
    return filters;
}

// A filter applied on the VATSIM demo, two that keep a tenth of its pilots each in turn, and the frame
// drawn after it: what the filter bar makes the user wait for, against the scene build above.
void BM_ApplyFilterVatsimDemo(benchmark::State& state) {
    Target();
    DemoMap map;
    auto& gl = map.gl;
    auto& session = map.session;
    const std::array<QString, 2> filters = TenthFilters(session->Tables()[1]);
    int turn = 0;
    for (auto _ : state) {
        session->Filters().Apply(filters[size_t(turn++ % 2)]);
        if (state.range(0))
            sky::render::DrawScene(gl, session->Frame());
        glFinish();
    }
    const sky::filter::Visibility shown = session->State().Shown();
    state.counters["shown_pilots"] = sky::filter::ShownPilots(shown, session->Tables()[1]);
}
BENCHMARK(BM_ApplyFilterVatsimDemo)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// One frame of the VATSIM demo with every layer on (inbound lines too), at a window size, its labels
// decluttered (range 2 = 1) or all drawn.
void BM_DrawSceneVatsimDemo(benchmark::State& state) {
    const int width = int(state.range(0)), height = int(state.range(1));
    Target(width, height);
    DemoMap map;
    auto& gl = map.gl;
    auto& session = map.session;
    map.Configure([&](sky::Settings& s) {
        s.ShowInbounds = true;
        s.DeclutterLabels = state.range(2) != 0;
    });
    session->Resize(width, height);
    session->Scene().RebuildScene(1);
    const sky::render::FrameInputs inputs = session->Frame();
    for (auto _ : state) {
        gl.ForgetKept();
        sky::render::DrawScene(gl, inputs);
        glFinish();
    }
}
BENCHMARK(BM_DrawSceneVatsimDemo)
    ->ArgNames({"w", "h", "declutter"})
    ->Args({800, 600, 1})
    ->Args({800, 600, 0})
    ->Args({1920, 1080, 1})
    ->Unit(benchmark::kMillisecond);

// Takes the land off the globe, as a data folder without land.dat leaves it.
void DeleteLand(sky::render::GlApi& gl) {
    for (int list = 0; list < sky::render::LandListCount(); ++list)
        gl.DeleteList(sky::render::lists::kLandFirst + list);
}

// The decluttered frame of BM_DrawSceneVatsimDemo without (land 0) and with (land 1) the land, taken in
// turn in one run: every layer drawn (kept 0), as while the view moves, or the globe, its geography and
// the sectors copied from the image the frames before kept (kept 1), as when aircraft move or a panel
// opens.
void BM_DrawSceneWithLand(benchmark::State& state) {
    const int width = int(state.range(0)), height = int(state.range(1));
    Target(width, height);
    DemoMap map;
    map.Configure([&](sky::Settings& s) { s.ShowInbounds = true; });
    map.session->Resize(width, height);
    map.session->Scene().RebuildScene(1);
    if (state.range(2) == 0)
        DeleteLand(map.gl);
    const sky::render::FrameInputs inputs = map.session->Frame();
    const bool kept = state.range(3) != 0;
    for (auto _ : state) {
        if (!kept)
            map.gl.ForgetKept();
        sky::render::DrawScene(map.gl, inputs);
        glFinish();
    }
}
BENCHMARK(BM_DrawSceneWithLand)
    ->ArgNames({"w", "h", "land", "kept"})
    ->ArgsProduct({{800}, {600}, {0, 1}, {0, 1}})
    ->ArgsProduct({{1920}, {1080}, {0, 1}, {0, 1}})
    ->Unit(benchmark::kMillisecond);

// A frame of the globe and its coastlines only (no traffic, grid, borders or night), without (land 0)
// and with (land 1) the land, at a window size and a view: 0 the demo's view over Europe at zoom 1.49,
// 1 Heathrow at zoom 16, 2 the whole globe at zoom 0.5. What the land adds to a frame.
void BM_DrawGlobeAndLand(benchmark::State& state) {
    const int width = int(state.range(0)), height = int(state.range(1));
    const sky::geo::ViewState views[] = {
        {13.34f, -54.15f, 1.49f}, {-0.46f, -51.47f, 16.0f}, {0.0f, 0.0f, 0.5f}};
    Target(width, height);
    DemoMap map(false);
    map.session->StartUp();
    map.session->Resize(width, height);
    map.session->Scene().SetView(views[state.range(3)]);
    map.session->Frame(); // records the land of the view's detail
    if (state.range(2) == 0)
        DeleteLand(map.gl);
    sky::Settings settings;
    settings.ShowNight = settings.ShowLatLon = settings.ShowATC = settings.ShowAirports = false;
    settings.ShowPlanes = false;
    const sky::render::FrameInputs globeOnly{settings,
                                             map.session->Frame().Colours,
                                             views[state.range(3)],
                                             0,
                                             {},
                                             false,
                                             false,
                                             false,
                                             false,
                                             false,
                                             width,
                                             height};
    for (auto _ : state) {
        map.gl.ForgetKept();
        sky::render::DrawScene(map.gl, globeOnly);
        glFinish();
    }
}
BENCHMARK(BM_DrawGlobeAndLand)
    ->ArgNames({"w", "h", "land", "view"})
    ->ArgsProduct({{800}, {600}, {0, 1}, {0, 1, 2}})
    ->ArgsProduct({{1920}, {1080}, {0, 1}, {0, 1, 2}})
    ->Unit(benchmark::kMillisecond);

// The same frame with the traffic layers off: the globe, grid, coastlines and borders every frame calls
// whatever the traffic, with their smoothing. What no frame of the map can go below.
void BM_DrawSceneGeographyOnly(benchmark::State& state) {
    Target();
    DemoMap map;
    auto& gl = map.gl;
    auto& session = map.session;
    map.Configure([&](sky::Settings& s) {
        s.ShowPlanes = s.ShowATC = s.ShowAirports = false;
        s.DisableSmooth = state.range(0) == 0;
    });
    const sky::render::FrameInputs inputs = session->Frame();
    for (auto _ : state) {
        gl.ForgetKept();
        sky::render::DrawScene(gl, inputs);
        glFinish();
    }
}
BENCHMARK(BM_DrawSceneGeographyOnly)->ArgName("smooth")->Arg(1)->Arg(0)->Unit(benchmark::kMillisecond);

// The label lists placed again after one zoom step, as when a zoom comes to rest.
void BM_RecordLabelsAfterZoomStep(benchmark::State& state) {
    Target();
    DemoMap map;
    auto& session = map.session;
    bool in = true;
    for (auto _ : state) {
        sky::geo::ViewState view = session->View();
        view.ViewZ *= in ? 1.2f : 1.0f / 1.2f;
        session->Scene().SetView(view);
        in = !in;
        session->Scene().ViewSettled();
        glFinish();
    }
}
BENCHMARK(BM_RecordLabelsAfterZoomStep)->Unit(benchmark::kMillisecond);

// One step of live motion on the VATSIM demo (1,300 aircraft): the positions worked out, the symbols'
// vertex arrays set, their labels and the selection's ring recorded again, as up to ten times a second
// while aircraft move. The frame drawn after it is not counted (see BM_LiveMinuteVatsimDemo).
void BM_LiveMotionStepVatsimDemo(benchmark::State& state) {
    Target();
    DemoMap map;
    map.Configure([](sky::Settings& s) { s.Live = true; });
    auto& motion = map.session->Motion();
    qint64 nowMs = 0;
    motion.NowMs = [&] { return nowMs; };
    motion.Reported(1);
    map.session->Scene().Select({1, true, 1});
    for (auto _ : state) {
        nowMs = (nowMs + 100) % 25000; // within the two intervals the aircraft move for
        benchmark::DoNotOptimize(motion.Step());
        glFinish();
    }
}
BENCHMARK(BM_LiveMotionStepVatsimDemo)->Unit(benchmark::kMillisecond);

double ProcessCpuSeconds() {
    timespec t{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return double(t.tv_sec) + double(t.tv_nsec) / 1e9;
}

// The map window as a live minute sees it: every redraw asked for is drawn at once, and counted.
class DrawingHost : public NoHost {
public:
    void Redraw() override {
        if (!Session)
            return;
        sky::render::DrawScene(*Gl, Session->Frame());
        glFinish();
        ++Frames;
    }
    sky::render::GlApi* Gl = nullptr;
    sky::view::MapSession* Session = nullptr;
    int Frames = 0;
};

// A live minute of the VATSIM demo (1,300 aircraft) at 800 x 600, motion on, on a clock of its own that
// runs faster than the real one: the demo's live feed moves on every 15 s, so the map fetches, reads and
// shows four updates; between them it draws what the window would: a frame per motion step, ten a
// second while the aircraft glide to a new report, else one each time the fastest has moved half a pixel
// (MotionControl's interval), and a frame for every redraw the session asks for. "core" is the process's
// CPU time over the minute (the GL driver's threads too) as a share of one core: what the map costs live
// while the window shows it; "frames" the frames it drew, "updates" the new data it showed. Over Europe
// at zoom 1 (the whole globe) and 8 (a few countries: more pixels of motion, more frames).
void BM_LiveMinuteVatsimDemo(benchmark::State& state) {
    Target();
    sky::ui::GlBackend gl;
    gl.Initialise(1.0);
    gl.SetDrawableSize(800, 600);
    DrawingHost host;
    DemoFiles files;
    qint64 nowMs = 1'800'000'000'000;
    sky::network::FeedAddresses feeds;
    feeds.Json[1] = QUrl::fromLocalFile(kBuild + u"/data/demo/vatsim/vatsim-data.json"_s).toString();
    sky::view::DemoLiveFeed feed(
        files, feeds.Json[1], [&] { return nowMs; }, [] { return true; });
    sky::Settings settings;
    settings.Live = true;
    sky::view::MapSession session(sky::Folders::OneFolder(kBuild), settings, sky::Friends{}, gl, host, feed,
                                  nullptr, feeds);
    session.Live().NowMs = [&] { return nowMs; };
    session.Motion().NowMs = [&] { return nowMs; };
    session.Downloader().Now = [&] { return QDateTime::fromMSecsSinceEpoch(nowMs); };
    session.Resize(800, 600);
    session.StartUp();
    session.Scene().ShowNetwork(1);
    session.Scene().SetView({8.0f, -50.0f, float(state.range(0))});
    session.Live().Tick(); // the first data, before the minute
    host.Gl = &gl;
    host.Session = &session;
    auto& motion = session.Motion();
    for (auto _ : state) {
        host.Frames = 0;
        int updates = 0;
        const double cpuStart = ProcessCpuSeconds();
        const qint64 endMs = nowMs + 60'000;
        qint64 tickMs = nowMs + 1000, stepMs = nowMs + motion.StepIntervalMs();
        bool stepping = motion.Active();
        while (nowMs < endMs) {
            nowMs = stepping ? std::min(tickMs, stepMs) : tickMs;
            if (nowMs == tickMs) { // the window's second: the live schedule; new data glide at once
                const QString stamp = session.Tables()[1].UpdateStamp;
                session.Live().Tick();
                updates += session.Tables()[1].UpdateStamp != stamp ? 1 : 0;
                tickMs += 1000;
                if (motion.Active()) {
                    const qint64 soonMs = nowMs + motion.StepIntervalMs();
                    stepMs = stepping ? std::min(stepMs, soonMs) : soonMs;
                    stepping = true;
                }
            }
            if (stepping && nowMs >= stepMs) {
                stepping = motion.Step();
                host.Redraw();
                stepMs = nowMs + motion.StepIntervalMs();
            }
        }
        state.counters["core"] = (ProcessCpuSeconds() - cpuStart) / 60.0;
        state.counters["frames"] = host.Frames;
        state.counters["updates"] = updates;
    }
    host.Session = nullptr;
    gl.Release();
}
BENCHMARK(BM_LiveMinuteVatsimDemo)
    ->ArgName("zoom")
    ->Arg(1)
    ->Arg(8)
    ->Iterations(2)
    ->Unit(benchmark::kMillisecond);

void BM_DrawEmptyFrame(benchmark::State& state) {
    Target();
    for (auto _ : state) {
        glClear(GL_COLOR_BUFFER_BIT);
        glFinish();
    }
}
BENCHMARK(BM_DrawEmptyFrame)->Unit(benchmark::kMillisecond);

// One layer's list alone, at view 1, with the smoothing the frame gives it: where a frame's time goes.
void BM_DrawOneLayer(benchmark::State& state) {
    Target();
    DemoMap map;
    auto& gl = map.gl;
    const int list = int(state.range(0));
    const bool smoothed = list >= 51 && list <= 54;
    for (auto _ : state) {
        gl.Clear();
        gl.LoadIdentity();
        gl.Ortho(-1, 1, -1, 1, -10, 1);
        gl.Translate(0, 0, -1);
        gl.Rotate(-54.15f, -1, 0, 0);
        gl.Rotate(13.34f, 0, -1, 0);
        gl.Viewport(400 - 600, -300, 1200, 1200);
        gl.Scale(1.49f, 1.49f, 1.49f);
        if (smoothed)
            gl.Enable(sky::render::Capability::LineSmooth);
        gl.CallList(list);
        gl.Disable(sky::render::Capability::LineSmooth);
        glFinish();
    }
}
BENCHMARK(BM_DrawOneLayer)
    ->ArgName("list")
    ->Arg(51)
    ->Arg(52)
    ->Arg(53)
    ->Arg(54)
    ->Arg(20)
    ->Arg(21)
    ->Arg(22)
    ->Arg(23)
    ->Arg(24)
    ->Arg(25)
    ->Arg(26)
    ->Arg(27)
    ->Arg(28)
    ->Arg(64)
    ->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    QGuiApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    {
        GlTarget target;
        g_target = &target;
        benchmark::RunSpecifiedBenchmarks();
        g_target = nullptr;
    }
    benchmark::Shutdown();
    return 0;
}
