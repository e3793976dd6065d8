/// @file
/// Answers which gains the tuned snapshot settings ask for at a lux index: for the frames of a bracket with an EV of
/// zero, above and below it, and for a snapshot outside a bracket.
#pragma once

#include "interface/kirotriggerdata.h"
#include "platform/tavocommonutils.h"
#include "schema/kirodbsnapshot.h"

class CKIROTwoFloatsXML;
class IKIROContextManager;

/// For hosts, with what GetKiroContextManager gives. Not for use while a stage runs: the queries read the banks. They
/// look at fixed gains alone (fixedDRC); the tuned method, and whether a bracket has any, is the host's to follow.
///
/// Each query abandons a small object: a host asks once per snapshot, not once per frame. One that wants to leave
/// nothing behind looks the zones up by itself, with an object of createDataXml, over the settings that getBankData
/// answers, as host/snapshotgains.cpp does.
class TAVO_VISIBLE CKIROTriggerManager
{
public:
    /// @param rContextManager outlives the object
    explicit CKIROTriggerManager(IKIROContextManager& rContextManager);
    CKIROTriggerManager(const CKIROTriggerManager&)            = delete;  ///< one owner
    CKIROTriggerManager& operator=(const CKIROTriggerManager&) = delete;  ///< one owner
    ~CKIROTriggerManager();                                               ///< frees nothing

    /// Looks the settings up in BankIDSnapshot. Without an entry of the ID, which is logged, the settings found last
    /// stay, and with them an address: after a change of tuning a host asks with an ID that exists, or with a new
    /// object. Each query calls it.
    /// @param dataID 0 for the entry that the context selects
    VOID UpdateSnapshotDBTriggerSystems(UINT32 dataID);

    /// Gains of a bracket's picture with an EV of 0.
    /// @param pInput  data[0] holds the lux index, dataID the entry of BankIDSnapshot; null is logged
    /// @param rOutput data[0] receives the ADRC gain, data[1] the dark boost gain, numOfOutput 2. Both gains are 0,
    ///                with a log, for null, while no settings have been found, and for settings without zones
    VOID GetSnapshotDBBracketingEVZero(const KIROGeneralizedTriggerSystemInput* pInput,
                                       KIROGeneralizedTriggerSystemOutput&      rOutput);
    /// The same for a bracket's picture above 0.
    VOID GetSnapshotDBBracketingEVPlus(const KIROGeneralizedTriggerSystemInput* pInput,
                                       KIROGeneralizedTriggerSystemOutput&      rOutput);
    /// The same for a bracket's picture below 0.
    VOID GetSnapshotDBBracketingEVMinus(const KIROGeneralizedTriggerSystemInput* pInput,
                                        KIROGeneralizedTriggerSystemOutput&      rOutput);
    /// The same for a picture that is not of a bracket.
    VOID GetSnapshotDBNonBracketing(const KIROGeneralizedTriggerSystemInput* pInput,
                                    KIROGeneralizedTriggerSystemOutput&      rOutput);

private:
    using ExposureConfigType = kirodbsnapshot::ExposureConfigType;  ///< settings of one kind of picture
    using DBSnapshotPayload  = kirodbsnapshot::DBSnapshotPayload;   ///< settings of all kinds

    /// Set...Tuning: forgets the object of the last query and makes one of the settings found last. One for each kind.
    VOID SetBracketingEVZeroTuning();
    VOID SetBracketingEVPlusTuning();
    VOID SetBracketingEVMinusTuning();
    VOID SetNonBracketingTuning();
    /// Delete...Tuning: forgets the object of the last query, without freeing it. One for each kind.
    VOID DeleteBracketingEVZeroTuning();
    VOID DeleteBracketingEVPlusTuning();
    VOID DeleteBracketingEVMinusTuning();
    VOID DeleteNonBracketingTuning();

    /// The common part of the queries: a query fetches the settings, builds its object by pSetTuning, and evaluates it.
    VOID Answer(const KIROGeneralizedTriggerSystemInput* pInput, VOID (CKIROTriggerManager::*pSetTuning)(),
                CKIROTwoFloatsXML* CKIROTriggerManager::*ppTriggerData, const CHAR* pFailure,
                KIROGeneralizedTriggerSystemOutput& rOutput);

    /// @return an object of the zones; null when no memory is left
    static CKIROTwoFloatsXML* NewTriggerData(const ExposureConfigType& rTuning);

    IKIROContextManager& m_rContextManager;           ///< not owned
    DBSnapshotPayload*   m_pSnapshotTuning;           ///< found last, in the tuning or in the host's memory
    ExposureConfigType*  m_pBracketingEVZeroTuning;   ///< part of it, for the last query of the kind; null before
    ExposureConfigType*  m_pBracketingEVPlusTuning;   ///< likewise
    ExposureConfigType*  m_pBracketingEVMinusTuning;  ///< likewise
    ExposureConfigType*  m_pNonBracketingTuning;      ///< likewise
    CKIROTwoFloatsXML*   m_pBracketingEVZero;         ///< of the last query of the kind, not freed; null before
    CKIROTwoFloatsXML*   m_pBracketingEVPlus;         ///< likewise
    CKIROTwoFloatsXML*   m_pBracketingEVMinus;        ///< likewise
    CKIROTwoFloatsXML*   m_pNonBracketing;            ///< likewise
};
