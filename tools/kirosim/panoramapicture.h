/// @file
/// The picture that a panorama makes on the sensor: a lens without distortion, rows that are read one after another.
#pragma once

#include <array>
#include <vector>

#include "tools/kirosim/flashscene.h"
#include "tools/kirosim/regionsamples.h"
#include "tools/kirosim/scene.h"
#include "tools/kirosim/scenegrid.h"

namespace kirosim
{

class PanoramaPicture
{
public:
    /// @param rScene has a panorama and outlives this object
    explicit PanoramaPicture(const Scene& rScene);

    // Directions that a region is looked at: the corners of a square around its middle.
    static constexpr UINT32 Side       = 2;
    static constexpr UINT32 Directions = Side * Side;

    /// Looks into the panorama for one frame. Rows whose view has not changed since the last frame are left as they
    /// are.
    /// @param time            of the frame's start in the scene, s
    /// @param exposureSeconds of each row, which is seen at the middle of it
    /// @param rRadiance       relative to Scene::LuxAt(time), a sample of each direction
    /// @return whether any row has changed
    bool Look(DOUBLE time, DOUBLE exposureSeconds, RegionSamples& rRadiance);

    /// Mean radiance of a region in the picture, as in Look.
    DOUBLE RadianceAt(UINT32 region) const
    {
        return static_cast<DOUBLE>(m_radiances[region]);
    }

    /// Colour of a region in the picture: red and blue over green, 1 for white.
    const Colour& ColourAt(UINT32 region) const
    {
        return m_colours[region];
    }

private:
    static constexpr UINT32 Columns = GridWidth * Side;
    static constexpr UINT32 InRow   = Columns * Side;  ///< of a row of regions

    /// Directions of one row of regions for one pitch, in turns against the camera's yaw.
    struct RowDirections
    {
        std::array<FLOAT, InRow> longitudes;
        std::array<FLOAT, InRow> latitudes;
        DOUBLE                   pitch;
    };

    /// A row of regions, and what it saw last.
    struct Row
    {
        RowDirections now;
        RowDirections before;  ///< those of the panorama that fades
        PanoramaViews views;
        DOUBLE        lux;  ///< to which radiances are relative
    };

    VOID            Aim(RowDirections& rDirections, UINT32 row, DOUBLE pitch) const;
    VOID            LookAt(UINT32 row, RegionSamples& rRadiance);
    panorama::Light LightAt(const Row& rRow, UINT32 direction) const;

    const Scene&                 m_rScene;
    DOUBLE                       m_tangent;  ///< of half the field of view
    std::vector<Row>             m_rows;
    std::array<FLOAT, GridSize>  m_radiances;
    std::array<Colour, GridSize> m_colours;
};

}  // namespace kirosim
