#include "tools/kirosim/regionpicture.h"

#include "tools/kirosim/plaincolour.h"

namespace kirosim
{

VOID DevelopRegions(const RegionView& rView, RegionPixels& rPixels)
{
    static const TransferTable table;
    for (size_t region = 0; region < GridSize; ++region)
    {
        const Colour        colour = {static_cast<DOUBLE>(rView.rg[region]), static_cast<DOUBLE>(rView.bg[region])};
        const ChannelShares shares = SharesOf(colour, rView.light);
        const DOUBLE        level  = static_cast<DOUBLE>(rView.level[region]);

        rPixels[3 * region]     = table.CodeOf(level * shares.red);
        rPixels[3 * region + 1] = table.CodeOf(level * shares.green);
        rPixels[3 * region + 2] = table.CodeOf(level * shares.blue);
    }
}

}  // namespace kirosim
