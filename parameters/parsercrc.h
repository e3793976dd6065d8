/// @file
/// The checksums that close a parameter file.
#pragma once

#include "platform/tavotypes.h"
#include "schema/namehash.h"

class IParameterLoggingAPI;

/// The published CRC-32. Closes files of versions below 6.0.0.
class ParserCRC32
{
public:
    /// @param seed result of the data before; 0 at the start
    /// @return the seed itself if length is 0
    static UINT32 GetCRC(const BYTE* pData, UINT32 length, UINT32 seed);

    /// Compares the last 4 bytes of the buffer with the sum of those before them. Logs a mismatch.
    static bool Validate(const BYTE* pBuffer, UINT32 length, const IParameterLoggingAPI* pLog);
};

/// The checksum of files from 6.0.0 on, and of all names in them.
class ParserCRC64
{
public:
    static constexpr UINT64 GetCRC(const CHAR* pData, UINT32 length, bool includeLength, UINT64 seed)
    {
        return namehash::Checksum(pData, length, includeLength, seed);
    }

    /// Compares the last 8 bytes of the buffer with the sum of those before them, whose number is folded in if
    /// includeLength is set. Logs a mismatch.
    static bool Validate(const BYTE* pBuffer, UINT32 length, bool includeLength, const IParameterLoggingAPI* pLog);
};
