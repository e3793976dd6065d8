#include "tools/hostilefiles/numberdamage.h"

#include <algorithm>
#include <array>
#include <random>

#include "tools/tuningfile/bytes.h"
#include "tools/tuningfile/checksum.h"

namespace hostilefiles
{

namespace
{

using tuningfile::LoadInteger;
using tuningfile::StoreInteger;

constexpr size_t VersionOffset = BinaryFileFormat::HeaderTagSize + sizeof(UINT32);
constexpr size_t SmallestFile  = VersionOffset + 2 * sizeof(UINT64);  ///< with a header and a checksum
constexpr size_t SectionsEnd   = 320;   ///< header and section table of a file of a few sections
constexpr size_t TablesEnd     = 4096;  ///< in files of a few modes, most tables of the format stand below

}  // namespace

VOID SealFile(std::span<BYTE> file)
{
    if (file.size() >= SmallestFile)
    {
        VersionUnion version;
        version.Value = LoadInteger<UINT64>(file, VersionOffset);
        tuningfile::Seal(file, version);
    }
}

VOID DamageNumber(std::span<BYTE> file, UINT32 seed)
{
    const size_t size = file.size();
    if (size < SmallestFile)
    {
        return;
    }
    std::minstd_rand random(seed);
    const auto below = [&random](size_t limit) { return std::uniform_int_distribution<size_t>(0, limit - 1)(random); };

    // A third of the damage goes to the sections, a third to where the tables are; the rest may hit any record.
    const size_t last  = size - sizeof(UINT32);
    const size_t limit = std::min(last, std::array{SectionsEnd, TablesEnd, last}[below(3)]);
    const size_t hit   = below(limit);
    const UINT32 old   = LoadInteger<UINT32>(file, hit);
    switch (below(6))
    {
    case 0:
        StoreInteger(file, hit, LoadInteger<UINT32>(file, below(last)));
        break;
    case 1:
    {
        const size_t place = below(limit);
        const auto   other = LoadInteger<UINT32>(file, place);
        StoreInteger(file, place, old);
        StoreInteger(file, hit, other);
        break;
    }
    case 2:
        StoreInteger(file, hit, static_cast<UINT32>(below(size + 16)));
        break;
    case 3:
        StoreInteger(file, hit, UINT32{0xFFFFFFFF} >> below(32));
        break;
    case 4:
        StoreInteger(file, hit, old + static_cast<UINT32>(below(17)) - 8);
        break;
    default:
        file[hit] ^= static_cast<BYTE>(1U << below(8));
        break;
    }
}

}  // namespace hostilefiles
