/// @file
/// Masks over the 16 x 16 regions of a metering grid, row by row from the upper left; a cell is 0 or 1.
#pragma once

#include "platform/tavotypes.h"

namespace binarymask
{

constexpr UINT32 Width     = 16;
constexpr UINT32 CellCount = Width * Width;

constexpr INT32 Clear = 0;
constexpr INT32 Set   = 1;

/// One step of dilation with the four nearest neighbours, in place; the outer ring is not changed.
/// @param pMask CellCount cells
VOID UtilDilateBinaryMask(INT32* pMask);

}  // namespace binarymask
