#include <vector>

#include <benchmark/benchmark.h>

#include "geo/geodesy.h"

namespace {

// A coastline-sized run of positions, spread over the globe.
std::vector<sky::geo::LatLon> Positions(size_t count) {
    std::vector<sky::geo::LatLon> points(count);
    for (size_t i = 0; i < count; ++i)
        points[i] = {float(int(i * 7) % 180 - 90), float(int(i * 13) % 360 - 180)};
    return points;
}

void BM_GlobeVertices(benchmark::State& state) {
    const auto points = Positions(size_t(state.range(0)));
    for (auto _ : state) {
        float sum = 0;
        for (const auto& p : points)
            sum += sky::geo::GlobeX(p.Lat, p.Lon) + sky::geo::GlobeY(p.Lat, p.Lon) +
                   sky::geo::GlobeZ(p.Lat, p.Lon);
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_GlobeVertices)->Arg(100000);

void BM_DistanceAndCourse(benchmark::State& state) {
    const auto points = Positions(size_t(state.range(0)));
    for (auto _ : state) {
        float sum = 0;
        for (const auto& p : points)
            sum += sky::geo::Distance(50.03f, 8.57f, p.Lat, p.Lon) +
                   sky::geo::Course(50.03f, 8.57f, p.Lat, p.Lon);
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_DistanceAndCourse)->Arg(10000);

} // namespace
