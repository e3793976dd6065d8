#include "core/base/instancetuning.h"

#include <algorithm>

InstanceTuning& InstanceTuning::operator=(const StatsTuningData& rTuningData)
{
    StatsTuningData::operator=(rTuningData);
    std::fill(std::begin(m_pRecords), std::end(m_pRecords), nullptr);
    m_stamp = {};
    return *this;
}

VOID* InstanceTuning::LookUp(RecordModule module, const CHAR* pName, UINT64 nameHash)
{
    const auto* pPath   = static_cast<const TuningMode*>(pTuningModeSelectors);
    LookupStamp stamp   = {};
    VOID*       pRecord = static_cast<TuningSetManager*>(pTuningSetManager)
                        ->KeepModuleRecord(pName, nameHash, pPath, numSelectors, &stamp);
    if (stamp.pSerial != nullptr && numSelectors == PathLength)
    {
        if (m_stamp.pSerial == nullptr || m_stamp.serial != stamp.serial || !IsAsBefore())
        {
            std::fill(std::begin(m_pRecords), std::end(m_pRecords), nullptr);
            std::memcpy(m_path, pPath, sizeof(m_path));
            m_stamp = stamp;
        }
        m_pRecords[static_cast<UINT32>(module)] = pRecord;
    }
    return pRecord;
}
