// How the luma histogram is stretched.

#include "core/base/kirolog.h"
#include "core/extension/ckiroextensionmonitor.h"

using namespace kiroextension;

namespace
{

/// A scale below it would squeeze the histogram.
constexpr FLOAT MinScaling = 1.0f;

}  // namespace

VOID CKIROExtensionMonitor::ProcessYHistStretch(const KIROExtensionInput& rExtIn, const ExtensionYHistStretch& rTuning)
{
    const KIROConvergenceOutput  noConvergence{};
    const KIROConvergenceOutput& rConvOut =
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

/// Only value banks hold the payload of this size by value; a tuned bank could answer with another record of the size.
bool CKIROExtensionMonitor::ReadStretchEntry(const DataBankType& rEntry, FLOAT& rValue)
{
    KIROGetBankData entry{rEntry.bankID, rEntry.dataID, nullptr, sizeof(DBStartEndPayload)};
    if (!IsValueBank(rEntry.bankID) || m_rContext.m_pBankManager->GetControlData(&entry) != 0)
    {
        return false;
    }
    rValue = static_cast<const DBStartEndPayload*>(entry.pData)->value.start;
    return true;
}

VOID CKIROExtensionMonitor::FilterStretch(FLOAT clamp, FLOAT scaling, FLOAT strength)
{
    if (scaling >= MinScaling)
    {
        m_histStrechData.clamp   = m_histStrechData.clamp * strength + clamp * (1.0f - strength);
        m_histStrechData.scaling = m_histStrechData.scaling * strength + scaling * (1.0f - strength);
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
