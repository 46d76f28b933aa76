#include <benchmark/benchmark.h>

#include <QStringList>

#include "common/file_io.h"
#include "common/text_codec.h"
#include "network/fields.h"
#include "network/json_feeds.h"
#include "network/whazzup_parse.h"
#include "refdata/reference_data.h"

using namespace Qt::StringLiterals;

namespace {

const QString kData = QStringLiteral(SKYLANTRA_SOURCE_DIR) + u"/data"_s;

const sky::ReferenceData& Reference() {
    static const sky::ReferenceData reference = sky::ReferenceData::Load(kData);
    return reference;
}

// The bundled VATSIM demo file.
const QString& DemoFile() {
    static const QString text =
        sky::DecodeText(sky::ReadWholeFile(kData + u"/demo/vatsim/whazzup.txt"_s).value_or(QByteArray()))
            .Text;
    return text;
}

// A file at the limits of the tables: 1,400 pilots and 700 controllers, VATSIM layout.
const QString& FullTablesFile() {
    static const QString text = []() -> QString {
        QStringList lines = {u"!GENERAL"_s, u"UPDATE = 20261121142300"_s, u"CONNECTED CLIENTS = 2100"_s,
                             u"!CLIENTS"_s};
        const QStringList demo = DemoFile().split(u"\r\n"_s);
        QStringList pilots, controllers;
        for (const QString& line : demo) {
            const QString type = line.section(u':', 3, 3);
            if (type == u"PILOT")
                pilots += line;
            else if (type == u"ATC")
                controllers += line;
        }
        for (int i = 0; i < 700; ++i)
            lines += controllers[i % controllers.size()];
        for (int i = 0; i < 1400; ++i)
            lines += pilots[i % pilots.size()];
        return lines.join(u"\r\n"_s) + u"\r\n"_s;
    }();
    return text;
}

// Reaches a field by splitting the whole line again, every time one is asked for.
class ResplitFields {
public:
    explicit ResplitFields(QStringView line) : m_line(line) {}
    QStringView operator[](qsizetype index) const {
        const QList<QStringView> fields = m_line.split(u':');
        return index >= 0 && index < fields.size() ? fields[index] : QStringView();
    }
    QString Text(qsizetype index) const { return (*this)[index].toString(); }

private:
    QStringView m_line;
};

const QString& FileFor(int which) {
    return which == 0 ? DemoFile() : FullTablesFile();
}

template <typename Fields> void Interpret(benchmark::State& state) {
    const QString& text = FileFor(int(state.range(0)));
    sky::network::NetworkData data;
    const QDateTime now = QDateTime::currentDateTime();
    for (auto _ : state) {
        auto result = sky::network::detail::InterpretLines<Fields>(1, text, Reference(), data, now, {});
        benchmark::DoNotOptimize(result);
    }
    state.SetBytesProcessed(state.iterations() * text.toUtf8().size());
    state.SetLabel(state.range(0) == 0 ? "VATSIM demo file" : "1400 pilots + 700 controllers");
}

void BM_Interpret(benchmark::State& state) {
    Interpret<sky::network::LineFields>(state);
}
void BM_InterpretResplittingEveryField(benchmark::State& state) {
    Interpret<ResplitFields>(state);
}

// Only finds the line and field separators, as any reader of the format must: the floor under an
// interpreter.
void BM_BareScan(benchmark::State& state) {
    const QString& text = FileFor(int(state.range(0)));
    for (auto _ : state) {
        qsizetype fields = 0;
        for (QStringView line : sky::network::SplitNetworkLines(text))
            fields += sky::network::LineFields(line).Count();
        benchmark::DoNotOptimize(fields);
    }
    state.SetBytesProcessed(state.iterations() * text.toUtf8().size());
}

// Counts the separators without finding where they are: what the memory and the vector unit allow.
void BM_CountSeparators(benchmark::State& state) {
    const QString& text = FileFor(int(state.range(0)));
    for (auto _ : state) {
        qsizetype separators = 0;
        for (QChar c : text)
            separators += (c == u'\n') + (c == u':');
        benchmark::DoNotOptimize(separators);
    }
    state.SetBytesProcessed(state.iterations() * text.toUtf8().size());
}

// Today's VATSIM feed: the v3 JSON of the demo traffic, translated into whazzup lines and interpreted.
void BM_TranslateAndInterpretVatsimJson(benchmark::State& state) {
    const QByteArray json =
        sky::ReadWholeFile(kData + u"/demo/vatsim/vatsim-data.json"_s).value_or(QByteArray());
    const auto transceivers = sky::network::ParseVatsimTransceivers(
        sky::ReadWholeFile(kData + u"/demo/vatsim/transceivers-data.json"_s).value_or(QByteArray()));
    sky::network::NetworkData data;
    const QDateTime now = QDateTime::currentDateTime();
    for (auto _ : state) {
        const sky::network::TranslatedFeed feed = sky::network::TranslateVatsimV3(json, transceivers);
        auto result = sky::network::InterpretWhazzup(1, feed.Text, Reference(), data, now);
        benchmark::DoNotOptimize(result);
    }
    state.SetBytesProcessed(state.iterations() * json.size());
    state.SetLabel("VATSIM demo traffic as v3 JSON");
}
BENCHMARK(BM_TranslateAndInterpretVatsimJson);

BENCHMARK(BM_Interpret)->Arg(0)->Arg(1);
BENCHMARK(BM_InterpretResplittingEveryField)->Arg(0)->Arg(1);
BENCHMARK(BM_BareScan)->Arg(0)->Arg(1);
BENCHMARK(BM_CountSeparators)->Arg(0)->Arg(1);

} // namespace
