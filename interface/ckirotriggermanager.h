/// @file
/// Answers which gains the tuned snapshot settings ask for at a lux index: for the frames of a bracket with an EV of
/// zero, above and below it, and for a snapshot outside a bracket.
#pragma once

#include "interface/kirotriggerdata.h"
#include "platform/tavocommonutils.h"
#include "schema/kirodbsnapshot.h"

class CKIROTwoFloatsXML;
class IKIROContextManager;

/// For hosts, with what GetKiroContextManager gives. Not for use while a frame's stage runs: the queries read the
/// banks.
///
/// Each query abandons a small object: a host asks once per snapshot, not once per frame. One that wants to leave
/// nothing behind looks the zones up by itself, with an object of createDataXml, over the settings that getBankData
/// answers.
class TAVO_VISIBLE CKIROTriggerManager
{
public:
    /// @param rContextManager outlives the object
    explicit CKIROTriggerManager(IKIROContextManager& rContextManager);
    CKIROTriggerManager(const CKIROTriggerManager&)            = delete;
    CKIROTriggerManager& operator=(const CKIROTriggerManager&) = delete;
    ~CKIROTriggerManager();

    /// Looks the settings up in BankIDSnapshot. Without an entry of the ID the settings found last stay: after a change
    /// of tuning a host asks with an ID that exists, or with a new object.
    /// @param dataID 0 for the entry that the context selects
    VOID UpdateSnapshotDBTriggerSystems(UINT32 dataID);

    // The queries. The input holds the lux index in data[0] and the ID of the settings. The output is ADRC gain and
    // dark boost gain, both 0 if no settings have been found or the input is null.
    VOID GetSnapshotDBBracketingEVZero(const KIROGeneralizedTriggerSystemInput* pInput,
                                       KIROGeneralizedTriggerSystemOutput&      rOutput);
    VOID GetSnapshotDBBracketingEVPlus(const KIROGeneralizedTriggerSystemInput* pInput,
                                       KIROGeneralizedTriggerSystemOutput&      rOutput);
    VOID GetSnapshotDBBracketingEVMinus(const KIROGeneralizedTriggerSystemInput* pInput,
                                        KIROGeneralizedTriggerSystemOutput&      rOutput);
    VOID GetSnapshotDBNonBracketing(const KIROGeneralizedTriggerSystemInput* pInput,
                                    KIROGeneralizedTriggerSystemOutput&      rOutput);

private:
    using ExposureConfigType = kirodbsnapshot::ExposureConfigType;
    using DBSnapshotPayload  = kirodbsnapshot::DBSnapshotPayload;

    VOID SetBracketingEVZeroTuning();
    VOID SetBracketingEVPlusTuning();
    VOID SetBracketingEVMinusTuning();
    VOID SetNonBracketingTuning();
    VOID DeleteBracketingEVZeroTuning();
    VOID DeleteBracketingEVPlusTuning();
    VOID DeleteBracketingEVMinusTuning();
    VOID DeleteNonBracketingTuning();

    /// The common part of the queries: a query fetches the settings, builds its object by pSetTuning, and evaluates it.
    VOID Answer(const KIROGeneralizedTriggerSystemInput* pInput, VOID (CKIROTriggerManager::*pSetTuning)(),
                CKIROTwoFloatsXML* CKIROTriggerManager::*ppTriggerData, const CHAR* pFailure,
                KIROGeneralizedTriggerSystemOutput& rOutput);

    static CKIROTwoFloatsXML* NewTriggerData(const ExposureConfigType& rTuning);

    IKIROContextManager& m_rContextManager;
    DBSnapshotPayload*   m_pSnapshotTuning;  ///< found last, in the tuning or in the host's memory
    ExposureConfigType*  m_pBracketingEVZeroTuning;
    ExposureConfigType*  m_pBracketingEVPlusTuning;
    ExposureConfigType*  m_pBracketingEVMinusTuning;
    ExposureConfigType*  m_pNonBracketingTuning;
    // Of the last query each. Not freed: see the delete operations.
    CKIROTwoFloatsXML* m_pBracketingEVZero;
    CKIROTwoFloatsXML* m_pBracketingEVPlus;
    CKIROTwoFloatsXML* m_pBracketingEVMinus;
    CKIROTwoFloatsXML* m_pNonBracketing;
};
