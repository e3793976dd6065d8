#include "tools/hostilefiles/specimen.h"

#include <stdexcept>

#include "tools/tuningfile/bytes.h"
#include "tools/tuningfile/checksum.h"

namespace hostilefiles
{

Specimen::Specimen(std::string fileName, std::vector<BYTE> fileBytes)
    : name(std::move(fileName)), bytes(std::move(fileBytes))
{
    UINT64      position = 0;
    std::string error;
    bool        isRead = BinaryFileFormat::ReadHeader(bytes.data(), bytes.size(), position, m_header, error, nullptr);
    position           = m_header.SectionTableOffset;
    isRead = isRead && BinaryFileFormat::ReadSectionInfo(bytes.data(), bytes.size(), position, m_header.Alignment,
                                                         m_header.SectionCount, m_sections, error, nullptr);
    if (isRead && m_header.Version >= BinaryFileFormat::StructSymbolsVersion)
    {
        FindArrays();
    }
    if (m_arrays.empty() || m_sections.ModeTables.empty() || m_sections.Symbols.Size == 0)
    {
        throw std::runtime_error(name + ": no parameter file with modules and arrays");
    }
}

Specimen Specimen::WithoutDefinitions() const
{
    constexpr UINT32 RowSize = 3 * sizeof(UINT32);

    std::vector<BYTE> changed = bytes;
    for (UINT32 row = 0; row < m_header.SectionCount; ++row)
    {
        const size_t place = m_header.SectionTableOffset + static_cast<size_t>(row) * RowSize;
        if (tuningfile::LoadInteger<UINT32>(changed, place) == BinaryFileFormat::DefinitionTableSection)
        {
            tuningfile::StoreInteger(changed, place + sizeof(UINT32), UINT32{0});
            tuningfile::StoreInteger(changed, place + 2 * sizeof(UINT32), UINT32{0});
        }
    }
    tuningfile::Seal(changed, m_header.Version);
    return Specimen(name + " without definitions", std::move(changed));
}

VOID Specimen::FindArrays()
{
    const UINT32 rowSize  = BinaryFileFormat::GetDataTableEntrySize(m_header.Version);
    const UINT32 rowCount = m_sections.DataTable.Size / rowSize;
    const UINT32 end      = m_sections.Data.Offset + m_sections.Data.Size;
    // Records are packed, so that a count may stand anywhere. A pair that only looks like one is damaged as gladly.
    for (UINT32 position = m_sections.Data.Offset; position + 2 * sizeof(UINT32) <= end; ++position)
    {
        const UINT32 count = tuningfile::LoadInteger<UINT32>(bytes, position);
        const UINT32 row   = tuningfile::LoadInteger<UINT32>(bytes, position + sizeof(UINT32));
        if (count == 0 || row == 0 || row >= rowCount)
        {
            continue;
        }
        const size_t place = m_sections.DataTable.Offset + static_cast<size_t>(row) * rowSize;
        if (count <= tuningfile::LoadInteger<UINT32>(bytes, place + sizeof(UINT32)))
        {
            m_arrays.push_back({position, row});
        }
    }
}

}  // namespace hostilefiles
