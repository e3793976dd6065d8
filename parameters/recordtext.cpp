#include "parameters/recordtext.h"

#include <functional>
#include <optional>
#include <type_traits>

#include "parameters/boundedtext.h"
#include "parameters/parameterparserinfo.h"
#include "parameters/parameterutils.h"
#include "schema/recordwalk.h"

using tuning::Form;
using tuning::RecordDescription;
using tuning::RecordMember;
using tuning::TextAt;
using tuning::ValuesOf;
using tuning::ValueType;

namespace
{

using Values = tuning::MemberValues<const BYTE>;

constexpr UINT32 NoIndex       = 0xFFFFFFFF;
constexpr UINT32 MaxName       = 129;  ///< bytes of a component of a path, terminator included
constexpr UINT32 MaxNumberText = 512;  ///< the longest double takes 321

/// A record and its description.
struct RecordView
{
    const RecordDescription* pDescription;
    const BYTE*              pBytes;
};

/// What a path leads to: a member that is no record.
struct Leaf
{
    const RecordMember* pMember;
    Values              values;
    UINT32              index;
};

/// A path under way from record to record.
class PathWalk
{
public:
    PathWalk(const RecordDescription& rRecord, const VOID* pRecord, const CHAR* pPath)
        : m_record{&rRecord, static_cast<const BYTE*>(pRecord)}, m_pRest((pPath != nullptr) ? pPath : "")
    {
    }

    std::optional<Leaf> ToLeaf()
    {
        while (const RecordMember* pMember = TakeMember())
        {
            if (pMember->type != ValueType::Record)
            {
                return Leaf{pMember, ValuesOf(*pMember, m_record.pBytes), m_index};
            }
            if (!Enter(*pMember))
            {
                break;
            }
        }
        return std::nullopt;
    }

    std::optional<RecordView> ToRecord()
    {
        while (m_pRest[0] != '\0')
        {
            const RecordMember* pMember = TakeMember();
            if (pMember == nullptr || pMember->type != ValueType::Record || !Enter(*pMember))
            {
                return std::nullopt;
            }
        }
        return m_record;
    }

private:
    const RecordMember* TakeMember()
    {
        CHAR name[MaxName];
        m_index = NoIndex;
        m_pRest += ParameterUtils::GetVariable(m_pRest, name, m_index, sizeof(name));
        return tuning::FindMember(*m_record.pDescription, name);
    }

    bool Enter(const RecordMember& rMember)
    {
        const Values values = ValuesOf(rMember, m_record.pBytes);
        const UINT32 index  = rMember.IsArray() ? m_index : 0;
        if (index >= values.count)
        {
            return false;
        }
        m_record = {rMember.pRecord, values.At(rMember, index)};
        return true;
    }

    RecordView  m_record;
    const CHAR* m_pRest;
    UINT32      m_index = NoIndex;
};

DOUBLE LoadNumber(ValueType type, const BYTE* pPlace)
{
    return tuning::WithTypeOf(type, [pPlace](auto zero)
                              { return static_cast<DOUBLE>(tuning::Load<decltype(zero)>(pPlace)); });
}

UINT32 PrecisionOf(ValueType type)
{
    return (type == ValueType::Float || type == ValueType::Double) ? 10 : 0;
}

VOID WriteValue(ValueType type, const BYTE* pPlace, CHAR* pValue, UINT32 size)
{
    if (type == ValueType::Text)
    {
        (VOID) Tavo::OsUtils::StrLCpy(pValue, TextAt(pPlace), size);
        return;
    }
    bool fits = false;
    (VOID) ParameterUtils::DoubleToString(LoadNumber(type, pPlace), pValue, size, PrecisionOf(type), fits);
}

VOID WriteAll(const RecordMember& rMember, const Values& rValues, CHAR* pValue, UINT32 size)
{
    BoundedText text(pValue, size);
    for (UINT32 index = 0; index < rValues.count && !text.IsFull(); ++index)
    {
        const BYTE* pPlace = rValues.At(rMember, index);
        if (index > 0)
        {
            text.Append(",");
        }
        if (rMember.type == ValueType::Text)
        {
            text.Append(TextAt(pPlace));
        }
        else
        {
            CHAR number[MaxNumberText];
            WriteValue(rMember.type, pPlace, number, sizeof(number));
            text.Append(number);
        }
    }
}

/// Tools know a few types only; an integer of another width goes by the nearest of them.
const CHAR* TypeTextOf(ValueType type)
{
    switch (type)
    {
    case ValueType::Int8:
    case ValueType::Int16:
    case ValueType::Int32:
        return ParameterParserInfo::TypeInt32;
    case ValueType::UInt8:
    case ValueType::UInt16:
    case ValueType::UInt32:
        return ParameterParserInfo::TypeUInt32;
    case ValueType::Int64:
    case ValueType::UInt64:
        return ParameterParserInfo::TypeUInt64;
    case ValueType::Float:
    case ValueType::Double:
        return ParameterParserInfo::TypeFloat;
    case ValueType::Boolean:
        return ParameterParserInfo::TypeBoolean;
    case ValueType::Enum:
        return ParameterParserInfo::TypeEnum;
    case ValueType::Text:
        return ParameterParserInfo::TypeString;
    case ValueType::Record:
        break;
    }
    return ParameterParserInfo::TypeStructure;
}

ParameterParserInfo Describe(const RecordMember& rMember, const BYTE* pRecord)
{
    const Values values = ValuesOf(rMember, pRecord);
    const CHAR*  pType  = TypeTextOf(rMember.type);
    if (rMember.IsArray())
    {
        return {rMember.pName, pType, true, false, values.count};
    }
    if (rMember.type == ValueType::Record || values.count == 0)
    {
        return {rMember.pName, pType};
    }
    if (rMember.type == ValueType::Text)
    {
        return {rMember.pName, pType, TextAt(values.pFirst)};
    }
    return {rMember.pName, pType, LoadNumber(rMember.type, values.pFirst), PrecisionOf(rMember.type)};
}

/// A number that can be set.
struct Number
{
    const BYTE* pPlace;
    ValueType   type;
};

std::optional<Number> FindNumber(const RecordDescription& rRecord, const VOID* pRecord, const CHAR* pPath)
{
    const std::optional<Leaf> leaf = PathWalk(rRecord, pRecord, pPath).ToLeaf();
    if (!leaf || leaf->pMember->type == ValueType::Text)
    {
        return std::nullopt;
    }
    const RecordMember& rMember = *leaf->pMember;
    const UINT32        index   = rMember.IsArray() ? leaf->index : 0;
    if (index >= leaf->values.count)
    {
        return std::nullopt;
    }
    return Number{leaf->values.At(rMember, index), rMember.type};
}

}  // namespace

VOID RecordText::StoreUnlocked(VOID* pPlace, ValueType type, DOUBLE value)
{
    if (!tuning::IsNumber(type))
    {
        return;
    }
    // One store, so that a frame never sees a part of the number.
    tuning::WithTypeOf(type,
                       [pPlace, value](auto zero)
                       {
                           using Number = decltype(zero);
                           if constexpr (std::is_integral_v<Number>)
                           {
                               *static_cast<Number*>(pPlace) = ParameterUtils::ToInteger<Number>(value);
                           }
                           else
                           {
                               *static_cast<Number*>(pPlace) = static_cast<Number>(value);
                           }
                       });
}

bool RecordText::GetValue(const RecordDescription& rRecord, const VOID* pRecord, const CHAR* pPath, CHAR* pValue,
                          UINT32 size)
{
    const std::optional<Leaf> leaf = PathWalk(rRecord, pRecord, pPath).ToLeaf();
    if (!leaf)
    {
        return false;
    }
    const RecordMember& rMember = *leaf->pMember;
    const UINT32        index   = rMember.IsArray() ? leaf->index : 0;
    if (index < leaf->values.count)
    {
        WriteValue(rMember.type, leaf->values.At(rMember, index), pValue, size);
        return true;
    }
    if (rMember.IsArray())
    {
        WriteAll(rMember, leaf->values, pValue, size);
        return true;
    }
    return false;
}

bool RecordText::SetValue(const RecordDescription& rRecord, VOID* pRecord, const CHAR* pPath, const CHAR* pValue)
{
    const std::optional<Number> number = FindNumber(rRecord, pRecord, pPath);
    if (!number)
    {
        return false;
    }
    bool         valid = false;
    const DOUBLE value = ParameterUtils::StringToDouble(pValue, valid);
    if (valid)
    {
        // The walk only reads, but what it walks is the caller's to change.
        StoreUnlocked(const_cast<BYTE*>(number->pPlace), number->type, value);
    }
    return valid;
}

const VOID* RecordText::PlaceOf(const RecordDescription& rRecord, const VOID* pRecord, const CHAR* pPath)
{
    const std::optional<Number> number = FindNumber(rRecord, pRecord, pPath);
    return number ? number->pPlace : nullptr;
}

bool RecordText::ReachesInArray(const RecordDescription& rRecord, const VOID* pRecord, const VOID* pPlace)
{
    if (!rRecord.ownsMemory)
    {
        return false;
    }
    const BYTE* pBytes = static_cast<const BYTE*>(pRecord);
    for (const RecordMember& rMember : rRecord.Members())
    {
        const Values values = ValuesOf(rMember, pBytes);
        if (rMember.form == Form::Variable && std::less_equal<const VOID*>()(values.pFirst, pPlace) &&
            std::less<const VOID*>()(pPlace, values.At(rMember, values.count)))
        {
            return true;
        }
        for (UINT32 item = 0; rMember.type == ValueType::Record && item < values.count; ++item)
        {
            if (ReachesInArray(*rMember.pRecord, values.At(rMember, item), pPlace))
            {
                return true;
            }
        }
    }
    return false;
}

bool RecordText::GetInfo(const RecordDescription& rRecord, const VOID* pRecord, const CHAR* pPath,
                         PList<ParameterParserInfo>& rList)
{
    const std::optional<RecordView> record = PathWalk(rRecord, pRecord, pPath).ToRecord();
    if (!record)
    {
        return false;
    }
    for (const RecordMember& rMember : record->pDescription->Members())
    {
        if (rMember.IsStored())
        {
            rList.Add(Describe(rMember, record->pBytes));
        }
    }
    return true;
}
