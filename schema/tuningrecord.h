/// @file
/// How a tuning record describes itself.
///
/// A record is a plain struct followed by its table:
///
///     struct KneeType { float gain; UINT64 time; UINT32 stepsCount; UINT32 stepsID; float* steps; };
///     TUNING_RECORD(KneeType)
///         MEMBER(gain, .meaning = "Gain at the knee.", .unit = Unit::Gain, .range = AtLeast(1))
///         MEMBER(time, .meaning = "Exposure time at the knee.", .unit = Unit::Nanoseconds, .range = Above(0))
///         VARIABLE(steps, .meaning = "Read by no stage.", .range = Any, .acts = Acts::Never)
///     TUNING_RECORD_END
///
/// Behind the name stand the words of a tunable (memberwords.h); records that are no tuning have none. A program that
/// asks for no words (TuningWordsOf) holds none: members and words are made of the rows when a file is compiled.
///
/// The tables (recordmember.h) are constants, walked at run time (recordwalk.h) by everything that handles records:
/// loading, unloading, text access, compiling and dumping of text tunings, recordings of what crosses the interface,
/// hostile values. A static assertion checks that the members of a table cover its struct, in the struct's order. Record
/// and table must stand in the same namespace; a nested record comes before its user.
#pragma once

#include <cstddef>
#include <iterator>
#include <type_traits>

#include "schema/memberwords.h"
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

/// VARIABLE_BOOLEAN: VARIABLE, for values of BOOL.
template <typename Pointer>
constexpr RecordMember DescribeVariableBoolean(const CHAR* pName, size_t offset, size_t countOffset, size_t idOffset)
{
    RecordMember member = DescribeVariable<Pointer>(pName, offset, countOffset, idOffset);
    member.type         = ValueType::Boolean;
    return member;
}

constexpr RecordMember DescribeStoreNumber(size_t offset)
{
    return DescribeValue<UINT32>("SymbolTableID", Form::EntryID, 1, offset);
}

/// A row as it is written.
struct Row
{
    RecordMember member;
    MemberWords  words = {};
};

/// @param Field type of the field; of a list: of the pointer
template <typename Field>
constexpr Row MakeRow(const RecordMember& rMember, const Words& rWords)
{
    using Value = std::remove_cv_t<std::remove_pointer_t<std::remove_extent_t<Field>>>;
    Row row{rMember, {rWords, nullptr, nullptr}};
    if constexpr (requires { TuningWordsOf(static_cast<const Value*>(nullptr)); })
    {
        row.words.pRecord = TuningWordsOf(static_cast<const Value*>(nullptr));
    }
    else if constexpr (requires { TuningEnumWordsOf(Value{}); })
    {
        row.words.pEnum = (rMember.type == ValueType::Enum) ? TuningEnumWordsOf(Value{}) : nullptr;
    }
    return row;
}

template <size_t Count>
constexpr std::array<RecordMember, Count> MembersOf(const Row (&rRows)[Count])
{
    std::array<RecordMember, Count> members{};
    UINT32                          storedOffset = StoredCountSize;
    for (size_t index = 0; index < Count; ++index)
    {
        members[index]              = rRows[index].member;
        members[index].storedOffset = storedOffset;
        storedOffset += StoredBytes(members[index]);
    }
    return members;
}

template <size_t Count>
constexpr std::array<MemberWords, Count> WordsOf(const Row (&rRows)[Count])
{
    std::array<MemberWords, Count> words{};
    for (size_t index = 0; index < Count; ++index)
    {
        words[index] = rRows[index].words;
    }
    return words;
}

/// A row of an enumeration's table as it is written.
struct EnumeratorRow
{
    Enumerator      enumerator;
    EnumeratorWords words;
};

template <size_t Count>
constexpr std::array<Enumerator, Count> EnumeratorsOf(const EnumeratorRow (&rRows)[Count])
{
    std::array<Enumerator, Count> enumerators{};
    for (size_t index = 0; index < Count; ++index)
    {
        enumerators[index] = rRows[index].enumerator;
    }
    return enumerators;
}

template <size_t Count>
constexpr std::array<EnumeratorWords, Count> WordsOf(const EnumeratorRow (&rRows)[Count])
{
    std::array<EnumeratorWords, Count> words{};
    for (size_t index = 0; index < Count; ++index)
    {
        words[index] = rRows[index].words;
    }
    return words;
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
    constexpr const tuning::RecordWords*       TuningWordsOf(const RecordName*);                                       \
    struct RecordName##Table : tuning::RowTerms                                                                        \
    {                                                                                                                  \
        using Record = RecordName;                                                                                     \
        friend constexpr const tuning::RecordDescription* TuningRecordOf(const RecordName*)                            \
        {                                                                                                              \
            return &Description;                                                                                       \
        }                                                                                                              \
        friend constexpr const tuning::RecordWords* TuningWordsOf(const RecordName*)                                   \
        {                                                                                                              \
            return &RecordsWords;                                                                                      \
        }                                                                                                              \
        static constexpr const CHAR* pName  = #RecordName;                                                             \
        static constexpr tuning::Row Rows[] = {

/// A row by the function that describes its field. @param ... the words
#define TUNING_ROW(Describe, field, ...)                                                                               \
    tuning::MakeRow<decltype(Record::field)>(                                                                          \
        tuning::Describe<decltype(Record::field)>(#field, offsetof(Record, field)), tuning::Words{__VA_ARGS__}),

#define MEMBER(field, ...) TUNING_ROW(DescribeMember, field, __VA_ARGS__)

#define NUMBER(field, ...) TUNING_ROW(DescribeNumber, field, __VA_ARGS__)

#define ADDRESS(field, ...) TUNING_ROW(DescribeAddress, field, __VA_ARGS__)

#define BOOLEAN(field, ...) TUNING_ROW(DescribeBoolean, field, __VA_ARGS__)

/// The same for a field with a count.
#define TUNING_COUNTED_ROW(Describe, field, ...)                                                                       \
    tuning::MakeRow<decltype(Record::field)>(                                                                          \
        tuning::Describe<decltype(Record::field)>(#field, offsetof(Record, field), offsetof(Record, field##Count),     \
                                                  offsetof(Record, field##ID)),                                        \
        tuning::Words{__VA_ARGS__}),

#define VARIABLE(field, ...) TUNING_COUNTED_ROW(DescribeVariable, field, __VA_ARGS__)

#define OPTIONAL(field, ...) TUNING_COUNTED_ROW(DescribeOptional, field, __VA_ARGS__)

#define VARIABLE_BOOLEAN(field, ...) TUNING_COUNTED_ROW(DescribeVariableBoolean, field, __VA_ARGS__)

/// The number by which the store knows a record; no part of a file. Its words are those of the record as a whole.
#define STORE_NUMBER(...)                                                                                              \
    tuning::Row{tuning::DescribeStoreNumber(offsetof(Record, SymbolTableID)), {tuning::Words{__VA_ARGS__}}},

/// The first three members of every module record. @param sentence what the module is for
#define MODULE_HEADER(sentence)                                                                                        \
    STORE_NUMBER(.meaning = sentence)                                                                                  \
    MEMBER(module_version, .meaning = "Version of the schema by which the module was written.", .acts = Acts::Never)   \
    MEMBER(parameter_version, .meaning = "Version of the values, for the tuner.", .acts = Acts::Never)

#define TUNING_RECORD_END                                                                                              \
    }                                                                                                                  \
    ;                                                                                                                  \
    static constexpr auto                      Members     = tuning::MembersOf(Rows);                                  \
    static constexpr tuning::RecordDescription Description = {                                                         \
        pName,                                                                                                         \
        static_cast<UINT32>(sizeof(Record)),                                                                           \
        static_cast<UINT32>(alignof(Record)),                                                                          \
        Members.data(),                                                                                                \
        static_cast<UINT32>(Members.size()),                                                                           \
        tuning::MembersOwnMemory(Members.data(), Members.size()),                                                      \
        Members.back().storedOffset + tuning::StoredBytes(Members.back())};                                            \
    static_assert(std::is_standard_layout_v<Record> && std::is_trivially_copyable_v<Record>);                          \
    static_assert(tuning::MembersCoverStruct(Members.data(), Members.size(), sizeof(Record), alignof(Record)),         \
                  "the table must list every member of the record, in the record's order");                            \
    static constexpr auto                MembersWords = tuning::WordsOf(Rows);                                         \
    static constexpr tuning::RecordWords RecordsWords = {&Description, MembersWords.data()};                           \
    }                                                                                                                  \
    ;

#define TUNING_ENUM(EnumName)                                                                                          \
    constexpr const tuning::EnumDescription* TuningEnumOf(EnumName);                                                   \
    constexpr const tuning::EnumWords*       TuningEnumWordsOf(EnumName);                                              \
    struct EnumName##Table : tuning::RowTerms                                                                          \
    {                                                                                                                  \
        friend constexpr const tuning::EnumDescription* TuningEnumOf(EnumName)                                         \
        {                                                                                                              \
            return &Description;                                                                                       \
        }                                                                                                              \
        friend constexpr const tuning::EnumWords* TuningEnumWordsOf(EnumName)                                          \
        {                                                                                                              \
            return &EnumsWords;                                                                                        \
        }                                                                                                              \
        using Enumeration                             = EnumName;                                                      \
        static constexpr const CHAR*           pName  = #EnumName;                                                     \
        static constexpr tuning::EnumeratorRow Rows[] = {

/// @param ... the meaning and, of a trigger, the unit of what it measures
#define ENUMERATOR(name, ...) {{#name, static_cast<INT32>(Enumeration::name)}, {__VA_ARGS__}},

#define TUNING_ENUM_END                                                                                                \
    }                                                                                                                  \
    ;                                                                                                                  \
    static constexpr auto                    Members     = tuning::EnumeratorsOf(Rows);                                \
    static constexpr tuning::EnumDescription Description = {pName, Members.data(),                                     \
                                                            static_cast<UINT32>(Members.size())};                      \
    static constexpr auto              MembersWords = tuning::WordsOf(Rows);                                           \
    static constexpr tuning::EnumWords EnumsWords   = {&Description, MembersWords.data()};                             \
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
    STORE_NUMBER()
    MEMBER(major_revision,
        .meaning = "Major revision of the schema that the values were written for; a tuning that does not name it "
                   "gets that of the schema it is compiled with. Read by no stage, and not what a loader checks.",
        .range = Any, .acts = Acts::Never)
    MEMBER(minor_revision,
        .meaning = "Minor revision of the schema that the values were written for; a tuning that does not name it "
                   "gets that of the schema it is compiled with. Read by no stage, and not what a loader checks.",
        .range = Any, .acts = Acts::Never)
    MEMBER(incr_revision,
        .meaning = "Patch of the schema that the values were written for; a tuning that does not name it gets that of "
                   "the schema it is compiled with. Read by no stage, and not what a loader checks.",
        .range = Any, .acts = Acts::Never)
TUNING_RECORD_END

/// The tuner's revision of a module's values.
struct parameter_versionStruct
{
    UINT32 SymbolTableID;
    CHAR*  revision;
};
TUNING_RECORD(parameter_versionStruct)
    STORE_NUMBER()
    MEMBER(revision,
        .meaning = "The tuner's own name or number for this state of the values; read by no stage.",
        .acts = Acts::Never)
TUNING_RECORD_END
