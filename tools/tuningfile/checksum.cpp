#include "tools/tuningfile/checksum.h"

#include "parameters/parsercrc.h"
#include "tools/tuningfile/bytes.h"

namespace tuningfile
{

size_t ChecksumSize(const VersionUnion& rVersion)
{
    return (rVersion >= BinaryFileFormat::StructSymbolsVersion) ? sizeof(UINT64) : sizeof(UINT32);
}

VOID Seal(std::span<BYTE> bytes, const VersionUnion& rVersion)
{
    if (bytes.size() < ChecksumSize(rVersion))
    {
        return;
    }
    const size_t covered = bytes.size() - ChecksumSize(rVersion);
    const UINT32 length  = static_cast<UINT32>(covered);
    if (rVersion >= BinaryFileFormat::StructSymbolsVersion)
    {
        StoreInteger(bytes, covered, ParserCRC64::GetCRC(reinterpret_cast<const CHAR*>(bytes.data()), length, true, 0));
    }
    else
    {
        StoreInteger(bytes, covered, ParserCRC32::GetCRC(bytes.data(), length, 0));
    }
}

}  // namespace tuningfile
