/// @file
/// Which tuning a recording was made with. The tuning itself is not part of the recording.
#pragma once

#include <string>

#include "platform/tavotypes.h"

namespace recording
{

struct TuningReference
{
    std::string path;
    UINT32      checksum = 0;  ///< CRC-32 of the parameter file, for a text of the one that it compiles to
    UINT64      size     = 0;  ///< bytes of that file

    bool HasSameContent(const TuningReference& rOther) const
    {
        return checksum == rOther.checksum && size == rOther.size;
    }
};

}  // namespace recording
