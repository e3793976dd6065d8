/// @file
/// Precision flash on the banks: reads the scene and the limits, has the exposure split, and publishes the parts.
#pragma once

#include "core/base/ckirotriggerclasses.h"
#include "core/metering/ckiroanalyzeralgorithm.h"
#include "core/metering/precisionflash.h"

class CAnalyzerAlgorithm003 : public CAnalyzerAlgorithm
{
public:
    CAnalyzerAlgorithm003();

    AnalyzerAlgorithmOutput RunAlgorithm(const AnalyzerAlgorithmInput& rInput) override;

    VOID SetTuning(UINT32 analyzerID, IKIROContextManager& rContextManager) override;

private:
    /// Positions in the tuned parameters.
    enum Parameter : UINT32
    {
        FrGrdLumaOffID       = 0,  ///< data IDs of the calculator results
        FrGrdLumaOnID        = 1,
        BkGrdLumaOffID       = 2,
        BkGrdLumaOnID        = 3,
        FlashShortAggSAAdjID = 4,  ///< data ID of the analyzer result that takes high to main flash
        GyroDataID           = 7,  ///< data ID of a LUT
        MaxExpoTime          = 8,
        MiniFlashTime        = 9,
        FlashDelay           = 10,
        SafeCoff             = 11,
        ParameterCount       = 12
    };

    FLOAT Param(Parameter index) const;
    INT32 ParamID(Parameter index) const;
    bool  HasParameters() const;
    FLOAT ReadCalculator(Parameter index) const;
    FLOAT GetHysteresisFromPFHistory() const;

    PrecisionFlashTimes ReadTimes();
    PrecisionFlashScene MeasureScene(const AECFrameHistory& rOffFrame, const AECFrameHistory& rLowFrame) const;
    PrecisionFlashSplit FindSplit(const PrecisionFlashScene& rScene, const PrecisionFlashTimes& rTimes) const;

    VOID ApplyGyrolimitOnMaxExposureTime(INT32 gyroLUTDataID, FLOAT gyroVal, FLOAT* pMaxExpoTime);
    VOID PublishSplit(INT32 sceneDetected, const PrecisionFlashSplit& rSplit, const PrecisionFlashTimes& rTimes) const;
    VOID UpdateLEDFlashInfluenceRatio(FLOAT e1, FLOAT e2) const;
    VOID PopulateDebugData(const PrecisionFlashScene& rScene, const PrecisionFlashSplit& rSplit) const;

    KIROExposureSelection m_refExposureType;  ///< of the lux analyzer
    CKIROOneFloatXML      m_gyroLimit;        ///< loaded with the LUT at each use
};
