// How the luma histogram is stretched.

#include "core/base/kirolog.h"
#include "core/base/soundvalue.h"
#include "core/extension/ckiroextensionmonitor.h"

using namespace kiroextension;

namespace
{

/// A scale below it would squeeze the histogram.
constexpr FLOAT MinScaling = 1.0f;

}  // namespace

VOID CKIROExtensionMonitor::ProcessYHistStretch(const KIROExtensionInput& rExtIn, const ExtensionYHistStretch& rTuning)
{
    static const KIROConvergenceOutput noConvergence{};
    const KIROConvergenceOutput&       rConvOut =
        (rExtIn.pConvergenceOuts != nullptr) ? *rExtIn.pConvergenceOuts : noConvergence;
    STATS_LOG_TRACE("YHistStretch enabled:%d, AECSettled:%d", rTuning.enableYHistStretch, rConvOut.bSettle);

    m_histStrechData.enable = rTuning.enableYHistStretch;
    if (m_histStrechData.enable != TRUE || rExtIn.statisticsStartup == StatisticsStartUpInvalid)
    {
        ResetStretch();
    }
    else if (rConvOut.bSettle == TRUE && rConvOut.bIsConvTargetFixed != TRUE)
    {
        FLOAT clamp   = 0.0f;
        FLOAT scaling = 0.0f;
        if (!ReadStretch(rTuning, clamp, scaling))
        {
            return;
        }
        FilterStretch(clamp, scaling, rTuning.tempFilterStrength);
    }
    STATS_LOG_TRACE("clamp:%f, scaling:%f, filter:%f, procRun:%d", m_histStrechData.clamp, m_histStrechData.scaling,
                    rTuning.tempFilterStrength, rConvOut.bIfConvProcRun);
}

bool CKIROExtensionMonitor::ReadStretch(const ExtensionYHistStretch& rTuning, FLOAT& rClamp, FLOAT& rScaling)
{
    if (!ReadStretchEntry(rTuning.clampValue, rClamp))
    {
        STATS_LOG_ERROR("Unable to get clamp data from bankID:%d dataID:%d", rTuning.clampValue.bankID,
                        rTuning.clampValue.dataID);
        return false;
    }
    if (!ReadStretchEntry(rTuning.scalingValue, rScaling))
    {
        STATS_LOG_ERROR("Unable to get scaling data from bankID:%d dataID:%d", rTuning.scalingValue.bankID,
                        rTuning.scalingValue.dataID);
        return false;
    }
    return true;
}

/// The start of a pair, the value of a number. Tuned banks hold records of other kinds and are refused.
bool CKIROExtensionMonitor::ReadStretchEntry(const DataBankType& rEntry, FLOAT& rValue)
{
    const bool      isPair = rEntry.bankID == BankIDSceneAnalyzer;
    const size_t    size   = isPair ? sizeof(DBStartEndPayload) : sizeof(DBFloatPayload);
    KIROGetBankData entry{rEntry.bankID, rEntry.dataID, nullptr, static_cast<INT32>(size)};
    if (!IsValueBank(rEntry.bankID) || m_rContext.m_pBankManager->GetControlData(&entry) != 0)
    {
        return false;
    }
    rValue = isPair ? static_cast<const DBStartEndPayload*>(entry.pData)->value.start
                    : static_cast<const DBFloatPayload*>(entry.pData)->value;
    return true;
}

VOID CKIROExtensionMonitor::FilterStretch(FLOAT clamp, FLOAT scaling, FLOAT strength)
{
    if (scaling >= MinScaling)
    {
        FLOAT& rClamp   = m_histStrechData.clamp;
        FLOAT& rScaling = m_histStrechData.scaling;
        rClamp          = soundvalue::OrLast(rClamp * strength + clamp * (1.0f - strength), rClamp, 0.0f, "clamp");
        rScaling = soundvalue::OrLast(rScaling * strength + scaling * (1.0f - strength), rScaling, 1.0f, "scaling");
    }
    else
    {
        STATS_LOG_TRACE("Scale value is less than minimum YHist scale value");
        ResetStretch();
    }
}

VOID CKIROExtensionMonitor::ResetStretch()
{
    m_histStrechData.clamp   = 0.0f;
    m_histStrechData.scaling = 1.0f;
}
