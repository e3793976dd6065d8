/// @file
/// What a record holds, by its table: where a member keeps its values, for all but the loader of files.
///
/// WalkRecord takes a record apart for whoever reads, writes, compares or makes up its values. Values are at the places
/// where they stand in memory; a place need not be aligned.
#pragma once

#include <cstring>
#include <string_view>

#include "schema/tuningrecord.h"

namespace tuning
{

/// Copies a value out of a record.
template <typename T>
T Load(const VOID* pPlace)
{
    T value;
    std::memcpy(&value, pPlace, sizeof(value));
    return value;
}

/// Copies a value into a record.
template <typename T>
VOID Store(VOID* pPlace, const T& rValue)
{
    std::memcpy(pPlace, &rValue, sizeof(rValue));
}

/// Calls with a zero of the type that values have in memory: BOOL and enumerations are INT32. Neither texts nor records
/// are numbers: with them, the answer is what the call answers for a zero of INT32.
template <typename Call>
decltype(auto) WithTypeOf(ValueType type, Call&& call)
{
    switch (type)
    {
    case ValueType::Int8:
        return call(INT8{});
    case ValueType::UInt8:
        return call(UINT8{});
    case ValueType::Int16:
        return call(INT16{});
    case ValueType::UInt16:
        return call(UINT16{});
    case ValueType::UInt32:
        return call(UINT32{});
    case ValueType::Int64:
        return call(INT64{});
    case ValueType::UInt64:
        return call(UINT64{});
    case ValueType::Float:
        return call(FLOAT{});
    case ValueType::Double:
        return call(DOUBLE{});
    default:
        return call(INT32{});
    }
}

constexpr bool IsNumber(ValueType type)
{
    return type != ValueType::Text && type != ValueType::Record;
}

/// @return the text at a place, "" for a null pointer
inline const CHAR* TextAt(const VOID* pPlace)
{
    const CHAR* pText = Load<const CHAR*>(pPlace);
    return (pText != nullptr) ? pText : "";
}

/// @return the stored member of a name, null if there is none
inline const RecordMember* FindMember(const RecordDescription& rRecord, std::string_view name)
{
    for (const RecordMember& rMember : rRecord.Members())
    {
        if (rMember.IsStored() && name == rMember.pName)
        {
            return &rMember;
        }
    }
    return nullptr;
}

/// The values that a member holds in one record.
template <typename Byte>
struct MemberValues
{
    Byte*  pFirst;  ///< may be null if there are none
    UINT32 count;

    Byte* At(const RecordMember& rMember, UINT32 index) const
    {
        return pFirst + static_cast<size_t>(index) * rMember.valueSize;
    }
};

/// A count without an array counts nothing. An optional value is there unless its count is 0.
template <typename Byte>
MemberValues<Byte> ValuesOf(const RecordMember& rMember, Byte* pRecord)
{
    Byte* pPlace = pRecord + rMember.offset;
    if (!rMember.HasCount())
    {
        return {pPlace, rMember.count};
    }
    const UINT32 count = Load<UINT32>(pRecord + rMember.countOffset);
    if (rMember.form == Form::Optional)
    {
        return {pPlace, (count != 0) ? 1U : 0U};
    }
    Byte* pArray = Load<Byte*>(pPlace);
    return {pArray, (pArray != nullptr) ? count : 0};
}

/// Gives a member with a count that many values. @param pArray of a Variable member: room for count values, which the
/// record refers to from now on
inline MemberValues<BYTE> SetCount(const RecordMember& rMember, BYTE* pRecord, UINT32 count, VOID* pArray)
{
    Store(pRecord + rMember.countOffset, count);
    if (rMember.form != Form::Variable)
    {
        return {pRecord + rMember.offset, count};
    }
    Store(pRecord + rMember.offset, pArray);
    return {static_cast<BYTE*>(pArray), count};
}

/// Hands the stored values of a record to a visitor, in the order of the table and of tables within. The visitor has:
///
///     auto         Enter(const RecordMember&)                  what it answers lives as long as the member is walked
///     auto         EnterItem(const RecordMember&, UINT32)      the same, for a record or text of the member
///     MemberValues CountedValues(const RecordMember&, pRecord) of a member with a count: found there, or put there
///     VOID         Numbers(const RecordMember&, MemberValues)  all of a member
///     VOID         Text(const RecordMember&, pPlace)           one of a member
///
/// @param pRecord bytes of the record, const for a visitor that only reads
template <typename Byte, typename Visitor>
VOID WalkRecord(const RecordDescription& rRecord, Byte* pRecord, Visitor& rVisitor);

template <typename Byte, typename Visitor>
VOID WalkMember(const RecordMember& rMember, Byte* pRecord, Visitor& rVisitor)
{
    [[maybe_unused]] const auto member = rVisitor.Enter(rMember);
    const MemberValues<Byte>    values =
        rMember.HasCount() ? rVisitor.CountedValues(rMember, pRecord) : ValuesOf(rMember, pRecord);
    if (IsNumber(rMember.type))
    {
        rVisitor.Numbers(rMember, values);
        return;
    }
    for (UINT32 index = 0; index < values.count; ++index)
    {
        [[maybe_unused]] const auto item = rVisitor.EnterItem(rMember, index);
        if (rMember.type == ValueType::Record)
        {
            WalkRecord(*rMember.pRecord, values.At(rMember, index), rVisitor);
        }
        else
        {
            rVisitor.Text(rMember, values.At(rMember, index));
        }
    }
}

template <typename Byte, typename Visitor>
VOID WalkRecord(const RecordDescription& rRecord, Byte* pRecord, Visitor& rVisitor)
{
    for (const RecordMember& rMember : rRecord.Members())
    {
        if (rMember.IsStored())
        {
            WalkMember(rMember, pRecord, rVisitor);
        }
    }
}

/// For visitors that keep no track of where they are.
struct UntrackedVisitor
{
    struct Nothing
    {
    };

    static Nothing Enter(const RecordMember&)
    {
        return {};
    }

    static Nothing EnterItem(const RecordMember&, UINT32)
    {
        return {};
    }
};

} // namespace tuning
