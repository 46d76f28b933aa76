#include <benchmark/benchmark.h>

#include <QCoreApplication>

// The benchmarks' main for code that needs an application object (Qt SQL, timers, file watchers).
int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
