#include "core/ckiromtrtablegen.h"

#include "core/base/kirolog.h"
#include "core/base/tuningaccess.h"

CKIROMtrTableGen::CKIROMtrTableGen(InstanceTuning& rTuningData, IKIROContextManager& rContextManager)
    : ModuleCommon(rTuningData, rContextManager), m_pTuning(nullptr), m_metTable{}, m_metBkGrdTable{}, m_metFrGrdTable{}
{
}

KiroResult CKIROMtrTableGen::RunTableGen()
{
    UpdateMtrTableGen();
    return (m_rContextManager.GetInput()->snapshotMode == KIROCoreSnapshotType::Flash) ? RunTableGenFlashSnapshot()
                                                                                       : RunTableGeneration();
}

VOID CKIROMtrTableGen::UpdateMtrTableGen()
{
    const Tuning* pTuning = tuningaccess::Get_kiromtrtablegen(*m_pTuningData);
    m_tuning.Refresh(pTuning, [this](const Tuning* pRecord) { Rebuild(pRecord); });
    m_pTuning = &tuningaccess::OrZeros(pTuning);
}

VOID CKIROMtrTableGen::Rebuild(const Tuning* pTuning)
{
    // A live edit leaves the bank as it is, with pointers to the tables that go now.
    m_rContextManager.m_pBankManager->RemoveData(BankIDMetering2D, SourceModuleMtrTableGen);
    m_tableGenerators.clear();
    if (pTuning == nullptr)
    {
        return;
    }
    m_tableGenerators.reset(pTuning->tableGeneratorCount);
    for (UINT32 index = 0; index < m_tableGenerators.size(); ++index)
    {
        m_tableGenerators[index].SetGeneratorTuning(&pTuning->tableGenerator[index], m_rContextManager);
    }
}

KiroResult CKIROMtrTableGen::RunTableGeneration()
{
    KiroResult result = 0;
    for (UINT32 index = 0; index < m_tableGenerators.size(); ++index)
    {
        STATS_LOG_TRACE("Table Generator %d-th (tot:%d)", index, m_tableGenerators.size());
        const KiroResult generated = m_tableGenerators[index].Run();
        result                     = (generated != 0) ? generated : result;
    }
    return result;
}

FLOAT CKIROMtrTableGen::ReadTrigger(KIROTriggerType trigger) const
{
    return m_rContextManager.m_pBankManager->GetDataTriggers(trigger)->value;
}

VOID CKIROMtrTableGen::StoreTable(DBMeter2DWeightPayload& rTable, INT32 dataID)
{
    rTable.dataID = dataID;
    (VOID) m_rContextManager.m_pBankManager->SetDataMetering2D({dataID, &rTable, SourceModuleMtrTableGen});
}
