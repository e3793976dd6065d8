/// @file
/// The flash of a camera: asks for pictures at the scene's times, and carries what the LEDs shall do to the scene.
#pragma once

#include <deque>

#include "tools/kirosim/flashrecord.h"
#include "tools/kirosim/sensormodel.h"

namespace kirosim
{

class FlashUnit
{
public:
    /// @param rScene with a flash; all three must outlive this object
    /// @throws std::runtime_error if the core refuses what an earlier run has learned
    FlashUnit(const Scene& rScene, SensorModel& rSensor, KiroHost& rHost);

    /// The scene's pictures are due once more.
    VOID StartRound()
    {
        m_pictures = 0;
    }

    /// Before the frame is captured: sets the LEDs for it.
    VOID Begin(DOUBLE time);

    /// Whether a picture is being taken, so that the LEDs may light what the sensor sees.
    bool IsBusy() const
    {
        return m_capture.Phase() != FlashCapturePhase::Idle;
    }

    /// Runs a frame of the host.
    FlashRecord RunFrame(UINT64 frameID, KIROStatsList& rStats);

private:
    VOID      StartPicture();
    FlashShot Judge() const;
    DOUBLE    KneeError(const KIROAlgoFlashOutput& rCurrent) const;

    const FlashScene&     m_rScene;
    FlashModel&           m_rModel;
    KiroHost&             m_rHost;
    FlashCapture          m_capture;
    std::deque<FlashLamp> m_pipeline;  ///< on their way to the LEDs, oldest first
    UINT32                m_pictures;  ///< asked for in this round
    DOUBLE                m_farLumaOff;
};

}  // namespace kirosim
