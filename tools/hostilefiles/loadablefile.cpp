#include "tools/hostilefiles/loadablefile.h"

#include <unistd.h>

namespace hostilefiles
{

LoadableFile::LoadableFile(std::span<const BYTE> bytes, bool isFileMode) : m_bytes(bytes)
{
    if (isFileMode)
    {
        m_path = m_file.emplace(bytes).Path();
    }
}

bool LoadableFile::LoadInto(ParameterSetManager& rStore) const
{
    return IsFileMode() ? rStore.LoadBinaryParameters(Path())
                        : rStore.LoadBinaryParameters(m_bytes.data(), m_bytes.size());
}

VOID LoadableFile::Cut(size_t size) const
{
    if (IsFileMode())
    {
        (VOID) !truncate(Path(), static_cast<off_t>(size));
    }
}

}  // namespace hostilefiles
