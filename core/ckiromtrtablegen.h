/// @file
/// Makes metering tables while the camera runs and puts them into the bank of two-dimensional weights, under the IDs
/// that stats calculators name. In normal frames a list of generators runs.
///
/// A flash snapshot takes another road. The frame without LED and the preflash frame tell how much the main flash will
/// brighten each region; from these gains comes the flash bias table. The same comparison decides whether the scene
/// parts into a background and a foreground that a precision flash can expose one by one, and makes a table for each.
#pragma once

#include <array>

#include "core/base/binarymask.h"
#include "core/base/tuningdriven.h"
#include "core/modulecommon.h"
#include "core/tablegenerator.h"

class CKIROMtrTableGen : public ModuleCommon
{
public:
    CKIROMtrTableGen(InstanceTuning& rTuningData, IKIROContextManager& rContextManager);

    /// One frame, after the statistics are in and before metering. The bank keeps pointers to the tables: they are
    /// valid as long as this object, those of the list of generators until the tuning changes.
    /// @return 0; 1 if a channel is missing: a flash snapshot then makes no table, a generator leaves its table as it
    ///         was and the others run
    KiroResult RunTableGen();

private:
    using Tuning = kiromtrtablegen::KIROMtrTableGenType;
    using Cells  = std::array<FLOAT, binarymask::CellCount>;  ///< a value per region
    using Mask   = std::array<INT32, binarymask::CellCount>;  ///< 0 or 1 per region

    /// What a flash snapshot has measured: lumas and saturations without LED and in the preflash.
    struct FlashStats
    {
        FLOAT flux;         ///< of the main flash over the preflash
        FLOAT expIncrease;  ///< exposure of the frame without LED over that of the preflash frame
        Cells lumaOff;
        Cells satOff;
        Cells lumaLow;
        Cells satLow;
    };

    /// What the main flash will make of it.
    struct FlashPrediction
    {
        Cells kStats;         ///< gain of luma, 1 where the region is bright without LED
        FLOAT satStatsRatio;  ///< share of the regions that the main flash saturates, 0 to 1
        FLOAT maxFlashOff;    ///< largest luma without LED
        FLOAT maxFlashLow;    ///< largest luma of the preflash at the exposure without LED
    };

    /// Where a region's luma goes.
    struct CellPrediction
    {
        FLOAT lumaOff;       ///< lifted to the tuned minimum
        FLOAT normLumaLow;   ///< of the preflash at the exposure without LED, lifted likewise
        FLOAT normLumaHigh;  ///< with the main flash
        FLOAT kStats;
    };

    struct PrecisionFlashInput
    {
        const FlashStats& rStats;
        const Mask&       rIsBrightTable;
        const FLOAT*      pFlashBiasTable;  ///< a value per region
    };

    /// Working memory of one decision. Regions that are bright without LED stay 0 in the masks and in the tables.
    struct PrecisionFlashWork
    {
        Cells lumaHigh;   ///< of the preflash at the exposure without LED
        Cells lumaDelta;  ///< what the LED adds, above 0
        Cells bkGrdMask;
        Cells frGrdMask;
        Cells bkGrdTable;
        Cells frGrdTable;
    };

    struct PrecisionFlashScene
    {
        bool  bEnabled;
        FLOAT hysteresis;
        FLOAT bkGrdPct;  ///< percent of the regions that is background
        FLOAT frGrdPct;
    };

    /// Sums over the regions that are not bright without LED.
    struct PrecisionFlashSums
    {
        FLOAT  lumaDelta;
        FLOAT  lumaOff;
        UINT32 count;
    };

    VOID       UpdateMtrTableGen();
    VOID       Rebuild(const Tuning* pTuning);
    KiroResult RunTableGeneration();
    FLOAT      ReadTrigger(KIROTriggerType trigger) const;
    VOID       StoreTable(DBMeter2DWeightPayload& rTable, INT32 dataID);

    // The flash bias table.
    KiroResult      RunTableGenFlashSnapshot();
    KiroResult      GetInputTableGenFlashSnapshot(FlashStats& rStats) const;
    bool            CopyChannel(const CHAR* pChannel, Cells& rCells) const;
    Mask            FindBrightRegions(const Cells& rSatOff) const;
    FlashPrediction PredictFlash(const FlashStats& rStats, const Mask& rIsBrightTable) const;
    CellPrediction  PredictCell(const FlashStats& rStats, bool bIsBright, UINT32 index) const;
    VOID            SmartFlashSatPreventionKStatsAdj(const Cells& rSorted, Cells& rKStats) const;
    VOID  SmartFlashLEDSpeckleScreening(const Cells& rSatLow, Cells& rKStats, const Mask& rIsBrightTable) const;
    FLOAT SmartFlashLEDSpeckleGetWeight(const Cells& rSatLow, const Mask& rMarks, UINT32 index) const;
    VOID  FillFlashBiasTable(const Cells& rKStats);

    static VOID SortDescending(Cells& rCells);

    // The precision flash.
    KiroResult          RunTableGenPrecisionFlash(const PrecisionFlashInput& rInput);
    FLOAT               GetAndUpdateHysteresisFromPFHistory(FLOAT lux) const;
    FLOAT               HysteresisSinceDetection(FLOAT lux, const KIROPrecisionFlashHistory& rHistory) const;
    PrecisionFlashScene AnalyzePrecisionFlash(const PrecisionFlashInput& rInput, PrecisionFlashWork& rWork) const;
    PrecisionFlashSums  MeasureLEDLight(const PrecisionFlashInput& rInput, PrecisionFlashWork& rWork) const;
    bool MeanOfHighest(const Cells& rLumaDelta, const Mask& rIsBrightTable, UINT32 count, FLOAT& rLumaAvg) const;
    VOID SplitScene(const PrecisionFlashInput& rInput, FLOAT lux, FLOAT lumaAvg, PrecisionFlashWork& rWork,
                    PrecisionFlashScene& rScene) const;
    VOID ApplyPrecisionFlashThresholds(PrecisionFlashScene& rScene) const;
    VOID PopulateDebugData(const PrecisionFlashScene& rScene, const PrecisionFlashWork* pWork) const;
    VOID StorePrecisionFlashTables(const PrecisionFlashWork& rWork, FLOAT bkGrdPct);

    TuningDriven<const Tuning>  m_tuning;
    const Tuning*               m_pTuning;  ///< of the current frame
    DBMeter2DWeightPayload      m_metTable;
    DBMeter2DWeightPayload      m_metBkGrdTable;
    DBMeter2DWeightPayload      m_metFrGrdTable;
    TavoObjects<TableGenerator> m_tableGenerators;
};
