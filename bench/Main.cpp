#include <benchmark/benchmark.h>

#include "bench/Table.h"

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    bench::Table table;
    benchmark::RunSpecifiedBenchmarks(&table);
    benchmark::Shutdown();
}
