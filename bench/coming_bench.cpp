#include <benchmark/benchmark.h>

#include <QByteArray>

#include "coming/coming_lists.h"

namespace {

// An answer of the bookings service with this many bookings, as it lays them out.
QByteArray Bookings(int count) {
    QByteArray json = "[";
    for (int i = 0; i < count; ++i)
        json +=
            (i ? "," : "") + QByteArray(R"({"id": )") + QByteArray::number(i) +
            R"(, "callsign": "EDDF_TWR", "cid": 1234567, "type": "booking", "start": "2026-11-21 18:00:00",
                "end": "2026-11-21 20:00:00", "division": "EUD", "subdivision": "GER"})";
    return json + "]";
}

// The bookings service's answer read into the list the board and the boxes show: a busy day's 2,000,
// and 50,000, of which the first 10,000 are kept.
void BM_ParseBookings(benchmark::State& state) {
    const QByteArray json = Bookings(int(state.range(0)));
    for (auto _ : state) {
        auto list = sky::coming::ParseBookings(json);
        benchmark::DoNotOptimize(list);
    }
    state.SetBytesProcessed(state.iterations() * json.size());
}
BENCHMARK(BM_ParseBookings)->Arg(2000)->Arg(50000)->Unit(benchmark::kMillisecond);

} // namespace
