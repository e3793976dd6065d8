/// @file
/// A picture with flash, step by step: hold the exposure, keep a frame without LED, meter under the low LED until that
/// may stop, decide the picture, and go back to preview once the picture has been read out.
#pragma once

#include "host/flashstats.h"
#include "host/kirohost.h"

/// What the LEDs do during one frame's exposure.
struct FlashLamp
{
    INT32 LED1Setting;  ///< mA
    INT32 LED2Setting;  ///< mA
    FLOAT litShare;     ///< of the exposure time, 0 to 1
};

struct FlashCaptureConfig
{
    INT32  maxFlashCurrent;    ///< mA, both LEDs together
    UINT32 maxHoldFrames;      ///< frames after which the exposure counts as still, still or not
    UINT32 maxPreflashFrames;  ///< metered frames after which the preflash ends, whatever metering says
};

enum class FlashCapturePhase
{
    Idle,
    Hold,      ///< until the exposure stands still
    Off,       ///< the frame that is kept
    Preflash,  ///< low LED
    Snapshot,  ///< the picture is decided
    Readout    ///< until the statistics show the picture
};

/// What was decided for a picture.
struct FlashCaptureResult
{
    UINT32 preflashFrames;    ///< metered under the low LED
    bool   isStoppedByMeter;  ///< rather than by the limit of frames

    AECAlgoWhiteBalanceState whiteBalance;  ///< that the mix was matched to
    KIROAlgoFlashOutput      low;
    KIROAlgoFlashOutput      high;
    UINT64                   offExposure;  ///< safe exposures, gain times ns
    UINT64                   lowExposure;
    UINT64                   mainExposure;  ///< of the picture
    FLOAT                    flux;          ///< light of high over low
    FLOAT                    expIncrease;   ///< exposure without over exposure with low LED, at least 1
    FLOAT                    target;        ///< luma that the foreground should have

    bool  isPrecision;  ///< the picture is exposed in two parts
    FLOAT e1;           ///< exposure that sees the LED
    FLOAT e2;           ///< exposure that does not
};

class FlashCapture
{
public:
    /// Entry of the bank of analyzer values in which the tuning leaves the foreground's target.
    static constexpr INT32 TargetDataID = 62;

    /// @param rHost must outlive this object
    FlashCapture(KiroHost& rHost, const FlashCaptureConfig& rConfig);
    ~FlashCapture();
    FlashCapture(const FlashCapture&)            = delete;
    FlashCapture& operator=(const FlashCapture&) = delete;

    /// Asks for a picture from the next frame on.
    /// @param isPrecisionAllowed the picture may be exposed in two parts, where the core finds that worth while
    /// @return false if one is being taken
    bool Start(const AECAlgoWhiteBalanceState& rWhiteBalance, bool isPrecisionAllowed);

    /// Runs a frame of the host, also while no picture is taken.
    const KiroHostFrame& RunFrame(UINT64 frameID, KIROStatsList& rStats);

    /// What the LEDs do in the frame that the last decision was made for. It has the latency of that decision.
    const FlashLamp& Lamp() const
    {
        return m_lamp;
    }

    FlashCapturePhase Phase() const
    {
        return m_phase;
    }

    /// Whether the statistics of the last frame run showed the picture. The result is complete then.
    bool IsPictureShown() const
    {
        return m_isPictureShown;
    }

    const FlashCaptureResult& Result() const
    {
        return m_result;
    }

private:
    VOID Enter(FlashCapturePhase phase);
    VOID RunHost(UINT64 frameID, KIROStatsList& rStats);
    VOID RunHold(UINT64 frameID, KIROStatsList& rStats);
    VOID RunOff(UINT64 frameID, KIROStatsList& rStats);
    VOID RunPreflash(UINT64 frameID, KIROStatsList& rStats);
    VOID FinishPreflash(UINT64 frameID, KIROStatsList& rStats);
    VOID RunSnapshot(UINT64 frameID, const KIROStatsList& rStats);
    bool PreparePrecision();
    VOID FinishSnapshot();
    VOID RunReadout(UINT64 frameID, KIROStatsList& rStats);

    bool                IsStill() const;
    bool                IsPreflashMeteringNeeded(const KIROStatsList& rStats);
    KIROAlgoFlashOutput Current(KIROExtFlashCurrentType type);
    UINT64              SafeExposure() const;

    KiroHost&                 m_rHost;
    FlashCaptureConfig        m_config;
    KIROPrecisionFlashHistory m_precisionHistory;  ///< the core points at it
    FlashCapturePhase         m_phase;
    UINT32                    m_phaseFrames;  ///< run in the phase, this one included
    UINT32                    m_stillFrames;  ///< decisions in a row since m_stillExposure that are like it
    UINT64                    m_stillExposure;
    bool                      m_isPrecisionAllowed;
    bool                      m_isMeteringDone;
    bool                      m_isPictureShown;
    FlashLamp                 m_lamp;
    FlashStats                m_off;
    FlashStats                m_low;
    KiroHostFrame             m_preview;  ///< to which the camera goes back
    FlashCaptureResult        m_result;
};
