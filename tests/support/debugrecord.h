/// @file
/// The host's debug record as the bytes that an offline tool reads.
#pragma once

#include <cstring>

#include <gtest/gtest.h>

#include "host/kirodebugdata.h"
#include "tests/support/bytewriter.h"

/// Offsets of the parts, as tools have them.
namespace recordoffset
{
constexpr size_t FrameHistory   = 614;
constexpr size_t Metering       = 3974;
constexpr size_t Convergence    = 50345;
constexpr size_t Arbitration    = 51009;
constexpr size_t Extension      = 51221;
constexpr size_t LEDTable       = 51271;
constexpr size_t Flash          = 51451;
constexpr size_t Stats          = 77407;
constexpr size_t PrecisionFlash = 407034;
}  // namespace recordoffset

/// Debug data that a test looks at; on from the start.
class DebugRecord
{
public:
    DebugRecord()
    {
        m_host.SetEnabled(true);
    }

    KiroDebugData& Host()
    {
        return m_host;
    }

    template <typename T> T At(size_t offset)
    {
        T value;
        std::memcpy(&value, Data() + offset, sizeof(value));
        return value;
    }

    VOID ExpectBytes(size_t offset, const ByteWriter& rExpected)
    {
        const std::vector<BYTE>& rBytes = rExpected.Get();
        for (size_t index = 0; index < rBytes.size(); ++index)
        {
            ASSERT_EQ(Data()[offset + index], rBytes[index])
                << "byte " << index << " of " << rBytes.size() << " from offset " << offset << " on";
        }
    }

    VOID ExpectZeros(size_t offset, size_t count)
    {
        ExpectBytes(offset, ByteWriter().Zeros(count));
    }

private:
    const BYTE* Data()
    {
        return reinterpret_cast<const BYTE*>(&m_host.GetDebugData());
    }

    KiroDebugData m_host;
};
