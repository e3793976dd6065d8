/// @file
/// Where in its text a value of a tuning stands.
#pragma once

#include <functional>
#include <optional>
#include <unordered_map>

#include "schema/recordmember.h"

namespace tuningfile
{

/// Both count from 1.
struct TextPlace
{
    UINT32 line;
    UINT32 column;
};

/// Places by the memory of the values. A value that a record took over from the mode above has none of its own.
class TextPlaces
{
public:
    /// @param pMember   what the record's table has at rMember.offset
    /// @param rMember   of the record
    VOID NoteMember(const VOID* pMember, const tuning::RecordMember& rMember, TextPlace place)
    {
        m_members.insert_or_assign({pMember, &rMember}, place);
    }

    /// Of one of the values of a list, or of the value that a member is.
    VOID NoteValue(const VOID* pValue, const tuning::RecordMember& rMember, TextPlace place)
    {
        m_values.insert_or_assign({pValue, &rMember}, place);
    }

    std::optional<TextPlace> OfMember(const VOID* pMember, const tuning::RecordMember& rMember) const
    {
        return Find(m_members, {pMember, &rMember});
    }

    std::optional<TextPlace> OfValue(const VOID* pValue, const tuning::RecordMember& rMember) const
    {
        return Find(m_values, {pValue, &rMember});
    }

private:
    /// A record and its first member share their memory: the row tells them apart.
    struct Key
    {
        const VOID*                 pMemory;
        const tuning::RecordMember* pMember;

        bool operator==(const Key&) const = default;
    };

    struct KeyHash
    {
        size_t operator()(const Key& rKey) const
        {
            constexpr size_t spread = 0x9E3779B97F4A7C15;
            return (reinterpret_cast<size_t>(rKey.pMemory) * spread) ^ reinterpret_cast<size_t>(rKey.pMember);
        }
    };

    using Places = std::unordered_map<Key, TextPlace, KeyHash>;

    static std::optional<TextPlace> Find(const Places& rPlaces, const Key& rKey)
    {
        const auto found = rPlaces.find(rKey);
        return (found != rPlaces.end()) ? std::optional(found->second) : std::nullopt;
    }

    Places m_members;
    Places m_values;
};

}  // namespace tuningfile
