/// @file
/// The lux index of a flash snapshot: that of the scene without LED, moved by how far the luma under full flash is from
/// its target.
#pragma once

#include "core/metering/ckiroanalyzeralgorithm.h"
#include "schema/kiroflashsnapshot.h"

class CAnalyzerAlgorithm002 : public CAnalyzerAlgorithm
{
public:
    CAnalyzerAlgorithm002();

    AnalyzerAlgorithmOutput RunAlgorithm(const AnalyzerAlgorithmInput& rInput) override;

    VOID SetTuning(UINT32 analyzerID, IKIROContextManager& rContextManager) override;

private:
    const kiroflashsnapshot::FlashSnapshotLux* m_pFlashSnapshotLuxTuning;
};
