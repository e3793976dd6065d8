/// @file
/// Flash inline calibration: learns the true colour of the flash in the field.
///
/// A flash capture of a scene with neutral parts is a measurement. Before flash, the grid cells whose colour is neutral
/// by the white balance are noted. Under preflash (the table's lowest power) and full flash (its highest) these cells
/// move from neutral towards the colour of the LEDs: direction and, scaled to the estimated distance, place of that
/// colour are a sample. Samples are kept per zone, the span of LED mixes between two neighbouring knees of the table;
/// where enough of them agree, the colour of a knee is replaced. Units are those of interface/kirofic.h.
#pragma once

#include "core/extension/ficrecords.h"
#include "core/ikirocontextmanager.h"
#include "interface/kiroextension.h"

class CFICManager
{
public:
    /// Reads the tuning of the context; a later change of tuning does not reach this object.
    explicit CFICManager(IKIROContextManager& rContext);
    CFICManager(const CFICManager&)            = delete;
    CFICManager& operator=(const CFICManager&) = delete;

    /// Takes the number of knees and zones from the tuned table.
    /// @return 0, or 1 with no knees and no zones for a table of more than 16 mixes or of none
    KiroResult SetFICMode();

    /// Loads a blob of interface/kirofic.h. @return 0; 1 with nothing taken for null and for one that is refused
    KiroResult SetFICData(const VOID* pFICData);

    /// Stores what has been learned as a blob. @param pFICData room for it; null only asks for its size
    /// @return size of the blob in bytes
    UINT32 GetFICData(VOID* pFICData) const;

    /// Runs once per frame, after the extension: takes the step of the capture that the frame stands for, if any.
    VOID RunFICManager(const KIROExtensionInput& rExtIn, KIROExtensionOutput& rExtOut);

    const KIROFICInfo& GetFICInfo() const
    {
        return m_ficInfo;
    }

private:
    VOID GetTuningInfo();
    VOID SetTuningPoints(const kiroflash::LEDMatchTableType& rTable);
    VOID SetCalibrationPoints(const kiroflash::LEDMatchTableType& rTable);
    VOID SetTargetZones(const kiroflash::LEDInlineCalibType& rTuning);

    VOID ProcessCalibration(KIROFICState calState);
    bool IsSampleWanted() const;

    // Reference regions.
    VOID       GetReferenceRegionsInfo();
    bool       SetReferenceColour();
    VOID       CollectReferenceRegions();
    KiroResult GetRgBgStats();

    // The influenced point.
    VOID GetFlashInfluencedInfo(KIROFICState calState);
    BOOL MeasureInfluence(const KIROAlgoFlashOutput& rEstimate, const KIROFICCalTuningPointsInfo& rPoints,
                          KIROFICFlashRegionsInfo& rFlash);
    bool GetReferenceStats();
    BOOL SetTarget(const KIROAlgoFlashOutput& rEstimate, const KIROFICCalTuningPoints& rPoints,
                   KIROFICFlashRegionsInfo& rFlash) const;
    KIROFICTargetZoneDataType TargetZoneData(const KIROFICCalTuningPoints& rPoints, INT32 led1) const;

    // Samples and knees.
    VOID StoreFICRawData();
    VOID FactorFICData();
    VOID CollectKneePoints();
    VOID FactorKnee(const KIROFICKneeInfo& rKneeInfo, bool isLow, KIROFICKneeData& rKnee) const;

    VOID LogFICData() const;

    IKIROContextManager& m_rContext;
    KIROFICInfo          m_ficInfo;

    // The running capture.
    BOOL                     m_isFICCond;    ///< the scene before flash was dark enough
    BOOL                     m_skipProcess;  ///< the scene has too few neutral cells
    AECAlgoWhiteBalanceState m_wbFlashOff;
    KIROAlgoFlashOutput      m_flashLowEst;
    KIROAlgoFlashOutput      m_flashHighEst;
    KIROFICRGBGStatsInfo     m_rgbg;
    KIROFICRefRegionsInfo    m_refRegInfo;
    KIROFICFlashRegionsInfo  m_preflashInfo;
    KIROFICFlashRegionsInfo  m_fullflashInfo;

    // Working space.
    KIROFICRawData  m_backup[KIROFICRawDataCountMax];
    KIROFICKneeInfo m_kneeInfoLow[KIROFICKneeCountMax];
    KIROFICKneeInfo m_kneeInfoHigh[KIROFICKneeCountMax];

    // The tuning.
    FLOAT                      m_triggerTh;  ///< lux index
    FLOAT                      m_refRange;
    FLOAT                      m_refRegionPercent;
    INT32                      m_validRefCnt;
    FLOAT                      m_distMin;
    FLOAT                      m_distMax;
    FLOAT                      m_shiftMax;
    INT32                      m_minKneeCnt;
    INT32                      m_maxZoneCnt;
    INT32                      m_numOfFactoringRegions;  ///< at most KIROFICFactoringRegionsMax
    FLOAT                      m_confidenceThPCT;
    KIROFICTargetZoneInfo      m_tarZoneTrigger;
    KIROFICCalTuningPointsInfo m_LEDTuneCalInfoLow;
    KIROFICCalTuningPointsInfo m_LEDTuneCalInfoHigh;
};
