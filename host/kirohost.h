/// @file
/// A reference host: the order of a frame's calls, and what must be kept alive for the core.
#pragma once

#include <functional>
#include <optional>

#include "host/arbitrationwalk.h"
#include "host/externaldata.h"
#include "host/kirocorelibrary.h"
#include "host/kirodebugdata.h"
#include "host/startexposure.h"
#include "interface/kiroextension.h"
#include "schema/kirodbroi.h"

struct KiroHostConfig
{
    StatsTuningData tuning;  ///< manager and selectors stay the caller's and must outlive the host
    KIROSensorRange sensorRange;
    UINT64          indexZeroExposure;  ///< exposure of index 0
    UINT64          startExposure;      ///< exposure before the first frame, if no source knows a better one
    UINT8           systemLatency;      ///< frames from a decision to its statistics
    AECAlgoFPSRange FPSRange;

    std::vector<KIROAlgoStartExpType> startSources;  ///< asked in this order before the first frame
    std::optional<FLOAT>              lightLux;      ///< reading of the light sensor, if there is one
};

/// What was decided for a frame. Arrays are indexed by AECAlgoExposureType.
struct KiroHostFrame
{
    KIROMeteringOutput    metering;
    KIROConvergenceOutput convergence;
    KIROArbitrationOutput arbitration[AECAlgoExposureCount];
    KIROExtensionOutput   extension;
    FLOAT                 luxIndex;
    FLOAT                 luma;
    UINT32                analyzersRun;  ///< how many had a result; 0 when metering was skipped
};

class KiroHost
{
public:
    /// Entry of the bank of regions that holds the touch.
    static constexpr INT32 TouchROIDataID = 10;

    /// Creates an instance, announces the sensor and runs the start-up frame.
    /// @throws std::runtime_error when the core cannot be created
    KiroHost(const KiroCoreLibrary& rLibrary, const KiroHostConfig& rConfig, StatsLogger logger);
    ~KiroHost();
    KiroHost(const KiroHost&)            = delete;
    KiroHost& operator=(const KiroHost&) = delete;

    /// Runs all stages of one frame.
    /// @param frameID rising from frame to frame
    /// @param rStats  stays valid until the next call
    const KiroHostFrame& RunFrame(UINT64 frameID, KIROStatsList& rStats);

    /// Runs a frame that is a picture and no part of the preview. Metering runs as ever; convergence and extension
    /// rest, so that the preview goes on as if there had been no such frame. Only while IsStreaming.
    /// @param isMetered whether the statistics show the preview; otherwise, and without valid ones, its last targets
    ///                  stand
    /// @param choose    sets the converged exposures and gains. It finds this frame's targets and the preview's values.
    KiroHostFrame RunSnapshotFrame(UINT64 frameID, KIROStatsList& rStats, KIROCoreSnapshotType type, bool isMetered,
                                   const std::function<VOID(KiroHostFrame&)>& choose);

    /// Frames from a decision to the statistics that show it, from now on.
    /// @param frames 1 to 10
    VOID SetPipelineDelay(UINT8 frames);

    UINT8 PipelineDelay() const
    {
        return m_config.systemLatency;
    }

    /// The statistics of the next frame show another decision than the pipeline delay says, since one has come late.
    /// Stands until it is set anew.
    /// @param frames from that decision to its statistics, 1 to 10
    VOID SetStatisticsAge(UINT8 frames);

    UINT8 StatisticsAge() const
    {
        return m_statisticsAge;
    }

    /// Whether the statistics show decided exposures.
    bool IsStreaming() const
    {
        return m_framesRun > m_config.systemLatency;
    }

    /// The decision of the last preview frame; before the first one that of the start-up frame.
    const KiroHostFrame& LastFrame() const
    {
        return m_frame;
    }

    /// Begins a session anew, as after a change of mode: the frames so far are those of the previous mode, and what the
    /// sensor delivers next shows the start exposures.
    /// @param mode    FastAEC, which goes over to Streaming by itself, or Preflash
    /// @param sources asked in this order until one answers
    VOID BeginSession(AECAlgoOperationModeType mode, const std::vector<KIROAlgoStartExpType>& rSources);

    /// Where the present session began.
    const KiroStartExposure& Start() const
    {
        return m_start;
    }

    /// What this host knows if a session began now, for KiroStartSources.
    KiroStartSituation StartSituation(AECAlgoOperationModeType mode) const;

    // What the cameras around it are; see CameraGroup.
    VOID SetCameraInfo(const StatsCameraInfo& rInfo);
    VOID SetCalibration(const AECAlgoDCCalibrationInfo& rCalibration);

    // What the host senses or finds out besides the statistics.
    VOID SetLightSensor(FLOAT lux);
    /// @param CCT colour of the light, K
    VOID SetCCT(UINT32 CCT);

    // User settings; they apply from the next frame on.
    VOID SetOperationMode(AECAlgoOperationModeType mode);
    VOID SetFlickerCompensation(StatisticsAntibanding mode);
    VOID SetExposureCompensation(INT32 evSteps);
    VOID SetLock(bool isLocked);
    VOID SetFPSRange(const AECAlgoFPSRange& rRange);
    VOID SetManual(const AECAlgoManualSetting& rManual);
    /// Puts the touched part into the bank of regions, as entry TouchROIDataID, for the tuning to meter.
    /// @param pROI fractions of the frame; null ends the touch. Copied.
    VOID SetTouch(const AECAlgoROI* pROI);
    VOID SetHDRType(AECAlgoHDRType type);
    VOID SetLEDMode(AECAlgoLEDModeType mode);
    /// Said to the core once the next frame has begun, so that the frame before is not taken for the snapshot.
    VOID SetSnapshot(KIROCoreSnapshotType type);
    /// The selectors or the manager have changed.
    VOID SetTuning(const StatsTuningData& rTuning);

    /// One setting, by the core's own name for it. @return the core's answer, 0 for accepted
    template <typename T> MNKResult SetParam(AECAlgoSetParamType type, const T& rValue)
    {
        T               value = rValue;
        AECAlgoSetParam param = {&value, sizeof(value), type};
        KIROSetInput    input{};
        input.source      = AECPEKSetParam;
        input.u.pPEKInput = &param;
        return m_pAlgo->setInput(m_pAlgo, &input);
    }

    /// Changes to a mode whose history begins anew, with a frame to begin it. Its statistics are delivered but not
    /// metered until they show what the mode has decided.
    VOID StartMode(AECAlgoOperationModeType mode, const KiroHostFrame& rStart);

    /// Without metering the targets of the frame before stand, whatever the statistics show.
    VOID SetMetered(bool isMetered)
    {
        m_isMetered = isMetered;
    }

    /// What the extension stage of the next frames is told of a flash.
    VOID SetFlashInfo(const KIROExtFlashInfo& rInfo)
    {
        m_extensionInput.flashInfo = rInfo;
    }

    /// Shares of a precision flash, for the arbitration of the next frames. @param pInfo null for none; copied
    VOID SetPrecisionFlash(const KIROPrecisionFlashInfo* pInfo);

    /// A value of the trigger bank.
    FLOAT Trigger(KIROTriggerType id);
    VOID  SetTrigger(KIROTriggerType id, FLOAT value);

    /// First half of an entry of the bank of analyzer values; 0 if there is none.
    FLOAT AnalyzerValue(INT32 dataID);

    /// Lets the core fill the debug record from the next frame on; off at first.
    VOID SetDebugDataEnabled(bool isEnabled)
    {
        m_debugData.SetEnabled(isEnabled);
    }

    /// The record of the last frame.
    const AECDebugData& DebugData()
    {
        return m_debugData.GetDebugData();
    }

    /// Maps and samples of outside sources, for the frame that runs next.
    KiroExternalData& ExternalData()
    {
        return m_externalData;
    }

    IKIROCoreAlgo* Algo()
    {
        return m_pAlgo;
    }

    const StatsTuningData& Tuning() const
    {
        return m_config.tuning;
    }

private:
    VOID RunStartup(const std::vector<KIROAlgoStartExpType>& rSources);
    VOID RunStartFrame();

    StatisticsStartUp CountFrame();

    VOID   ApplySnapshot();
    bool   TakeIsMetered();
    VOID   RunMetering(bool isStatsValid);
    VOID   RunConvergence(UINT64 frameID);
    VOID   RunExtension(StatisticsStartUp startup);
    UINT64 MinAntibandingExposure() const;

    KiroHostConfig      m_config;
    KiroDebugData       m_debugData;
    IKIROCoreAlgo*      m_pAlgo;
    ArbitrationSettings m_settings;
    AECAlgoROI          m_touchROI;     ///< the core holds a pointer to it
    DBROIPayload        m_touchRegion;  ///< the bank points at it
    KiroExternalData    m_externalData;
    ArbitrationWalk     m_walk;
    KiroHostFrame       m_frame;
    KiroStartExposure   m_start;
    UINT64              m_framesRun;  ///< since the session began
    UINT8               m_statisticsAge;

    AECAlgoOperationModeType m_opMode;
    bool                     m_isLightSensed;
    bool                     m_hasPreviousMode;
    INT32                    m_evSteps;

    bool               m_isMetered;
    UINT32             m_unmeteredFrames;  ///< still to come after a change of mode
    KIROExtensionInput m_extensionInput;   ///< points at m_frame; the flash in it stands until it is set anew

    KIROCoreSnapshotType                m_snapshot;
    std::optional<KIROCoreSnapshotType> m_nextSnapshot;  ///< not said to the core yet
};
