/// @file
/// Light as a screen shows it: white balance, and the sRGB transfer.
#pragma once

#include <array>

#include "platform/tavotypes.h"
#include "tools/kirosim/flashmodel.h"

namespace kirosim
{

/// Channels of a light over its luminance (Rec. 709).
struct ChannelShares
{
    DOUBLE red;
    DOUBLE green;
    DOUBLE blue;
};

/// Balanced so that a grey surface shows grey. @param rLight what such a surface shows; ratios of 0 or less count as 1
ChannelShares SharesOf(const Colour& rColour, const Colour& rLight);

/// The sRGB transfer (IEC 61966-2-1) in 8 bits, by a table: a picture has many pixels, and is made beside frames.
class TransferTable
{
public:
    TransferTable();

    /// @param level full scale is 1; held within 0 to 1
    BYTE CodeOf(DOUBLE level) const;

private:
    static constexpr UINT32     Steps = 8192;
    std::array<BYTE, Steps + 1> m_codes;
};

}  // namespace kirosim
