#include "tools/kirosim/regionpicture.h"

#include <algorithm>
#include <cmath>

namespace kirosim
{

namespace
{

/// The sRGB transfer, by a table: a picture has many pixels, and is made beside frames.
class TransferTable
{
public:
    TransferTable()
    {
        for (size_t index = 0; index < m_codes.size(); ++index)
        {
            const DOUBLE level = static_cast<DOUBLE>(index) / Steps;
            const DOUBLE code  = (level <= 0.0031308) ? 12.92 * level : 1.055 * std::pow(level, 1.0 / 2.4) - 0.055;
            m_codes[index]     = static_cast<BYTE>(std::lround(code * 255.0));
        }
    }

    BYTE CodeOf(DOUBLE level) const
    {
        return m_codes[static_cast<size_t>(std::clamp(level, 0.0, 1.0) * Steps + 0.5)];
    }

private:
    static constexpr DOUBLE    Steps = 8192.0;
    std::array<BYTE, 8192 + 1> m_codes;
};

/// @return how much more of a colour a region shows than a grey surface
DOUBLE Balanced(FLOAT ratio, DOUBLE ofLight)
{
    return (ofLight > 0.0) ? static_cast<DOUBLE>(ratio) / ofLight : 1.0;
}

}  // namespace

VOID DevelopRegions(const RegionView& rView, RegionPixels& rPixels)
{
    static const TransferTable table;
    for (size_t region = 0; region < GridSize; ++region)
    {
        const DOUBLE red   = Balanced(rView.rg[region], rView.light.rg);
        const DOUBLE blue  = Balanced(rView.bg[region], rView.light.bg);
        const DOUBLE green = static_cast<DOUBLE>(rView.level[region]) / (0.2126 * red + 0.7152 + 0.0722 * blue);

        rPixels[3 * region]     = table.CodeOf(red * green);
        rPixels[3 * region + 1] = table.CodeOf(green);
        rPixels[3 * region + 2] = table.CodeOf(blue * green);
    }
}

}  // namespace kirosim
