/// @file
/// Registers benchmarks, and shows a person at a terminal which one runs and how many rounds are done.
#pragma once

#include <benchmark/benchmark.h>
#include <functional>
#include <vector>

#include "platform/tavotypes.h"
#include "tools/program/progress.h"

/// Must outlive the benchmarks that were added.
class Rounds
{
public:
    /// @param perBenchmark rounds of each; 0 if that, or how many benchmarks will run, is not known
    Rounds(program::Progress& rProgress, UINT64 perBenchmark) : m_rProgress(rProgress), m_perBenchmark(perBenchmark)
    {
    }

    benchmark::internal::Benchmark* Add(const CHAR* pName, const std::function<VOID(benchmark::State&)>& run);

    size_t BenchmarkCount() const
    {
        return m_counts.size();
    }

private:
    struct Count
    {
        benchmark::IterationCount iterations = 0;
        UINT64                    rounds     = 0;
    };

    VOID Note(const CHAR* pName, size_t index, benchmark::IterationCount iterations);

    program::Progress& m_rProgress;
    const UINT64       m_perBenchmark;
    std::vector<Count> m_counts;
    UINT64             m_rounds = 0;  ///< of all benchmarks
};
