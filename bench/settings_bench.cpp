#include <benchmark/benchmark.h>

#include <QTemporaryDir>

#include "app/ini_file.h"
#include "alerts/watch_list.h"
#include "app/settings.h"
#include "common/file_io.h"

namespace {

// Start-up and shut-down each read or write the whole settings file once; a hand-grown file with many
// unknown keys must not make that noticeable.
QByteArray LargeSettingsFile(int extraKeys) {
    sky::IniFile ini;
    sky::WriteSettings(sky::ReadSettings(ini, {}), {}, 15.0f, ini);
    QByteArray bytes = ini.ToBytes() + "\n[Extra]\n";
    for (int i = 0; i < extraKeys; ++i)
        bytes += "Key" + QByteArray::number(i) + "=value " + QByteArray::number(i) + "\n";
    return bytes;
}

void BM_ReadSettings(benchmark::State& state) {
    const QByteArray bytes = LargeSettingsFile(int(state.range(0)));
    for (auto _ : state) {
        const sky::Settings settings = sky::ReadSettings(sky::IniFile::FromBytes(bytes), {});
        benchmark::DoNotOptimize(settings.WindowWidth);
    }
}
BENCHMARK(BM_ReadSettings)->Arg(0)->Arg(10000);

void BM_WriteSettings(benchmark::State& state) {
    const QByteArray bytes = LargeSettingsFile(int(state.range(0)));
    const sky::Settings settings = sky::ReadSettings(sky::IniFile::FromBytes(bytes), {});
    for (auto _ : state) {
        sky::IniFile ini = sky::IniFile::FromBytes(bytes);
        sky::WriteSettings(settings, {}, 15.0f, ini);
        benchmark::DoNotOptimize(ini.ToBytes());
    }
}
BENCHMARK(BM_WriteSettings)->Arg(0)->Arg(10000);

// A watch list grown by a script: every line a pattern of its own, read as start-up reads it.
void BM_LoadWatchList(benchmark::State& state) {
    QByteArray bytes;
    for (int i = 0; i < int(state.range(0)); ++i)
        bytes += "W" + QByteArray::number(i) + "_*\n";
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("watch.dat"));
    sky::WriteFileAtomically(path, bytes);
    for (auto _ : state)
        benchmark::DoNotOptimize(sky::alerts::WatchList::Load(path).Patterns().size());
}
BENCHMARK(BM_LoadWatchList)
    ->ArgName("lines")
    ->Arg(20000)
    ->Arg(80000)
    ->Arg(200000)
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

} // namespace
