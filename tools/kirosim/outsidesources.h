/// @file
/// The sources outside the camera: what they see of the scene, delivered to the host frame by frame.
#pragma once

#include "host/externaldata.h"
#include "tools/kirosim/deterministic.h"
#include "tools/kirosim/scene.h"

namespace kirosim
{

/// What the core made of outside data.
struct OutsideState
{
    UINT32 trackedCells;  ///< of the scene's map
    FLOAT  gyro;          ///< filtered, rad/s
};

class OutsideSources
{
public:
    /// @param rScene must outlive the sources
    explicit OutsideSources(const Scene& rScene);

    /// The scene starts again.
    VOID StartRound();

    /// Delivers what is known at the start of a frame.
    VOID Deliver(DOUBLE time, KiroExternalData& rHost);

    OutsideState StateOf(const KiroExternalData& rHost) const;

private:
    VOID DeliverMap(DOUBLE time, KiroExternalData& rHost) const;
    VOID DeliverGyro(DOUBLE time, KiroExternalData& rHost);

    const Scene& m_rScene;
    RandomStream m_shake;
    UINT64       m_samplesDelivered;
};

}  // namespace kirosim
