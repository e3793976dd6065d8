/// @file
/// Records as bytes: every field that crosses the table, in the order of its table, with explicit width, least
/// significant byte first, without padding and without addresses.
///
/// A record is written by its table, which stands beside it. Reading (fieldreader.h) and the naming of differences go
/// by the same tables.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "schema/recordwalk.h"

namespace recording
{

/// Stands for the length of a text that is null.
constexpr UINT32 NoText = 0xFFFFFFFF;

/// Where a field lies in the bytes, and what it is called.
struct Label
{
    std::string                    path;  ///< such as "output.exposures[safe]"
    size_t                         offset;
    size_t                         size;
    tuning::ValueType              type;
    const tuning::EnumDescription* pEnum;    ///< null without names
    bool                           isShape;  ///< what follows has other places if this differs
};

template <typename T> constexpr bool IsScalar = std::is_arithmetic_v<T> || std::is_enum_v<T>;

class FieldWriter
{
public:
    static constexpr bool IsReading = false;

    /// @param rBytes  appended to
    /// @param pLabels receives what was written where; may be null, which is much faster
    explicit FieldWriter(std::vector<BYTE>& rBytes, std::vector<Label>* pLabels = nullptr);

    template <typename T> VOID Value(const CHAR* pName, T value)
    {
        static_assert(IsScalar<T>);
        const Path path(*this, pName);
        Scalars(&value, 1, {sizeof(value), TypeOf<T>()});
    }

    template <typename T> VOID Record(const CHAR* pName, const T& rRecord)
    {
        Record(pName, tuning::DescriptionOf<T>(), &rRecord);
    }

    VOID Record(const CHAR* pName, const tuning::RecordDescription& rDescription, const VOID* pRecord);

    /// What a reference of the table refers to.
    template <typename T> VOID Argument(const CHAR* pName, const T* pRecord)
    {
        Record(pName, *pRecord);
    }

    /// A record behind a pointer that may be null.
    template <typename T> VOID Reference(const CHAR* pName, const T* pRecord)
    {
        if (Presence(pName, pRecord))
        {
            Record(pName, *pRecord);
        }
    }

    /// Values or records in a row behind a pointer that may be null. The count stands elsewhere.
    template <typename T> VOID Array(const CHAR* pName, const T* pValues, UINT64 count)
    {
        if (!Presence(pName, pValues))
        {
            return;
        }
        const Path path(*this, pName);
        if constexpr (IsScalar<T>)
        {
            Scalars(pValues, count, {sizeof(T), TypeOf<T>(), true});
        }
        else
        {
            for (UINT64 index = 0; index < count; ++index)
            {
                const Path item(*this, index, nullptr);
                tuning::WalkRecord(tuning::DescriptionOf<T>(), reinterpret_cast<const BYTE*>(pValues + index), *this);
            }
        }
    }

    /// @return whether there is something behind the pointer
    bool Presence(const CHAR* pName, const VOID* pTarget);
    VOID Text(const CHAR* pName, const CHAR* pText);

    /// Leaves texts out from here on: where their life is not the caller's to know.
    VOID LeaveTextsOut()
    {
        m_hasTexts = false;
    }

    /// A part of the name of what is written, for its life.
    class Path
    {
    public:
        Path(FieldWriter& rWriter, const CHAR* pName);
        Path(FieldWriter& rWriter, UINT64 index, const tuning::EnumDescription* pNames);
        ~Path();

    private:
        FieldWriter& m_rWriter;
        size_t       m_length;
    };

    // Visitor of a record; see schema/recordwalk.h.

    Path                             Enter(const tuning::RecordMember& rMember);
    Path                             EnterItem(const tuning::RecordMember& rMember, UINT32 index);
    tuning::MemberValues<const BYTE> CountedValues(const tuning::RecordMember& rMember, const BYTE* pRecord);
    VOID Numbers(const tuning::RecordMember& rMember, const tuning::MemberValues<const BYTE>& rValues);
    VOID Text(const tuning::RecordMember& rMember, const BYTE* pPlace);

private:
    template <typename T> static constexpr tuning::ValueType TypeOf()
    {
        if constexpr (std::is_enum_v<T>)
        {
            return tuning::ValueType::Int32;
        }
        else
        {
            return tuning::ValueTypeOf<T>();
        }
    }

    /// What a value is, and its neighbours.
    struct Scalar
    {
        size_t                         size;
        tuning::ValueType              type;
        bool                           isArray    = false;
        const tuning::EnumDescription* pEnum      = nullptr;
        const tuning::EnumDescription* pIndexEnum = nullptr;
    };

    VOID Scalars(const VOID* pValues, UINT64 count, const Scalar& rScalar);
    VOID Put(const VOID* pBytes, size_t size);
    VOID Shape(UINT32 value, size_t size);
    VOID Note(size_t size, tuning::ValueType type, bool isShape);

    std::vector<BYTE>&  m_rBytes;
    std::vector<Label>* m_pLabels;
    std::string         m_path;
    bool                m_hasTexts;
};

/// A field whose recorded value is not the present one.
struct Difference
{
    std::string field;
    std::string recorded;
    std::string now;
};

/// @param rLabels of the present bytes
/// @return the differing fields up to the first after which the places differ
std::vector<Difference> Compare(std::span<const BYTE> recorded, std::span<const BYTE> now,
                                const std::vector<Label>& rLabels);

}  // namespace recording
