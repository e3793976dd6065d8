/// @file
/// Precision flash: splits a flash exposure into two parts.
///
/// The LED lights the foreground more than the background. Part e1 sees the LED at high flash, part e2 sees the scene
/// without LED. With the right lengths the foreground reaches the luma that the main flash would give it, and the
/// background keeps the luma that it has without LED. Two linear equations give the lengths; where they have no usable
/// solution, the background gives way step by step.
#pragma once

#include "core/base/ckirotriggerclasses.h"
#include "core/metering/ckiroanalyzeralgorithm.h"

/// Lumas of foreground and background at one setting of the LED.
struct PrecisionFlashLumas
{
    FLOAT frGrd;
    FLOAT bkGrd;
};

/// Limits to e1 as a share of e1 + e2, both excluded.
struct PrecisionFlashShares
{
    FLOAT min;
    FLOAT max;
};

/// The solver's result.
struct PrecisionFlashSplit
{
    bool  bFound;
    FLOAT e1;               ///< 0 if not found
    FLOAT e2;               ///< 0 if not found
    FLOAT bkGrdLumaTarget;  ///< of the last attempt
};

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

    /// What the frame offers to the solver.
    struct Scene
    {
        PrecisionFlashLumas off;
        PrecisionFlashLumas high;
        PrecisionFlashLumas main;
        FLOAT               expOff;  ///< exposure of the frame without LED
    };

    FLOAT Param(Parameter index) const;
    INT32 ParamID(Parameter index) const;
    FLOAT ReadCalculator(Parameter index) const;
    FLOAT GetHysteresisFromPFHistory() const;
    Scene MeasureScene(const AECFrameHistory& rOffFrame, const AECFrameHistory& rLowFrame) const;
    VOID  ApplyGyrolimitOnMaxExposureTime(INT32 gyroLUTDataID, FLOAT gyroVal, FLOAT* pMaxExpoTime);
    VOID  UpdateLEDFlashInfluenceRatio(FLOAT e1, FLOAT e2) const;
    VOID  PopulateDebugData(const Scene& rScene, const PrecisionFlashSplit& rSplit) const;

    static PrecisionFlashSplit Solve(const Scene& rScene, const PrecisionFlashShares& rShares);

    KIROExposureSelection m_refExposureType;  ///< of the lux analyzer
    CKIROOneFloatXML      m_gyroLimit;        ///< loaded with the LUT at each use
};
