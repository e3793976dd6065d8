/// @file
/// Records from bytes that FieldWriter has written. The bytes can be anything: a count never makes for more memory than
/// the bytes behind it could fill, and what does not fit is refused.
#pragma once

#include <memory>
#include <set>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "tools/recording/fieldwriter.h"

namespace recording
{

/// What a chunk holds, or is to hold, cannot be.
class MalformedError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// Zeroed memory for records, until it is destroyed. A block is as long as was asked for, so that reading beyond its
/// end is found out.
class Arena
{
public:
    VOID* Make(size_t size);

    /// Takes over the blocks of another.
    VOID Join(Arena&& rOther);

private:
    std::vector<std::unique_ptr<BYTE[]>> m_blocks;
};

/// Texts at addresses of their own; alike ones share theirs.
class TextPool
{
public:
    CHAR* Keep(std::string text)
    {
        return const_cast<CHAR*>(m_texts.insert(std::move(text)).first->c_str());
    }

private:
    std::set<std::string> m_texts;
};

class FieldReader : public tuning::UntrackedVisitor
{
public:
    static constexpr bool IsReading = true;

    /// All are used, not owned. @param rArena receives what stands behind pointers
    FieldReader(std::span<const BYTE> bytes, Arena& rArena, TextPool& rTexts);

    // The counterparts of FieldWriter's functions, with the same bytes. @throws MalformedError

    template <typename T> VOID Value(const CHAR* pName, T& rValue)
    {
        static_assert(IsScalar<T>);
        Take(pName, &rValue, sizeof(rValue));
    }

    template <typename T> VOID Record(const CHAR*, T& rRecord)
    {
        Members(tuning::DescriptionOf<T>(), &rRecord);
    }

    template <typename T> VOID Argument(const CHAR* pName, T*& rpRecord)
    {
        rpRecord = static_cast<T*>(m_pArena->Make(sizeof(T)));
        Record(pName, *rpRecord);
    }

    template <typename T> VOID Reference(const CHAR* pName, T*& rpRecord)
    {
        if (PresenceInto(pName, rpRecord))
        {
            Record(pName, *rpRecord);
        }
    }

    template <typename T> VOID Array(const CHAR* pName, T*& rpValues, UINT64 count)
    {
        rpValues = nullptr;
        if (!Presence(pName))
        {
            return;
        }
        if constexpr (IsScalar<T>)
        {
            CheckRoom(pName, count, sizeof(T));
            rpValues = static_cast<T*>(m_pArena->Make(count * sizeof(T)));
            Take(pName, rpValues, count * sizeof(T));
        }
        else
        {
            CheckRoom(pName, count, LeastSize(tuning::DescriptionOf<T>()));
            rpValues = static_cast<T*>(m_pArena->Make(count * sizeof(T)));
            for (UINT64 index = 0; index < count; ++index)
            {
                Members(tuning::DescriptionOf<T>(), rpValues + index);
            }
        }
    }

    /// @param rpTarget receives zeroed memory for a record that is there, null otherwise
    template <typename T> bool PresenceInto(const CHAR* pName, T*& rpTarget)
    {
        rpTarget = Presence(pName) ? static_cast<T*>(m_pArena->Make(sizeof(T))) : nullptr;
        return rpTarget != nullptr;
    }

    bool Presence(const CHAR* pName);
    VOID Text(const CHAR* pName, CHAR*& rpText);
    VOID Members(const tuning::RecordDescription& rRecord, VOID* pRecord);

    // Visitor of a record; see schema/recordwalk.h.

    tuning::MemberValues<BYTE> CountedValues(const tuning::RecordMember& rMember, BYTE* pRecord);
    VOID                       Numbers(const tuning::RecordMember& rMember, const tuning::MemberValues<BYTE>& rValues);
    VOID                       Text(const tuning::RecordMember& rMember, BYTE* pPlace);

    size_t Remaining() const
    {
        return m_bytes.size();
    }

    Arena& Memory()
    {
        return *m_pArena;
    }

protected:
    Arena* m_pArena;

private:
    VOID          Take(const CHAR* pName, VOID* pTo, size_t size);
    VOID          CheckRoom(const CHAR* pName, UINT64 count, UINT64 least) const;
    static UINT64 LeastSize(const tuning::RecordDescription& rRecord);
    static UINT64 LeastSize(const tuning::RecordMember& rMember);

    std::span<const BYTE> m_bytes;  ///< not read yet
    TextPool&             m_rTexts;
};

}  // namespace recording
