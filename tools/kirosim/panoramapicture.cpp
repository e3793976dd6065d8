#include "tools/kirosim/panoramapicture.h"

#include <algorithm>
#include <cmath>

#include "tools/kirosim/deterministic.h"
#include "tools/panorama/lookup.h"

namespace kirosim
{

namespace
{

constexpr DOUBLE QuarterTurn = 0.25;

/// Directions of a pitch that no camera has.
constexpr DOUBLE NoPitch = 1.0;

DOUBLE SineOfTurns(DOUBLE turns)
{
    return CosineOfTurns(turns - QuarterTurn);
}

/// Of two kinds of light. A region without either is grey.
DOUBLE RatioOf(FLOAT light, FLOAT green)
{
    constexpr DOUBLE ratioMax = 64.0;
    const DOUBLE     ratio    = static_cast<DOUBLE>(light) / static_cast<DOUBLE>(green);
    return (light <= 0.0f && green <= 0.0f) ? 1.0 : std::clamp(ratio, 1.0 / ratioMax, ratioMax);
}

}  // namespace

PanoramaPicture::PanoramaPicture(const Scene& rScene) : m_rScene(rScene), m_rows(GridHeight), m_radiances{}, m_colours{}
{
    const DOUBLE half = rScene.panorama->fieldOfView / 2.0 / 360.0;
    m_tangent         = SineOfTurns(half) / CosineOfTurns(half);
    for (Row& rRow : m_rows)
    {
        rRow.now.pitch    = NoPitch;
        rRow.before.pitch = NoPitch;
    }
}

bool PanoramaPicture::Look(DOUBLE time, DOUBLE exposureSeconds, RegionSamples& rRadiance)
{
    const PanoramaScene& rPanorama = *m_rScene.panorama;
    const DOUBLE         lux       = rPanorama.LuxAt(time, m_rScene.lux);
    bool                 isChanged = false;
    for (UINT32 row = 0; row < GridHeight; ++row)
    {
        const DOUBLE        seen  = time + m_rScene.sensor.readout * row / GridHeight + exposureSeconds / 2.0;
        const PanoramaViews views = rPanorama.ViewsAt(time, seen, m_rScene.lux);
        Row&                rRow  = m_rows[row];
        if (views == rRow.views && lux == rRow.lux)
        {
            continue;
        }
        isChanged  = true;
        rRow.views = views;
        rRow.lux   = lux;
        Aim(rRow.now, row, views.now.pitch);
        if (views.before.pMap != nullptr)
        {
            Aim(rRow.before, row, views.before.pitch);
        }
        LookAt(row, rRadiance);
    }
    return isChanged;
}

/// Yaw turns all longitudes alike: only a nod moves the directions against it.
VOID PanoramaPicture::Aim(RowDirections& rDirections, UINT32 row, DOUBLE pitch) const
{
    if (rDirections.pitch == pitch)
    {
        return;
    }
    rDirections.pitch   = pitch;
    const DOUBLE sine   = SineOfTurns(pitch);
    const DOUBLE cosine = CosineOfTurns(pitch);
    for (UINT32 index = 0; index < InRow; ++index)
    {
        const UINT32 column = index % Columns;
        if (column >= Columns / 2)
        {
            // The right half is the left one in a mirror.
            const UINT32 mirrored         = index + Columns - 1 - 2 * column;
            rDirections.longitudes[index] = -rDirections.longitudes[mirrored];
            rDirections.latitudes[index]  = rDirections.latitudes[mirrored];
            continue;
        }
        // Right, up and ahead, in the camera's own directions; ahead is 1.
        const DOUBLE right = ((column + 0.5) * 2.0 / Columns - 1.0) * m_tangent;
        const UINT32 line  = row * Side + index / Columns;
        const DOUBLE up    = (1.0 - (line + 0.5) * 2.0 / (GridHeight * Side)) * m_tangent * GridHeight / GridWidth;

        const DOUBLE high             = up * cosine + sine;
        const DOUBLE ahead            = cosine - up * sine;
        rDirections.longitudes[index] = static_cast<FLOAT>(TurnsOfDirection(ahead, right));
        rDirections.latitudes[index] =
            static_cast<FLOAT>(TurnsOfDirection(std::sqrt(ahead * ahead + right * right), high));
    }
}

panorama::Light PanoramaPicture::LightAt(const Row& rRow, UINT32 direction) const
{
    const auto lightOf = [direction, &rRow](const PanoramaView& rView, const RowDirections& rDirections)
    {
        const panorama::Light light =
            panorama::LightFrom(*rView.pMap, static_cast<FLOAT>(rView.yaw) + rDirections.longitudes[direction],
                                rDirections.latitudes[direction]);
        const FLOAT scale = static_cast<FLOAT>(rView.lux / rRow.lux);
        return panorama::Light{light.red * scale, light.green * scale, light.blue * scale};
    };
    const panorama::Light now = lightOf(rRow.views.now, rRow.now);
    if (rRow.views.before.pMap == nullptr)
    {
        return now;
    }
    const panorama::Light before = lightOf(rRow.views.before, rRow.before);
    return {now.red + before.red, now.green + before.green, now.blue + before.blue};
}

VOID PanoramaPicture::LookAt(UINT32 row, RegionSamples& rRadiance)
{
    for (UINT32 column = 0; column < GridWidth; ++column)
    {
        const UINT32    region = row * GridWidth + column;
        panorama::Light sum{};
        for (UINT32 direction = 0; direction < Directions; ++direction)
        {
            const panorama::Light light =
                LightAt(m_rows[row], direction / Side * Columns + column * Side + direction % Side);
            rRadiance.At(region, direction) = panorama::Luminance(light);
            sum                             = {sum.red + light.red, sum.green + light.green, sum.blue + light.blue};
        }
        m_radiances[region] = panorama::Luminance(sum) / Directions;
        m_colours[region]   = {RatioOf(sum.red, sum.green), RatioOf(sum.blue, sum.green)};
    }
}

}  // namespace kirosim
