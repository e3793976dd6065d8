#include "tools/kirosim/learnedfile.h"

#include <algorithm>
#include <stdexcept>

#include "host/flashcalibration.h"
#include "tools/recording/chunks.h"
#include "tools/tuningfile/files.h"

namespace kirosim
{

std::vector<BYTE> ReadLearned(const std::string& rPath)
{
    constexpr size_t checksumSize = sizeof(UINT32);

    const std::vector<BYTE> bytes = tuningfile::ReadBytes(rPath);
    std::vector<BYTE>       learned(bytes.begin(), bytes.end() - std::min(bytes.size(), checksumSize));
    if (!std::ranges::equal(LearnedFileOf(learned), bytes) || !flashcalibration::IsComplete(learned))
    {
        throw std::runtime_error(rPath + ": not what a run has learned of a flash, or damaged");
    }
    return learned;
}

std::vector<BYTE> LearnedFileOf(std::span<const BYTE> learned)
{
    std::vector<BYTE> bytes(learned.begin(), learned.end());
    const UINT32      checksum = recording::ChecksumOf(learned);
    for (UINT32 shift = 0; shift < 32; shift += 8)
    {
        bytes.push_back(static_cast<BYTE>(checksum >> shift));
    }
    return bytes;
}

}  // namespace kirosim
