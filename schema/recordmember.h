/// @file
/// What the table of a record says: its rows, and what follows from them.
#pragma once

#include <cstddef>
#include <span>

#include "platform/tavotypes.h"

namespace tuning
{

/// What one value of a member is.
enum class ValueType : UINT8
{
    Int8,
    UInt8,
    Int16,
    UInt16,
    Int32,
    UInt32,
    Int64,
    UInt64,
    Float,
    Double,
    Boolean,  ///< BOOL, a 32-bit integer
    Enum,     ///< 32-bit enumeration
    Text,     ///< CHAR*, NUL-terminated or null
    Record    ///< nested record
};

/// How a member holds its values.
enum class Form : UINT8
{
    Single,     ///< one value
    Fixed,      ///< array of RecordMember::count values
    Variable,   ///< <name>Count, <name>ID and a pointer to <name>Count values
    Optional,   ///< <name>Count (0 or 1), <name>ID and one value
    EntryID     ///< SymbolTableID, which the store keeps, or an address: not part of a file
};

struct Enumerator
{
    const CHAR* pName;
    INT32       value;
};

/// The names of an enumeration.
struct EnumDescription
{
    const CHAR*       pName;
    const Enumerator* pEnumerators;
    UINT32            count;

    /// @return the name of value, null if it has none
    constexpr const CHAR* NameOf(INT32 value) const
    {
        for (UINT32 index = 0; index < count; ++index)
        {
            if (pEnumerators[index].value == value)
            {
                return pEnumerators[index].pName;
            }
        }
        return nullptr;
    }
};

struct RecordDescription;

/// One row of a record's table. Offsets and sizes are bytes in the struct.
struct RecordMember
{
    const CHAR*              pName;
    UINT64                   nameHash;     ///< namehash::OfName(pName)
    ValueType                type;
    Form                     form;
    UINT32                   count;        ///< values of a Fixed member, 1 otherwise
    UINT32                   offset;       ///< of the value, of the array, or of the pointer
    UINT32                   countOffset;  ///< of <name>Count; Variable and Optional only
    UINT32                   idOffset;     ///< of <name>ID; Variable and Optional only
    UINT32                   valueSize;    ///< of one value in memory
    UINT32                   alignment;    ///< of what stands at offset
    UINT32                   storedOffset; ///< in the block of a record in a file, see StoredBytes
    const RecordDescription* pRecord;      ///< of a nested record, null otherwise
    const EnumDescription*   pEnum;        ///< of an enumeration with names, null otherwise
    const EnumDescription*   pIndexEnum;   ///< names of the indices of a Fixed member, null otherwise

    /// @return offset of the first byte that belongs to the member
    constexpr UINT32 Begin() const
    {
        return HasCount() ? countOffset : offset;
    }

    constexpr UINT32 BeginAlignment() const
    {
        return HasCount() ? static_cast<UINT32>(alignof(UINT32)) : alignment;
    }

    /// @return offset behind the last byte that belongs to the member
    constexpr UINT32 End() const
    {
        return offset + (form == Form::Variable ? static_cast<UINT32>(sizeof(VOID*)) : valueSize * count);
    }

    constexpr bool HasCount() const
    {
        return form == Form::Variable || form == Form::Optional;
    }

    constexpr bool IsArray() const
    {
        return form == Form::Fixed || form == Form::Variable;
    }

    constexpr bool IsStored() const
    {
        return form != Form::EntryID;
    }

    /// @return whether a file has the number of values in front of them
    constexpr bool HasStoredCount() const
    {
        return form == Form::Fixed && count >= 2;
    }
};

/// The table of a record.
struct RecordDescription
{
    const CHAR*         pName;
    UINT32              size;         ///< sizeof the struct
    UINT32              alignment;    ///< alignof the struct
    const RecordMember* pMembers;
    UINT32              memberCount;
    bool                ownsMemory;   ///< a member, or a nested record's member, is a pointer
    UINT32              storedSize = 0;   ///< of a record's block in a file, see StoredBytes; 0 for one of no file

    constexpr std::span<const RecordMember> Members() const
    {
        return {pMembers, memberCount};
    }
};

/// @return bytes up to the next multiple of alignment
constexpr UINT32 AlignUp(UINT32 offset, UINT32 alignment)
{
    return (offset + alignment - 1) / alignment * alignment;
}

/// @return whether the members follow one another without holes other than padding, and end with the struct
constexpr bool MembersCoverStruct(const RecordMember* pMembers, size_t count, size_t size, size_t alignment)
{
    UINT32 end = 0;
    for (size_t index = 0; index < count; ++index)
    {
        const RecordMember& rMember = pMembers[index];
        if (rMember.Begin() != AlignUp(end, rMember.BeginAlignment()))
        {
            return false;
        }
        if (rMember.HasCount() && (rMember.idOffset != rMember.countOffset + sizeof(UINT32) ||
                                   rMember.offset != AlignUp(rMember.idOffset + sizeof(UINT32), rMember.alignment)))
        {
            return false;
        }
        end = rMember.End();
    }
    return AlignUp(end, static_cast<UINT32>(alignment)) == size;
}

constexpr UINT32 StoredCountSize = 4;  ///< of the number of bytes in front of a record, and of values in front of an array
constexpr UINT32 StoredPairSize  = 8;  ///< of a count, or a text's length, and the ID of the entry with the values

/// @return bytes that a member takes in the block of a record in a file of the newest version with this very schema
constexpr UINT32 StoredBytes(const RecordMember& rMember)
{
    if (!rMember.IsStored())
    {
        return 0;
    }
    if (rMember.HasCount())
    {
        return StoredPairSize;
    }
    const UINT32 value = (rMember.type == ValueType::Text)     ? StoredPairSize
                         : (rMember.type == ValueType::Record) ? rMember.pRecord->storedSize
                                                               : rMember.valueSize;
    return (rMember.HasStoredCount() ? StoredCountSize : 0) + value * rMember.count;
}

/// @return whether the member, or one of a nested record, is a pointer
constexpr bool OwnsMemory(const RecordMember& rMember)
{
    return rMember.form == Form::Variable || rMember.type == ValueType::Text ||
           (rMember.type == ValueType::Record && rMember.pRecord->ownsMemory);
}

constexpr bool MembersOwnMemory(const RecordMember* pMembers, size_t count)
{
    for (size_t index = 0; index < count; ++index)
    {
        if (OwnsMemory(pMembers[index]))
        {
            return true;
        }
    }
    return false;
}

} // namespace tuning
