#include "tools/panorama/hdrinput.h"

#include <array>
#include <charconv>
#include <cmath>
#include <fmt/format.h>

#include "tools/tuningfile/inputerror.h"

namespace panorama
{

namespace
{

using Bytes = std::array<BYTE, 4>;  ///< of a pixel: red, green, blue, exponent

/// Widths of lines whose four kinds of bytes stand apart, each with runs of its own.
constexpr UINT32 ApartMin = 8;
constexpr UINT32 ApartMax = 32767;

Light LightOf(const Bytes& rBytes)
{
    constexpr INT32 exponentOfUnity = 128 + 8;  // mantissas are of 256
    if (rBytes[3] == 0)
    {
        return {0.0f, 0.0f, 0.0f};
    }
    const FLOAT scale = std::ldexp(1.0f, rBytes[3] - exponentOfUnity);
    return {rBytes[0] * scale, rBytes[1] * scale, rBytes[2] * scale};
}

class HdrReader
{
public:
    HdrReader(std::span<const BYTE> bytes, std::string_view name) : m_bytes(bytes), m_name(name)
    {
    }

    RadianceMap Read()
    {
        SkipHeader();
        const auto [width, height] = ReadSize();
        RadianceMap        map     = MakeMap(width, height, m_bytes.size(), m_name);
        std::vector<Bytes> line(map.width);
        for (UINT32 row = 0; row < map.height; ++row)
        {
            ReadLine(line);
            for (UINT32 column = 0; column < map.width; ++column)
            {
                map.pixels[static_cast<size_t>(row) * map.width + column] = LightOf(line[column]);
            }
        }
        return map;
    }

private:
    [[noreturn]] VOID Fail(std::string_view what) const
    {
        throw tuningfile::InputError(fmt::format("{}: {}", m_name, what));
    }

    std::string_view ReadText()
    {
        const size_t begin = m_place;
        while (m_place < m_bytes.size() && m_bytes[m_place] != '\n')
        {
            ++m_place;
        }
        if (m_place == m_bytes.size())
        {
            Fail("ends within its header");
        }
        return {reinterpret_cast<const CHAR*>(m_bytes.data()) + begin, m_place++ - begin};
    }

    VOID SkipHeader()
    {
        constexpr std::string_view format = "FORMAT=";
        for (std::string_view text = ReadText(); !text.empty(); text = ReadText())
        {
            if (text.starts_with(format) && text.substr(format.size()) != "32-bit_rle_rgbe")
            {
                Fail("its FORMAT is not 32-bit_rle_rgbe");
            }
        }
    }

    INT64 ReadSide(std::string_view& rText, std::string_view axis) const
    {
        INT64 side = 0;
        if (rText.starts_with(axis))
        {
            rText.remove_prefix(axis.size());
            const auto result = std::from_chars(rText.data(), rText.data() + rText.size(), side);
            rText.remove_prefix(static_cast<size_t>(result.ptr - rText.data()));
        }
        return side;
    }

    std::pair<INT64, INT64> ReadSize()
    {
        std::string_view text   = ReadText();
        const INT64      height = ReadSide(text, "-Y ");
        const INT64      width  = ReadSide(text, " +X ");
        if (width <= 0 || height <= 0 || !text.empty())
        {
            Fail("expected a size such as '-Y 256 +X 512' behind the header");
        }
        return {width, height};
    }

    BYTE ReadByte()
    {
        if (m_place == m_bytes.size())
        {
            Fail("ends before its last line");
        }
        return m_bytes[m_place++];
    }

    Bytes ReadBytes()
    {
        Bytes bytes;
        for (BYTE& rByte : bytes)
        {
            rByte = ReadByte();
        }
        return bytes;
    }

    VOID ReadLine(std::vector<Bytes>& rLine)
    {
        const Bytes first = ReadBytes();
        const bool  isApart =
            rLine.size() >= ApartMin && rLine.size() <= ApartMax && first[0] == 2 && first[1] == 2 && first[2] < 128;
        if (!isApart)
        {
            ReadPixels(first, rLine);
            return;
        }
        if (rLine.size() != (static_cast<size_t>(first[2]) << 8 | first[3]))
        {
            Fail("a line has another width than the picture");
        }
        for (size_t kind = 0; kind < first.size(); ++kind)
        {
            ReadKind(kind, rLine);
        }
    }

    /// One kind of bytes of all pixels of a line: counts, and one byte to repeat or so many bytes.
    VOID ReadKind(size_t kind, std::vector<Bytes>& rLine)
    {
        constexpr size_t runFrom = 128;
        for (size_t column = 0; column < rLine.size();)
        {
            const size_t code  = ReadByte();
            const bool   isRun = code > runFrom;
            const size_t count = isRun ? code - runFrom : code;
            if (count == 0 || count > rLine.size() - column)
            {
                Fail("a run does not fit into its line");
            }
            const BYTE repeated = isRun ? ReadByte() : 0;
            for (size_t end = column + count; column < end; ++column)
            {
                rLine[column][kind] = isRun ? repeated : ReadByte();
            }
        }
    }

    /// Whole pixels; 1, 1, 1 and a count repeats the one before. Counts behind one another are digits, the lowest
    /// first.
    VOID ReadPixels(const Bytes& rFirst, std::vector<Bytes>& rLine)
    {
        constexpr UINT32 digitBits = 8;
        Bytes            bytes     = rFirst;
        UINT32           shift     = 0;
        for (size_t column = 0; column < rLine.size();)
        {
            const bool isRun = bytes[0] == 1 && bytes[1] == 1 && bytes[2] == 1;
            if (!isRun)
            {
                rLine[column++] = bytes;
                shift           = 0;
            }
            else
            {
                const size_t count = static_cast<size_t>(bytes[3]) << shift;
                if (column == 0 || count > rLine.size() - column)
                {
                    Fail("a run does not fit into its line");
                }
                std::fill_n(rLine.begin() + static_cast<ptrdiff_t>(column), count, rLine[column - 1]);
                column += count;
                shift = std::min(shift + digitBits, 3 * digitBits);
            }
            if (column < rLine.size())
            {
                bytes = ReadBytes();
            }
        }
    }

    std::span<const BYTE>  m_bytes;
    const std::string_view m_name;
    size_t                 m_place = 0;
};

}  // namespace

bool IsHdr(std::span<const BYTE> bytes)
{
    return bytes.size() > 2 && bytes[0] == '#' && bytes[1] == '?';
}

RadianceMap ReadHdr(std::span<const BYTE> bytes, std::string_view name)
{
    return HdrReader(bytes, name).Read();
}

}  // namespace panorama
