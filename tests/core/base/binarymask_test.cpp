#include "core/base/binarymask.h"

#include <algorithm>

#include <gtest/gtest.h>

namespace
{

TEST(BinaryMask, DilatesOneStepWithinTheOuterRing)
{
    INT32      mask[binarymask::CellCount] = {};
    const auto at = [&](UINT32 row, UINT32 column) -> INT32& { return mask[row * 16 + column]; };
    at(5, 5)      = 1;
    at(0, 9)      = 1;  // on the ring: grows inwards only
    at(14, 1)     = 1;  // beside the ring
    binarymask::UtilDilateBinaryMask(mask);
    INT32 expected[binarymask::CellCount] = {};
    for (UINT32 cell : {5u * 16 + 5, 4u * 16 + 5, 6u * 16 + 5, 5u * 16 + 4, 5u * 16 + 6, 9u, 16u + 9, 14u * 16 + 1,
                        13u * 16 + 1, 14u * 16 + 2})
    {
        expected[cell] = 1;
    }
    EXPECT_TRUE(std::equal(std::begin(mask), std::end(mask), std::begin(expected)));
}

}  // namespace
