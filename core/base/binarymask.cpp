#include "core/base/binarymask.h"

#include <algorithm>

namespace
{

constexpr INT32 Dilated = 2;  // becomes set at the end, so that a new cell does not spread

}  // namespace

VOID binarymask::UtilDilateBinaryMask(INT32* pMask)
{
    UINT32 changed = 0;
    for (UINT32 row = 1; row + 1 < Width; ++row)
    {
        for (UINT32 column = 1; column + 1 < Width; ++column)
        {
            const UINT32 index           = row * Width + column;
            const bool   hasSetNeighbour = pMask[index - 1] == Set || pMask[index + 1] == Set ||
                                         pMask[index - Width] == Set || pMask[index + Width] == Set;
            if (pMask[index] == Clear && hasSetNeighbour)
            {
                pMask[index] = Dilated;
                ++changed;
            }
        }
    }
    if (changed > 0)
    {
        constexpr UINT32 firstInner = Width + 1;
        constexpr UINT32 lastInner  = CellCount - Width - 2;
        std::replace(pMask + firstInner, pMask + lastInner + 1, Dilated, Set);
    }
}
