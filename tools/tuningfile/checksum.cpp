#include "tools/tuningfile/checksum.h"

#include "parameters/parsercrc.h"
#include "tools/tuningfile/bytes.h"

namespace tuningfile
{

size_t ChecksumSize(const VersionUnion& rVersion)
{
    return (rVersion >= BinaryFileFormat::StructSymbolsVersion) ? sizeof(UINT64) : sizeof(UINT32);
}

VOID Seal(std::vector<BYTE>& rBytes, const VersionUnion& rVersion)
{
    if (rBytes.size() < ChecksumSize(rVersion))
    {
        return;
    }
    const size_t covered = rBytes.size() - ChecksumSize(rVersion);
    const UINT32 length  = static_cast<UINT32>(covered);
    if (rVersion >= BinaryFileFormat::StructSymbolsVersion)
    {
        StoreInteger(rBytes, covered,
                     ParserCRC64::GetCRC(reinterpret_cast<const CHAR*>(rBytes.data()), length, true, 0));
    }
    else
    {
        StoreInteger(rBytes, covered, ParserCRC32::GetCRC(rBytes.data(), length, 0));
    }
}

}  // namespace tuningfile
