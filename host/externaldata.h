/// @file
/// Data from outside the camera on its way into the core: maps of the frame and gyro samples.
#pragma once

#include <span>

#include "interface/ikirocorealgo.h"
#include "schema/kirodb1dmeterweight.h"
#include "schema/kirodb2dmeterweight.h"

/// Keeps the tables that the banks point at. To be destroyed after the instance.
class KiroExternalData
{
public:
    static constexpr UINT32 MapWidth = 16;
    static constexpr UINT32 MapSize  = MapWidth * MapWidth;

    // Entries of the bank of two-dimensional weights.
    static constexpr INT32 DepthMapDataID            = 40;
    static constexpr INT32 TrackedDepthMapDataID     = 41;  ///< written by the core
    static constexpr INT32 SegmentationMapDataID     = 42;
    static constexpr INT32 TrackedSegmentationDataID = 43;  ///< written by the core

    /// Entry of the bank of one-dimensional weights.
    static constexpr INT32 GyroDataID = 30;

    /// @param pAlgo used, not owned
    explicit KiroExternalData(IKIROCoreAlgo* pAlgo);
    KiroExternalData(const KiroExternalData&)            = delete;
    KiroExternalData& operator=(const KiroExternalData&) = delete;

    /// Puts a map into the bank, for the frame that runs next. It stays until the next one: a source that has nothing
    /// to say needs a map of zeros.
    /// @param cells row by row from the upper left; distances in m, 0 for unknown
    VOID SetDepthMap(std::span<const FLOAT, MapSize> cells);
    /// @param cells 1 for the subject
    VOID SetSegmentationMap(std::span<const FLOAT, MapSize> cells);

    /// Filters samples of the gyro, which the core publishes as a trigger. Call before the frame that they belong to.
    /// @param samples rates of rotation in rad/s, newest first; those beyond the bank's room, the oldest, are left out
    VOID AddGyroSamples(std::span<const FLOAT> samples);

    /// @return marked cells of a map as the core tracks it; 0 if it tracks none
    UINT32 TrackedCells(INT32 trackedDataID) const;

    /// @return the core's filtered rate of rotation, rad/s
    FLOAT FilteredGyro() const;

private:
    VOID SetMap(DBMeter2DWeightPayload& rMap, std::span<const FLOAT, MapSize> cells);

    IKIROCoreAlgo*         m_pAlgo;
    DBMeter2DWeightPayload m_depthMap;
    DBMeter2DWeightPayload m_segmentationMap;
    DBMeter1DWeightPayload m_gyro;
};
