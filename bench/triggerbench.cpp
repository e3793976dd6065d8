#include "bench/triggerbench.h"

#include <benchmark/benchmark.h>

#include "bench/bars.h"
#include "bench/framerig.h"
#include "interface/kirotriggerdata.h"
#include "schema/kiroglobalelements.h"
#include "tools/tuningfile/files.h"

namespace
{

/// Three zones on each of three levels, with gaps between them.
class TriggerTree
{
public:
    TriggerTree()
    {
        for (UINT32 leaf = 0; leaf < Leaves; ++leaf)
        {
            m_leaves[leaf] = {Zone(leaf), static_cast<FLOAT>(leaf)};
        }
        for (UINT32 node = 0; node < Nodes; ++node)
        {
            m_nodes[node] = {Zone(node), Zones, 0, &m_leaves[static_cast<size_t>(node) * Zones]};
        }
        for (UINT32 root = 0; root < Zones; ++root)
        {
            m_roots[root] = {Zone(root), Zones, 0, &m_nodes[static_cast<size_t>(root) * Zones]};
        }
    }

    AECTriggerXMLData Data()
    {
        return {m_roots, {3, sizeof(FLOAT)}, Zones};
    }

private:
    static constexpr UINT32 Zones  = 3;
    static constexpr UINT32 Nodes  = Zones * Zones;
    static constexpr UINT32 Leaves = Nodes * Zones;

    static StartEndType Zone(UINT32 index)
    {
        const FLOAT start = 10.0f * static_cast<FLOAT>(index % Zones);
        return {start, start + 5.0f};
    }

    TriggerSystemEndLevelType         m_leaves[Leaves];
    ThreeLevelTriggerSystemLevel2Type m_nodes[Nodes];
    ThreeLevelTriggerSystemLevel1Type m_roots[Zones];
};

/// All three triggers lie in gaps, so that all records around the point take part.
VOID EvaluateTrigger(benchmark::State& rState)
{
    FrameRig             rig(tuningfile::CompileFile(KIRO_EXAMPLE_TUNINGS "minimal.yaml"), kirosim::Sensor{});
    IKIROCoreAlgo*       pAlgo = rig.Host().Algo();
    TriggerTree          tree;
    AECTriggerXMLData    data  = tree.Data();
    CKIROTriggerDataXML* pData = pAlgo->createDataXml(pAlgo, KIROMLBaseDataType);
    if (pData == nullptr)
    {
        rState.SkipWithError("no memory");
        return;
    }
    pData->SetData(pData, &data, KIROMLBaseDataType);
    FLOAT trigger = 7.0f;
    for ([[maybe_unused]] auto _ : rState)
    {
        benchmark::DoNotOptimize(trigger);
        benchmark::DoNotOptimize(*static_cast<const FLOAT*>(pData->GetData(pData, trigger, 8.0f, 17.0f)));
    }
    pData->DestoryInstance(pData);
}

}  // namespace

VOID RegisterTriggerBenchmark(Rounds& rRounds)
{
    (VOID) rRounds.Add(benchname::TriggerTree, EvaluateTrigger);
}
