#include "tools/kirosim/statebands.h"

#include <algorithm>
#include <cmath>

namespace kirosim
{

namespace
{

/// @return the stretch that goes on, null if there is none
report::Stretch* OpenStretch(report::Band& rBand)
{
    return (!rBand.stretches.empty() && std::isnan(rBand.stretches.back().to)) ? &rBand.stretches.back() : nullptr;
}

}  // namespace

VOID StateBands::BeginFrame(DOUBLE time)
{
    m_period = m_isOpen ? time - m_time : 0.0;
    m_time   = time;
    m_isOpen = true;
}

VOID StateBands::Set(std::string_view band, bool isSet, std::string_view words)
{
    auto found =
        std::find_if(m_bands.begin(), m_bands.end(), [band](const report::Band& rBand) { return rBand.name == band; });
    if (found == m_bands.end())
    {
        found = m_bands.insert(m_bands.end(), {std::string(band), {}});
    }
    report::Stretch* pOpen = OpenStretch(*found);
    if (pOpen != nullptr && isSet && pOpen->words == words)
    {
        return;
    }
    if (pOpen != nullptr)
    {
        pOpen->to = m_time;
    }
    if (isSet)
    {
        found->stretches.push_back({m_time, std::nan(""), std::string(words)});
    }
}

std::vector<report::Band> StateBands::Finish() const
{
    std::vector<report::Band> bands;
    for (report::Band band : m_bands)
    {
        if (report::Stretch* pOpen = OpenStretch(band); pOpen != nullptr)
        {
            pOpen->to = m_time + m_period;
        }
        if (!band.stretches.empty())
        {
            bands.push_back(std::move(band));
        }
    }
    return bands;
}

}  // namespace kirosim
