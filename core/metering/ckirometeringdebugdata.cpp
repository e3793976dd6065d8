// What metering writes into the host's debug record.

#include <cstring>

#include "core/base/debugdata.h"
#include "core/base/kirolog.h"
#include "core/base/tuningaccess.h"
#include "core/contextdebugdata.h"
#include "core/metering/ckiromodmetering.h"
#include "interface/kiroresults.h"
#include "schema/kiromtrtablegen.h"

VOID CKIROMetering::PopulateDebugData(const KIROMeteringOutput& rOutput) const
{
    AECDebugData* pDebug = debugdata::Enabled(m_rContextManager);
    if (pDebug == nullptr)
    {
        return;
    }
    pDebug->meteringInfo.bIsMeteringSkipped = static_cast<UINT8>(rOutput.bIsMeteringSkipped);
    for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
    {
        pDebug->meteringInfo.exposures[type] = rOutput.exposures[type];
    }
}

/// @return 1 without both flash frames or without the bias table
KiroResult CKIROMetering::FillFlashDebugData(AECDebugDataFlashType* pRecord, const KIROMeteringOutput& rOutput) const
{
    CKIROHistory&          rHistory = *m_rContextManager.m_pHistory;
    CKIROBankManager&      rBanks   = *m_rContextManager.m_pBankManager;
    const AECFrameHistory* pOff     = rHistory.GetFlashFrame(KIROExtFlashCurrentType::Off);
    const AECFrameHistory* pLow     = rHistory.GetFlashFrame(KIROExtFlashCurrentType::Low);
    if (pOff == nullptr || pLow == nullptr)
    {
        STATS_LOG_ERROR("no flash frames for debug data: off %p low %p", static_cast<const VOID*>(pOff),
                        static_cast<const VOID*>(pLow));
        return ResultFailed;
    }
    pRecord->frameOff  = debugdata::Frame(*pOff);
    pRecord->frameLow  = debugdata::Frame(*pLow);
    pRecord->flux      = rBanks.GetDataTriggers(TriggerFlashFlux)->value;
    pRecord->influence = rBanks.GetDataTriggers(TriggerFlashInfluence)->value;
    pRecord->luxIndex  = rBanks.GetDataTriggers(TriggerCtrlLux)->value;

    pRecord->targets[AECAlgoExposureShort] = rBanks.GetDataTriggers(TriggerCtrlShortTgt)->value;
    pRecord->targets[AECAlgoExposureLong]  = rBanks.GetDataTriggers(TriggerCtrlLongTgt)->value;
    pRecord->targets[AECAlgoExposureSafe]  = rBanks.GetDataTriggers(TriggerCtrlSafeTgt)->value;
    for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
    {
        pRecord->exposures[type] = rOutput.exposures[type];
    }

    const auto& rTableGen = tuningaccess::Require_kiromtrtablegen(*m_rContextManager.GetTuningData());
    const auto* pTable    = rBanks.GetDataMetering2D(rTableGen.flashBiasMetTblGen.mtrTblConfig.dataBankID);
    if (pTable == nullptr)
    {
        STATS_LOG_ERROR("could not get smart bias table");
        return ResultFailed;
    }
    static_assert(sizeof(pRecord->biasTable) == sizeof(pTable->weights));
    std::memcpy(pRecord->biasTable, pTable->weights, sizeof(pRecord->biasTable));
    return 0;
}
