#include "bench/rounds.h"

#include <fmt/format.h>

benchmark::internal::Benchmark* Rounds::Add(const CHAR* pName, const std::function<VOID(benchmark::State&)>& run)
{
    const size_t index = m_counts.size();
    m_counts.emplace_back();
    return benchmark::RegisterBenchmark(pName,
                                        [this, pName, index, run](benchmark::State& rState)
                                        {
                                            Note(pName, index, rState.max_iterations);
                                            run(rState);
                                        });
}

VOID Rounds::Note(const CHAR* pName, size_t index, benchmark::IterationCount iterations)
{
    // At first a benchmark looks for the number of iterations that takes long enough: that is one round.
    Count& rCount = m_counts[index];
    if (iterations > rCount.iterations)
    {
        m_rounds -= rCount.rounds;
        rCount = {iterations, 0};
    }
    const std::string total =
        (m_perBenchmark > 0) ? fmt::format(" of {}", m_perBenchmark * m_counts.size()) : std::string();
    m_rProgress.Show(fmt::format("round {}{}, {}", m_rounds + 1, total, pName));
    ++rCount.rounds;
    ++m_rounds;
}
