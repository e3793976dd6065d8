/// @file
/// A version number of three parts, of a file or of a module's schema.
#pragma once

#include "platform/tavotypes.h"

/// As it stands in a file: 8 bytes, Major first.
union VersionUnion
{
    UINT64 Value;
    struct
    {
        UINT16 Major;
        UINT16 Minor;
        UINT32 Patch;
    } Version;

    constexpr VersionUnion() : Version{}
    {
    }

    constexpr VersionUnion(UINT16 major, UINT16 minor, UINT32 patch) : Version{major, minor, patch}
    {
    }

    /// @return 1 if this version is later than rOther, -1 if it is earlier, 0 if they are the same
    constexpr INT32 Compare(const VersionUnion& rOther) const
    {
        if (Version.Major != rOther.Version.Major)
        {
            return (Version.Major > rOther.Version.Major) ? 1 : -1;
        }
        if (Version.Minor != rOther.Version.Minor)
        {
            return (Version.Minor > rOther.Version.Minor) ? 1 : -1;
        }
        if (Version.Patch != rOther.Version.Patch)
        {
            return (Version.Patch > rOther.Version.Patch) ? 1 : -1;
        }
        return 0;
    }

    constexpr bool operator==(const VersionUnion& rOther) const
    {
        return Compare(rOther) == 0;
    }

    constexpr bool operator!=(const VersionUnion& rOther) const
    {
        return Compare(rOther) != 0;
    }

    constexpr bool operator>(const VersionUnion& rOther) const
    {
        return Compare(rOther) > 0;
    }

    constexpr bool operator>=(const VersionUnion& rOther) const
    {
        return Compare(rOther) >= 0;
    }

    constexpr bool operator<(const VersionUnion& rOther) const
    {
        return Compare(rOther) < 0;
    }

    constexpr bool operator<=(const VersionUnion& rOther) const
    {
        return Compare(rOther) <= 0;
    }
};

static_assert(sizeof(VersionUnion) == 8);
