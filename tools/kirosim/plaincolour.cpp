#include "tools/kirosim/plaincolour.h"

#include <algorithm>
#include <cmath>

namespace kirosim
{

ChannelShares SharesOf(const Colour& rColour, const Colour& rLight)
{
    const DOUBLE red   = (rLight.rg > 0.0) ? rColour.rg / rLight.rg : 1.0;
    const DOUBLE blue  = (rLight.bg > 0.0) ? rColour.bg / rLight.bg : 1.0;
    const DOUBLE green = 1.0 / (0.2126 * red + 0.7152 + 0.0722 * blue);
    return {red * green, green, blue * green};
}

TransferTable::TransferTable()
{
    for (size_t index = 0; index < m_codes.size(); ++index)
    {
        const DOUBLE level = static_cast<DOUBLE>(index) / Steps;
        const DOUBLE code  = (level <= 0.0031308) ? 12.92 * level : 1.055 * std::pow(level, 1.0 / 2.4) - 0.055;
        m_codes[index]     = static_cast<BYTE>(std::lround(code * 255.0));
    }
}

BYTE TransferTable::CodeOf(DOUBLE level) const
{
    return m_codes[static_cast<size_t>(std::lround(std::clamp(level, 0.0, 1.0) * Steps))];
}

}  // namespace kirosim
