/// @file
/// Records of any type with random values, the same ones in every run.
#pragma once

#include <bit>
#include <cmath>
#include <cstring>
#include <random>

#include "schema/recordwalk.h"
#include "tools/tuningfile/tuning.h"

class RandomRecords : public tuning::UntrackedVisitor
{
public:
    explicit RandomRecords(UINT32 seed) : m_random(seed), m_pArena(std::make_shared<tuningfile::RecordArena>())
    {
    }

    /// What keeps the records alive.
    std::shared_ptr<const VOID> Memory() const
    {
        return m_pArena;
    }

    UINT32 Below(UINT32 limit)
    {
        return static_cast<UINT32>(m_random() % limit);
    }

    VOID* Make(const tuning::RecordDescription& rDescription)
    {
        VOID* pRecord = m_pArena->Allocate(rDescription.size);
        tuning::WalkRecord(rDescription, static_cast<BYTE*>(pRecord), *this);
        return pRecord;
    }

    /// A copy in which about one member in four is another one.
    VOID* MakeVariant(const tuning::RecordDescription& rDescription, const VOID* pOriginal)
    {
        VOID* pRecord = m_pArena->Allocate(rDescription.size);
        std::memcpy(pRecord, pOriginal, rDescription.size);
        for (const tuning::RecordMember& rMember : rDescription.Members())
        {
            if (Below(4) == 0 && rMember.IsStored())
            {
                tuning::WalkMember(rMember, static_cast<BYTE*>(pRecord), *this);
            }
        }
        return pRecord;
    }

    // Visitor of a record; see schema/recordwalk.h.

    tuning::MemberValues<BYTE> CountedValues(const tuning::RecordMember& rMember, BYTE* pRecord)
    {
        const bool   isArray = rMember.form == tuning::Form::Variable;
        const UINT32 count   = Below(isArray ? 3 : 2);
        std::memset(pRecord + rMember.Begin(), 0, rMember.End() - rMember.Begin());
        VOID* pArray = (isArray && count > 0) ? m_pArena->Allocate(size_t{count} * rMember.valueSize) : nullptr;
        return tuning::SetCount(rMember, pRecord, count, pArray);
    }

    VOID Numbers(const tuning::RecordMember& rMember, const tuning::MemberValues<BYTE>& rValues)
    {
        for (UINT32 index = 0; index < rValues.count; ++index)
        {
            FillNumber(rMember, rValues.At(rMember, index));
        }
    }

    VOID Text(const tuning::RecordMember&, BYTE* pPlace)
    {
        FillText(pPlace);
    }

private:
    VOID FillNumber(const tuning::RecordMember& rMember, BYTE* pValue)
    {
        switch (rMember.type)
        {
        case tuning::ValueType::Float:
            tuning::Store(pValue, RandomFloat<FLOAT, UINT32>());
            break;
        case tuning::ValueType::Double:
            tuning::Store(pValue, RandomFloat<DOUBLE, UINT64>());
            break;
        case tuning::ValueType::Boolean:
            tuning::Store(pValue, static_cast<BOOL>((Below(10) == 0) ? m_random() : Below(2)));
            break;
        case tuning::ValueType::Enum:
            tuning::Store(pValue, (Below(10) == 0) ? static_cast<INT32>(m_random())
                                                   : rMember.pEnum->pEnumerators[Below(rMember.pEnum->count)].value);
            break;
        default:
        {
            const UINT64 value = m_random();
            std::memcpy(pValue, &value, rMember.valueSize);
            break;
        }
        }
    }

    /// Any bits that are a number, infinities and negative zero included.
    template <typename T, typename Bits> T RandomFloat()
    {
        switch (Below(8))
        {
        case 0:
            return -static_cast<T>(0);
        case 1:
            return static_cast<T>(Below(1000)) / 10;
        case 2:
            return std::numeric_limits<T>::infinity();
        default:
            break;
        }
        const T value = std::bit_cast<T>(static_cast<Bits>(m_random()));
        return std::isnan(value) ? T{} : value;
    }

    VOID FillText(BYTE* pValue)
    {
        static const CHAR* const Texts[] = {nullptr,
                                            "",
                                            "plain",
                                            "true",
                                            "~",
                                            "12",
                                            " spaces ",
                                            "a: {b, c}",
                                            "\"quoted\\\"",
                                            "two\nlines\r\n\ttab",
                                            "h\xC3\xA9",
                                            "\xE2\x82\xAC",
                                            "\xFF\xFEx",
                                            "\x01\x1F\x7F",
                                            "# no comment"};
        const CHAR*              pSource = Texts[Below(std::size(Texts))];
        CHAR*                    pText   = nullptr;
        if (pSource != nullptr)
        {
            pText = static_cast<CHAR*>(m_pArena->Allocate(std::strlen(pSource) + 1));
            std::strcpy(pText, pSource);
        }
        tuning::Store(pValue, pText);
    }

    std::mt19937_64                          m_random;
    std::shared_ptr<tuningfile::RecordArena> m_pArena;
};
