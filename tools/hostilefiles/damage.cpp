#include "tools/hostilefiles/damage.h"

#include <algorithm>
#include <array>

#include "tools/tuningfile/bytes.h"
#include "tools/tuningfile/checksum.h"

namespace hostilefiles
{

namespace
{

using tuningfile::LoadInteger;
using tuningfile::StoreInteger;

constexpr UINT32 Word = sizeof(UINT32);

/// Where the fields of a row stand.
constexpr UINT32 SectionRowSize   = 3 * Word;
constexpr UINT32 SymbolModeId     = 16;
constexpr UINT32 SymbolOffset     = 20;  ///< size and duplicate follow
constexpr UINT32 ModeParentOffset = 12;  ///< the link follows

class Damager
{
public:
    Damager(const Specimen& rSpecimen, std::mt19937_64& rRandom)
        : m_rSpecimen(rSpecimen), m_rSections(rSpecimen.Sections()), m_rRandom(rRandom), m_bytes(rSpecimen.bytes)
    {
    }

    VOID Apply(DamageKind kind)
    {
        switch (kind)
        {
        case DamageKind::Bits:
            FlipBits(0, static_cast<UINT32>(m_bytes.size()), 1 + Below(16));
            break;
        case DamageKind::Sections:
            DamageSections();
            break;
        case DamageKind::Rows:
            DamageRows();
            break;
        case DamageKind::Counts:
            DamageCounts();
            break;
        case DamageKind::Cycles:
            MakeCycle();
            break;
        case DamageKind::Modes:
            DamageModes();
            break;
        case DamageKind::Definitions:
            DamageDefinitions();
            break;
        case DamageKind::Length:
            ChangeLength();
            break;
        default:
            // The length comes last: the others count on places that the file has.
            for (UINT32 count = 2 + Below(3); count > 0; --count)
            {
                Apply(static_cast<DamageKind>(Below(static_cast<UINT32>(DamageKind::Length))));
            }
            if (Below(4) == 0)
            {
                ChangeLength();
            }
            break;
        }
    }

    std::vector<BYTE> Finish()
    {
        tuningfile::Seal(m_bytes, m_rSpecimen.Header().Version);
        return std::move(m_bytes);
    }

private:
    UINT32 Below(UINT32 limit)
    {
        return (limit > 0) ? static_cast<UINT32>(m_rRandom() % limit) : 0;
    }

    template <typename T> const T& OneOf(const std::vector<T>& rItems)
    {
        return rItems[Below(static_cast<UINT32>(rItems.size()))];
    }

    /// A number that bounds are easily wrong for.
    UINT32 Odd()
    {
        constexpr std::array<UINT32, 16> Numbers = {
            0,          1,          2,          0xFFFFFFFF, 0xFFFFFFFE, 0xFFFFFFF8, 0x80000000, 0x7FFFFFFF,
            0x40000000, 0x20000000, 0x10000000, 0x00FFFFFF, 0x01000000, 0x0000FFFF, 0x00010000, 0x15555556};
        switch (Below(4))
        {
        case 0:
            return static_cast<UINT32>(m_rRandom());
        case 1:
            return static_cast<UINT32>(m_bytes.size()) - 16 + Below(32);
        case 2:
            return Below(static_cast<UINT32>(m_bytes.size()));
        default:
            return Numbers[Below(static_cast<UINT32>(Numbers.size()))];
        }
    }

    UINT32 Get(size_t position) const
    {
        return LoadInteger<UINT32>(m_bytes, position);
    }

    VOID Put(size_t position, UINT32 value)
    {
        StoreInteger(m_bytes, position, value);
    }

    VOID Swap(size_t first, size_t second)
    {
        const UINT32 value = Get(first);
        Put(first, Get(second));
        Put(second, value);
    }

    VOID FlipBits(UINT32 start, UINT32 size, UINT32 count)
    {
        for (; count > 0 && size > 0; --count)
        {
            m_bytes[start + Below(size)] ^= static_cast<BYTE>(1U << Below(8));
        }
    }

    VOID DamageSections()
    {
        const UINT32 table = m_rSpecimen.Header().SectionTableOffset;
        const UINT32 count = m_rSpecimen.Header().SectionCount;
        for (UINT32 change = 1 + Below(3); change > 0; --change)
        {
            const UINT32 field = Below(3) * Word;
            const UINT32 place = table + Below(count) * SectionRowSize + field;
            switch (Below(3))
            {
            case 0:
                Swap(place, table + Below(count) * SectionRowSize + field);
                break;
            case 1:
                Put(place, Odd());
                break;
            default:
                Put(place, Get(place) + Below(65) - 32);
                break;
            }
        }
    }

    /// The place of a row's offset, in the symbol table or the data table.
    UINT32 OffsetOfSomeRow(bool isSymbol)
    {
        const SectionInfo&  rTable   = isSymbol ? m_rSections.Symbols : m_rSections.DataTable;
        const VersionUnion& rVersion = m_rSpecimen.Header().Version;
        const UINT32        rowSize  = isSymbol ? BinaryFileFormat::GetSymbolEntrySize(rVersion)
                                                : BinaryFileFormat::GetDataTableEntrySize(rVersion);
        return rTable.Offset + Below(rTable.Size / rowSize) * rowSize + (isSymbol ? SymbolOffset : 0);
    }

    UINT32 OffsetOfRow(UINT32 row) const
    {
        return m_rSections.DataTable.Offset +
               row * BinaryFileFormat::GetDataTableEntrySize(m_rSpecimen.Header().Version);
    }

    VOID DamageRows()
    {
        const bool isSymbol = Below(3) == 0;
        for (UINT32 change = 1 + Below(8); change > 0; --change)
        {
            const UINT32 place = OffsetOfSomeRow(isSymbol);
            const UINT32 field = Below(3) * Word;  // offset, size, duplicate
            switch (Below(isSymbol ? 5 : 4))
            {
            case 0:
                Put(place + field, Odd());
                break;
            case 1:
                Put(place + field, Get(place + field) + Below(33) - 16);
                break;
            case 4:
                Put(place - SymbolOffset + SymbolModeId, Get(OffsetOfSomeRow(true) - SymbolOffset + SymbolModeId));
                break;
            default:
                Swap(place + field, OffsetOfSomeRow(isSymbol) + field);
                break;
            }
        }
    }

    VOID DamageCounts()
    {
        for (UINT32 change = 1 + Below(8); change > 0; --change)
        {
            const ArrayPlace& rArray = OneOf(m_rSpecimen.Arrays());
            Put(rArray.position, Odd());
            switch (Below(3))
            {
            case 0:
                // As much data as the file has.
                Put(OffsetOfRow(rArray.row), Below(m_rSections.Data.Size));
                Put(OffsetOfRow(rArray.row) + Word, m_rSections.Data.Size - Get(OffsetOfRow(rArray.row)));
                break;
            case 1:
                Put(OffsetOfRow(rArray.row) + Word, Odd());
                break;
            default:
                break;
            }
        }
    }

    /// Each array's data becomes a piece of the file in which the next array stands, and the last one's that of the
    /// first.
    VOID MakeCycle()
    {
        const std::vector<ArrayPlace>& rArrays = m_rSpecimen.Arrays();
        const UINT32                   length  = 1 + Below(6);
        const UINT32                   first   = Below(static_cast<UINT32>(rArrays.size()));
        const bool                     isLarge = Below(2) == 0;
        const auto                     at      = [&](UINT32 step)
        { return rArrays[(first + step % length) % static_cast<UINT32>(rArrays.size())]; };
        for (UINT32 step = 0; step < length; ++step)
        {
            const UINT32 inner  = at(step + 1).position - m_rSections.Data.Offset;
            const UINT32 offset = inner - std::min(inner, Below(64));
            const UINT32 rest   = m_rSections.Data.Size - offset;
            Put(OffsetOfRow(at(step).row), offset);
            Put(OffsetOfRow(at(step).row) + Word, (Below(2) == 0) ? rest : std::min(rest, 64 + Below(4096)));
            if (isLarge)
            {
                Put(at(step).position, 1 + Below(2048));
            }
            if (Below(4) == 0)
            {
                Put(at(step).position + Word, at(step + 1).row);
            }
        }
    }

    VOID DamageModes()
    {
        const VersionUnion& rVersion = m_rSpecimen.Header().Version;
        const SectionInfo   table    = OneOf(m_rSections.ModeTables);
        const UINT32        rowSize  = BinaryFileFormat::GetModeEntrySize(rVersion);
        const UINT32        rows     = table.Offset + BinaryFileFormat::GetModeTableNameSize(rVersion);
        const UINT32        count    = (table.Offset + table.Size - rows) / rowSize;
        const UINT32        length   = 1 + Below(count);
        const UINT32        first    = Below(count);
        const UINT32        field    = ModeParentOffset + Below(2) * Word;
        const auto          at       = [&](UINT32 step) { return rows + (first + step % length) % count * rowSize; };
        switch (Below(4))
        {
        case 0:
            FlipBits(rows, count * rowSize, 1 + Below(8));
            break;
        case 1:
            Put(at(0) + Below(rowSize / Word) * Word, Odd());
            break;
        default:
            for (UINT32 step = 0; step < length; ++step)
            {
                Put(at(step) + field, Get(at(step + 1)));
            }
            break;
        }
    }

    VOID DamageDefinitions()
    {
        const SectionInfo& rTable = m_rSections.Definitions;
        if (rTable.Size < 4 * Word)
        {
            DamageRows();
            return;
        }
        // Names of structures, types and lengths are small numbers among much text: half of the hits go for those.
        for (UINT32 change = 1 + Below(8); change > 0; --change)
        {
            UINT32 place = rTable.Offset + Below(rTable.Size - Word);
            for (UINT32 tries = Below(2) * 64; tries > 0 && (Get(place) == 0 || Get(place) > 0xFF); --tries)
            {
                place = rTable.Offset + Below(rTable.Size - Word);
            }
            switch (Below(3))
            {
            case 0:
                Put(place, Odd());
                break;
            case 1:
                Put(place, Below(256));
                break;
            default:
                FlipBits(place, Word, 1 + Below(3));
                break;
            }
        }
    }

    VOID ChangeLength()
    {
        const UINT32 size = static_cast<UINT32>(m_bytes.size());
        m_bytes.resize((Below(3) == 0) ? size + Below(4096) : 1 + Below(size));
        // Mostly the header knows, since it is compared before anything else.
        if (Below(4) != 0 && m_bytes.size() >= BinaryFileFormat::HeaderTagSize + Word)
        {
            Put(BinaryFileFormat::HeaderTagSize, static_cast<UINT32>(m_bytes.size()));
        }
    }

    const Specimen&           m_rSpecimen;
    const BinaryFileSections& m_rSections;
    std::mt19937_64&          m_rRandom;
    std::vector<BYTE>         m_bytes;
};

}  // namespace

const CHAR* NameOf(DamageKind kind)
{
    constexpr std::array<const CHAR*, DamageKinds> Names = {"bits",  "sections",    "rows",   "counts", "cycles",
                                                            "modes", "definitions", "length", "mixed"};
    return Names[static_cast<size_t>(kind)];
}

std::vector<BYTE> Damage(const Specimen& rSpecimen, DamageKind kind, std::mt19937_64& rRandom)
{
    Damager damager(rSpecimen, rRandom);
    damager.Apply(kind);
    return damager.Finish();
}

}  // namespace hostilefiles
