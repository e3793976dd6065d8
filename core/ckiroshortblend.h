/// @file
/// The short blend: caps the ADRC of staggered and multi-frame HDR with a long compensation, and fades the short
/// exposure in and out of the blend.
#pragma once

#include "core/base/ckirotriggerclasses.h"
#include "core/base/tuningdriven.h"
#include "core/ikirocontextmanager.h"
#include "schema/kiroparamextension.h"

class CKIROShortBlend
{
public:
    explicit CKIROShortBlend(IKIROContextManager& rContextManager);

    /// Rewrites the targets by the tuned controls and fills rInput.mfhdrLongADRC; 1.0 when the feature is off.
    VOID RunConvPreprocess(KIROConvergenceInput& rInput);

    /// Moves the blend value and publishes it. @return the value, 0 to 1; 1 when the feature is off
    FLOAT RunConvPostprocess(const KIROConvergenceOutput& rOutput);

private:
    using Parameter = kiroparamextension::statsExtensionParamType;
    using Tuning    = kiroparamextension::KIROParamExtensionType;

    static constexpr UINT32 ControlCount = 3;

    FLOAT PreprocessLongADRC(KIROConvergenceInput& rInput);
    VOID  Reload(const Parameter& rParameter);
    bool  ReadControls(const Parameter& rParameter, FLOAT* pControls);
    FLOAT ApplyControls(const FLOAT* pControls, KIROConvergenceInput& rInput);

    IKIROContextManager& m_rContextManager;
    BOOL                 m_bEnableShortBlendFeature;  ///< active this frame
    BOOL                 m_bDoShortBlend;             ///< blend towards 1 rather than decay towards 0
    FLOAT                m_blendStep;                 ///< change per frame
    FLOAT                m_previous;                  ///< last blend value
    FLOAT                m_sensorRatioTol;            ///< tolerance of the long/short ratio
    TuningDriven<Tuning> m_extTuning;
    INT32                m_dataID;  ///< trigger slot of the blend value
    CKIROOneFloatXML     m_extensionXMLS[ControlCount];
};
