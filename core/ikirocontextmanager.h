/// @file
/// What modules see of the context: host settings, context events, history, banks and the sync with other cameras.
#pragma once

#include "core/base/ckirobankmanager.h"
#include "core/base/ckirohistory.h"
#include "core/base/instancetuning.h"
#include "core/base/tavomemory.h"
#include "interface/kirofic.h"
#include "interface/kirosetinput.h"

class CKIROCamsync;
class CKIROStatsProcessor;
class IKIRODebugData;

class IKIROContextManager
{
public:
    /// Allocates history, banks and sync, in this order.
    IKIROContextManager();
    IKIROContextManager(const IKIROContextManager&)            = delete;
    IKIROContextManager& operator=(const IKIROContextManager&) = delete;

    virtual const SetInputData* GetInput()                                             = 0;
    virtual UINT64              GetContextStatus()                                     = 0;
    virtual VOID                SetContextEvent(KIROTunaraEventType event, BOOL value) = 0;
    virtual BOOL                GetContextEvent(KIROTunaraEventType event)             = 0;
    virtual VOID                SetMaxFlashCurrent(INT32 current)                      = 0;
    virtual VOID                UpdateFrameCounters()                                  = 0;
    virtual VOID                RebaseSCD(UINT32 id)                                   = 0;
    virtual BOOL                GetSCDOutput(UINT32 id, KIROSCDOutput& rOutput)        = 0;
    virtual IKIRODebugData&     GetDebugDataInfo()                                     = 0;
    virtual VOID                SetMeteringLock(BOOL bLock)                            = 0;
    virtual KIROFICInfo         GetFICInfo()                                           = 0;

    InstanceTuning* GetTuningData()
    {
        return &m_tuningData;
    }

    VOID SetConvFrameSkipCounter(UINT32 count)
    {
        m_convergenceCount = count;
    }

    TavoPtr<CKIROHistory>      m_pHistory;
    TavoPtr<CKIROBankManager>  m_pBankManager;
    TavoPtr<CKIROCamsync>      m_pCamSync;
    KIROExposureRange          m_arbitrationRange;  ///< zeroed at each start of frame
    CKIROStatsProcessor*       m_pStatsProcessor;   ///< stored by the stats processor, not owned
    BOOL                       m_bResetFrameSkip;   ///< the last setInput asks the host to restart its frame skipping
    KIROPrecisionFlashHistory* m_pPFHistory;        ///< the host's
    BOOL                       m_bIsHybridHDR;
    UINT64                     m_seamlessRID;  ///< request ID of a seamless switch
    BOOL                       m_bIsLongADRC;  ///< the short blend is active
    InstanceTuning             m_tuningData;
    UINT64                     m_contextStatus;
    UINT32                     m_convergenceCount;
    KIROExposureRange          m_exposureRange;
    UINT64                     m_tuningSerial;  ///< how many tunings the host has set

protected:
    /// Frees history, banks and sync, in this order.
    ~IKIROContextManager();
};
