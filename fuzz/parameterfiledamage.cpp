#include "fuzz/parameterfiledamage.h"

#include <algorithm>
#include <array>
#include <random>

#include "fuzz/unaligned.h"
#include "parameters/binaryfileformat.h"
#include "parameters/parsercrc.h"

namespace fuzz
{

namespace
{

constexpr size_t VersionOffset = BinaryFileFormat::HeaderTagSize + sizeof(UINT32);
constexpr size_t SectionsEnd   = 320;   ///< header and section table of a file of a few sections
constexpr size_t TablesEnd     = 4096;  ///< in files of a few modes, most tables of the format stand below

}  // namespace

VOID SealFile(BYTE* pFile, size_t size)
{
    if (size < VersionOffset + 2 * sizeof(UINT64))
    {
        return;
    }
    VersionUnion version;
    version.Value = Load<UINT64>(pFile + VersionOffset);
    if (version >= BinaryFileFormat::StructSymbolsVersion)
    {
        const size_t covered = size - sizeof(UINT64);
        Store(pFile + covered,
              ParserCRC64::GetCRC(reinterpret_cast<const CHAR*>(pFile), static_cast<UINT32>(covered), true, 0));
    }
    else
    {
        const size_t covered = size - sizeof(UINT32);
        Store(pFile + covered, ParserCRC32::GetCRC(pFile, static_cast<UINT32>(covered), 0));
    }
}

VOID DamageNumber(BYTE* pFile, size_t size, UINT32 seed)
{
    if (size < VersionOffset + 2 * sizeof(UINT64))
    {
        return;
    }
    std::minstd_rand random(seed);
    const auto below = [&random](size_t limit) { return std::uniform_int_distribution<size_t>(0, limit - 1)(random); };

    // A third of the damage goes to the sections, a third to where the tables are; the rest may hit any record.
    const size_t last  = size - sizeof(UINT32);
    const size_t limit = std::min(last, std::array{SectionsEnd, TablesEnd, last}[below(3)]);
    BYTE* const  pHit  = pFile + below(limit);
    const UINT32 old   = Load<UINT32>(pHit);
    switch (below(6))
    {
    case 0:
        Store(pHit, Load<UINT32>(pFile + below(last)));
        break;
    case 1:
    {
        BYTE* const pOther = pFile + below(limit);
        const auto  other  = Load<UINT32>(pOther);
        Store(pOther, old);
        Store(pHit, other);
        break;
    }
    case 2:
        Store(pHit, static_cast<UINT32>(below(size + 16)));
        break;
    case 3:
        Store(pHit, UINT32{0xFFFFFFFF} >> below(32));
        break;
    case 4:
        Store(pHit, old + static_cast<UINT32>(below(17)) - 8);
        break;
    default:
        *pHit ^= static_cast<BYTE>(1U << below(8));
        break;
    }
}

}  // namespace fuzz
