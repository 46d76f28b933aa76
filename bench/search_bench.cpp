#include <benchmark/benchmark.h>

#include "common/file_io.h"
#include "network/whazzup.h"
#include "refdata/reference_data.h"
#include "search/search_index.h"

using namespace Qt::StringLiterals;

namespace {

// The shipped airports and FIRs (about 21,500 places) and both demo feeds (about 2,600 clients): a
// search runs over them all at every key stroke.
struct Haystack {
    Haystack() {
        const QString data = QStringLiteral(SKYLANTRA_SOURCE_DIR) + u"/data"_s;
        reference = sky::ReferenceData::Load(data);
        for (int n = 0; n < 2; ++n) {
            const auto bytes = sky::ReadWholeFile(
                data + (n == 0 ? u"/demo/ivao/whazzup.txt"_s : u"/demo/vatsim/whazzup.txt"_s));
            sky::network::InterpretWhazzup(n, QString::fromUtf8(bytes.value_or(QByteArray())), reference,
                                           tables[size_t(n)], {});
        }
        index.SetPlaces(reference);
        index.SetClients(tables, {0, 1});
    }
    sky::ReferenceData reference;
    sky::network::ClientTables tables;
    sky::search::SearchIndex index;
};

void BM_SearchPerKeyStroke(benchmark::State& state) {
    static const Haystack haystack;
    const QString queries[] = {u"d"_s, u"dl"_s, u"dlh4"_s, u"frankf"_s, u"müller"_s, u"zurich air"_s};
    size_t i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(haystack.index.Find(queries[i++ % std::size(queries)]));
    state.counters["entries"] = haystack.index.Size();
}
BENCHMARK(BM_SearchPerKeyStroke)->Unit(benchmark::kMillisecond);

} // namespace
