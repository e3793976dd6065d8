#include "tools/panorama/exrheader.h"

#include <algorithm>
#include <cstring>

#include <fmt/format.h>

#include "tools/panorama/radiancemap.h"
#include "tools/tuningfile/inputerror.h"

namespace panorama
{

namespace
{

constexpr size_t MagicSize = 4;

/// Attributes that say how pixels are stored. Sizes of their data in bytes; those of channels grow with their number.
struct KnownAttribute
{
    std::string_view name;
    std::string_view type;
    size_t           least;
    size_t           most;
};

constexpr KnownAttribute KnownAttributes[] = {
    {"channels", "chlist", 1, 512},      {"compression", "compression", 1, 1}, {"dataWindow", "box2i", 16, 16},
    {"displayWindow", "box2i", 16, 16},  {"lineOrder", "lineOrder", 1, 1},     {"pixelAspectRatio", "float", 4, 4},
    {"screenWindowCenter", "v2f", 8, 8}, {"screenWindowWidth", "float", 4, 4}, {"tiles", "tiledesc", 9, 9},
};

class ExrHeader
{
public:
    ExrHeader(std::span<const BYTE> bytes, std::string_view name)
        : m_bytes(bytes.begin(), bytes.end()), m_name(name), m_place(MagicSize)
    {
    }

    std::vector<BYTE> Check()
    {
        CheckVersion();
        while (Byte() != 0)
        {
            --m_place;
            CheckAttribute();
        }
        return std::move(m_bytes);
    }

private:
    [[noreturn]] VOID Fail(std::string_view what) const
    {
        throw tuningfile::InputError(fmt::format("{}: {}", m_name, what));
    }

    VOID Require(size_t count) const
    {
        if (m_bytes.size() - m_place < count)
        {
            Fail("ends within its header");
        }
    }

    BYTE Byte()
    {
        Require(1);
        return m_bytes[m_place++];
    }

    /// Numbers are of the least significant byte first, on all machines that this runs on, too.
    INT32 NumberAt(size_t place) const
    {
        INT32 number;
        std::memcpy(&number, &m_bytes[place], sizeof(number));
        return number;
    }

    INT32 Number()
    {
        Require(sizeof(INT32));
        m_place += sizeof(INT32);
        return NumberAt(m_place - sizeof(INT32));
    }

    std::string_view Text()
    {
        constexpr size_t textMax = 255;
        const size_t     begin   = m_place;
        while (Byte() != 0)
        {
            if (m_place - begin > textMax)
            {
                Fail("has a name that is too long in its header");
            }
        }
        return {reinterpret_cast<const CHAR*>(&m_bytes[begin]), m_place - 1 - begin};
    }

    VOID CheckVersion()
    {
        constexpr INT32 version   = 2;
        constexpr INT32 isTiled   = 0x200;
        constexpr INT32 longNames = 0x400;
        if ((Number() & ~(isTiled | longNames)) != version)
        {
            Fail("expected an OpenEXR picture of version 2 with a single part of lines or tiles");
        }
    }

    VOID CheckAttribute()
    {
        const std::string_view name      = Text();
        const size_t           typePlace = m_place;
        const std::string_view type      = Text();
        const INT32            size      = Number();
        if (size < 0)
        {
            Fail("has an attribute of negative size");
        }
        Require(static_cast<size_t>(size));
        const auto known = std::find_if(std::begin(KnownAttributes), std::end(KnownAttributes),
                                        [name](const KnownAttribute& rKnown) { return rKnown.name == name; });
        if (known == std::end(KnownAttributes))
        {
            std::fill_n(m_bytes.begin() + static_cast<ptrdiff_t>(typePlace), type.size(), BYTE{'?'});
        }
        else if (type != known->type || static_cast<size_t>(size) < known->least ||
                 static_cast<size_t>(size) > known->most)
        {
            Fail(fmt::format("its attribute '{}' is not of the type and size that a picture has", known->name));
        }
        const size_t end = m_place + static_cast<size_t>(size);
        CheckSizes(name);
        CheckChannels(name, end);
        m_place = end;
    }

    /// The list of channels ends by itself: where the library goes on behind it must be where the attribute ends.
    VOID CheckChannels(std::string_view name, size_t end)
    {
        constexpr size_t factsSize = 16;  // of a channel, behind its name
        if (name != "channels")
        {
            return;
        }
        while (!Text().empty())
        {
            Require(factsSize);
            m_place += factsSize;
        }
        if (m_place != end)
        {
            Fail("has a list of channels of another size than its header says");
        }
    }

    VOID CheckSizes(std::string_view name) const
    {
        if (name == "dataWindow")
        {
            const INT64 left   = NumberAt(m_place);
            const INT64 top    = NumberAt(m_place + 4);
            const INT64 right  = NumberAt(m_place + 8);
            const INT64 bottom = NumberAt(m_place + 12);
            CheckMapSize(right - left + 1, bottom - top + 1, m_bytes.size(), m_name);
        }
        if (name == "tiles")
        {
            const auto isSide = [](INT32 side) { return side >= 8 && side <= 512; };
            if (!isSide(NumberAt(m_place)) || !isSide(NumberAt(m_place + 4)))
            {
                Fail("expected tiles of 8 to 512 pixels");
            }
        }
    }

    std::vector<BYTE>      m_bytes;
    const std::string_view m_name;
    size_t                 m_place;
};

}  // namespace

std::vector<BYTE> CheckedExr(std::span<const BYTE> bytes, std::string_view name)
{
    return ExrHeader(bytes, name).Check();
}

}  // namespace panorama
