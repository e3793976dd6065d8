/// @file
/// How a tuning record describes itself.
///
/// A record is a plain struct followed by its table:
///
///     struct KneeType { float gain; UINT64 time; UINT32 stepsCount; UINT32 stepsID; float* steps; };
///     TUNING_RECORD(KneeType)
///         MEMBER(gain)
///         MEMBER(time)
///         VARIABLE(steps)
///     TUNING_RECORD_END
///
/// The tables (recordmember.h) are constants, walked at run time (recordwalk.h) by everything that handles records:
/// loading, unloading, text access, compiling and dumping of text tunings, recordings of what crosses the interface,
/// hostile values. A static assertion checks that the members of a table cover its struct, in the struct's order. Record
/// and table must stand in the same namespace; a nested record comes before its user.
#pragma once

#include <cstddef>
#include <iterator>
#include <type_traits>

#include "schema/namehash.h"
#include "schema/recordmember.h"

namespace tuning
{

template <typename T>
concept EnumType = std::is_enum_v<T>;

template <typename T>
constexpr ValueType ValueTypeOf()
{
    if constexpr (std::is_same_v<T, INT8> || std::is_same_v<T, CHAR>) { return ValueType::Int8; }
    else if constexpr (std::is_same_v<T, UINT8>) { return ValueType::UInt8; }
    else if constexpr (std::is_same_v<T, INT16>) { return ValueType::Int16; }
    else if constexpr (std::is_same_v<T, UINT16>) { return ValueType::UInt16; }
    else if constexpr (std::is_same_v<T, INT32>) { return ValueType::Int32; }
    else if constexpr (std::is_same_v<T, UINT32>) { return ValueType::UInt32; }
    else if constexpr (std::is_same_v<T, INT64>) { return ValueType::Int64; }
    else if constexpr (std::is_same_v<T, UINT64>) { return ValueType::UInt64; }
    else if constexpr (std::is_same_v<T, FLOAT>) { return ValueType::Float; }
    else if constexpr (std::is_same_v<T, DOUBLE>) { return ValueType::Double; }
    else if constexpr (std::is_same_v<T, CHAR*>) { return ValueType::Text; }
    else if constexpr (std::is_enum_v<T>)
    {
        static_assert(sizeof(T) == sizeof(INT32), "stored enumerations have 32 bits");
        return ValueType::Enum;
    }
    else
    {
        static_assert(std::is_class_v<T>, "not a type of tuning data");
        return ValueType::Record;
    }
}

template <typename T>
constexpr RecordMember DescribeValue(const CHAR* pName, Form form, size_t count, size_t offset)
{
    RecordMember member{};
    member.pName     = pName;
    member.nameHash  = namehash::OfName(pName);
    member.type      = ValueTypeOf<T>();
    member.form      = form;
    member.count     = static_cast<UINT32>(count);
    member.offset    = static_cast<UINT32>(offset);
    member.valueSize = static_cast<UINT32>(sizeof(T));
    member.alignment = static_cast<UINT32>(alignof(T));
    if constexpr (ValueTypeOf<T>() == ValueType::Record)
    {
        member.pRecord = TuningRecordOf(static_cast<const T*>(nullptr));
    }
    if constexpr (ValueTypeOf<T>() == ValueType::Enum)
    {
        member.pEnum = TuningEnumOf(T{});
    }
    return member;
}

/// MEMBER: a single value, a fixed array or a nested record, by the type of the field.
template <typename Field>
constexpr RecordMember DescribeMember(const CHAR* pName, size_t offset)
{
    static_assert(std::rank_v<Field> <= 1, "arrays of tuning data have one dimension");
    using Value = std::remove_extent_t<Field>;
    return DescribeValue<Value>(pName, std::is_array_v<Field> ? Form::Fixed : Form::Single,
                                std::is_array_v<Field> ? std::extent_v<Field> : 1, offset);
}

/// BOOLEAN: a BOOL or an array of BOOL, which the type alone does not tell from INT32.
template <typename Field>
constexpr RecordMember DescribeBoolean(const CHAR* pName, size_t offset)
{
    static_assert(std::is_same_v<std::remove_extent_t<Field>, BOOL>);
    RecordMember member = DescribeMember<Field>(pName, offset);
    member.type         = ValueType::Boolean;
    return member;
}

/// NUMBER: an enumeration without names, or an array of one.
template <typename Field>
constexpr RecordMember DescribeNumber(const CHAR* pName, size_t offset)
{
    using Value = std::remove_extent_t<Field>;
    static_assert(std::is_enum_v<Value> && sizeof(Value) == sizeof(INT32));
    return DescribeValue<INT32>(pName, std::is_array_v<Field> ? Form::Fixed : Form::Single,
                                std::is_array_v<Field> ? std::extent_v<Field> : 1, offset);
}

/// ADDRESS: not stored; what it points to is no part of the record. Type and form stay: recordings check them.
template <typename Field>
constexpr RecordMember DescribeAddress(const CHAR* pName, size_t offset)
{
    static_assert(std::is_pointer_v<std::remove_extent_t<Field>> || std::is_union_v<Field> || std::is_class_v<Field>);
    RecordMember member = DescribeValue<UINT8>(pName, Form::EntryID, 1, offset);
    member.valueSize    = static_cast<UINT32>(sizeof(Field));
    member.alignment    = static_cast<UINT32>(alignof(Field));
    return member;
}

/// VARIABLE: <name>Count, <name>ID and a pointer to the values.
template <typename Pointer>
constexpr RecordMember DescribeVariable(const CHAR* pName, size_t offset, size_t countOffset, size_t idOffset)
{
    static_assert(std::is_pointer_v<Pointer>);
    RecordMember member =
        DescribeValue<std::remove_pointer_t<Pointer>>(pName, Form::Variable, 1, offset);
    member.countOffset = static_cast<UINT32>(countOffset);
    member.idOffset    = static_cast<UINT32>(idOffset);
    member.alignment   = static_cast<UINT32>(alignof(VOID*));
    return member;
}

/// OPTIONAL: <name>Count (0 or 1), <name>ID and the value itself.
template <typename Value>
constexpr RecordMember DescribeOptional(const CHAR* pName, size_t offset, size_t countOffset, size_t idOffset)
{
    RecordMember member = DescribeValue<Value>(pName, Form::Optional, 1, offset);
    member.countOffset  = static_cast<UINT32>(countOffset);
    member.idOffset     = static_cast<UINT32>(idOffset);
    return member;
}

constexpr RecordMember AsBoolean(RecordMember member)
{
    member.type = ValueType::Boolean;
    return member;
}

/// @return the table of a record
template <typename T>
constexpr const RecordDescription& DescriptionOf()
{
    return *TuningRecordOf(static_cast<const T*>(nullptr));
}

} // namespace tuning

#define TUNING_RECORD(RecordName)                                                                                      \
    constexpr const tuning::RecordDescription* TuningRecordOf(const RecordName*);                                      \
    struct RecordName##Table                                                                                           \
    {                                                                                                                  \
        using Record = RecordName;                                                                                     \
        friend constexpr const tuning::RecordDescription* TuningRecordOf(const RecordName*)                            \
        {                                                                                                              \
            return &Description;                                                                                       \
        }                                                                                                              \
        static constexpr const CHAR*          pName     = #RecordName;                                                 \
        static constexpr tuning::RecordMember Members[] = {

#define MEMBER(field) tuning::DescribeMember<decltype(Record::field)>(#field, offsetof(Record, field)),

#define NUMBER(field) tuning::DescribeNumber<decltype(Record::field)>(#field, offsetof(Record, field)),

#define ADDRESS(field) tuning::DescribeAddress<decltype(Record::field)>(#field, offsetof(Record, field)),

#define BOOLEAN(field) tuning::DescribeBoolean<decltype(Record::field)>(#field, offsetof(Record, field)),

#define VARIABLE(field)                                                                                                \
    tuning::DescribeVariable<decltype(Record::field)>(#field, offsetof(Record, field), offsetof(Record, field##Count), \
                                                      offsetof(Record, field##ID)),

#define OPTIONAL(field)                                                                                                \
    tuning::DescribeOptional<decltype(Record::field)>(#field, offsetof(Record, field), offsetof(Record, field##Count), \
                                                      offsetof(Record, field##ID)),

#define VARIABLE_BOOLEAN(field)                                                                                        \
    tuning::AsBoolean(tuning::DescribeVariable<decltype(Record::field)>(                                               \
        #field, offsetof(Record, field), offsetof(Record, field##Count), offsetof(Record, field##ID))),

/// The first three members of every module record; SymbolTableID is the store's own.
#define MODULE_HEADER                                                                                                  \
    tuning::DescribeValue<UINT32>("SymbolTableID", tuning::Form::EntryID, 1, offsetof(Record, SymbolTableID)),         \
        MEMBER(module_version) MEMBER(parameter_version)

#define TUNING_RECORD_END                                                                                              \
    }                                                                                                                  \
    ;                                                                                                                  \
    static constexpr tuning::RecordDescription Description = {                                                         \
        pName,                                                                                                         \
        static_cast<UINT32>(sizeof(Record)),                                                                           \
        static_cast<UINT32>(alignof(Record)),                                                                          \
        Members,                                                                                                       \
        static_cast<UINT32>(std::size(Members)),                                                                       \
        tuning::MembersOwnMemory(Members, std::size(Members))};                                                        \
    static_assert(std::is_standard_layout_v<Record> && std::is_trivially_copyable_v<Record>);                          \
    static_assert(tuning::MembersCoverStruct(Members, std::size(Members), sizeof(Record), alignof(Record)),            \
                  "the table must list every member of the record, in the record's order");                            \
    }                                                                                                                  \
    ;

#define TUNING_ENUM(EnumName)                                                                                          \
    constexpr const tuning::EnumDescription* TuningEnumOf(EnumName);                                                   \
    struct EnumName##Table                                                                                             \
    {                                                                                                                  \
        friend constexpr const tuning::EnumDescription* TuningEnumOf(EnumName)                                         \
        {                                                                                                              \
            return &Description;                                                                                       \
        }                                                                                                              \
        using Enumeration                             = EnumName;                                                      \
        static constexpr const CHAR*        pName     = #EnumName;                                                     \
        static constexpr tuning::Enumerator Members[] = {

#define ENUMERATOR(name) {#name, static_cast<INT32>(Enumeration::name)},

#define TUNING_ENUM_END                                                                                                \
    }                                                                                                                  \
    ;                                                                                                                  \
    static constexpr tuning::EnumDescription Description = {pName, Members, static_cast<UINT32>(std::size(Members))};  \
    }                                                                                                                  \
    ;

/// The tool's revision of a module's schema.
struct module_versionStruct
{
    UINT32 SymbolTableID;
    INT32  major_revision;
    INT32  minor_revision;
    INT32  incr_revision;
};
TUNING_RECORD(module_versionStruct)
    tuning::DescribeValue<UINT32>("SymbolTableID", tuning::Form::EntryID, 1, offsetof(Record, SymbolTableID)),
    MEMBER(major_revision)
    MEMBER(minor_revision)
    MEMBER(incr_revision)
TUNING_RECORD_END

/// The tuner's revision of a module's values.
struct parameter_versionStruct
{
    UINT32 SymbolTableID;
    CHAR*  revision;
};
TUNING_RECORD(parameter_versionStruct)
    tuning::DescribeValue<UINT32>("SymbolTableID", tuning::Form::EntryID, 1, offsetof(Record, SymbolTableID)),
    MEMBER(revision)
TUNING_RECORD_END
