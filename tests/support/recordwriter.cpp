#include "tests/support/recordwriter.h"

#include <cstring>

#include "parameters/parameterutils.h"

using tuning::Form;
using tuning::RecordDescription;
using tuning::RecordMember;
using tuning::ValueType;

namespace
{

constexpr UINT32 NoUpperBound = 65535;

template <typename T> T ValueAt(const BYTE* pPlace)
{
    T value;
    std::memcpy(&value, pPlace, sizeof(value));
    return value;
}

}  // namespace

std::vector<BYTE> RecordWriter::Encode(const RecordDescription& rRecord, const VOID* pRecord)
{
    ByteWriter writer;
    writer.Add<UINT32>(0);
    for (UINT32 index = 0; index < rRecord.memberCount; ++index)
    {
        EncodeMember(rRecord.pMembers[index], static_cast<const BYTE*>(pRecord), writer);
    }
    writer.Patch(0, static_cast<UINT32>(writer.Size() - sizeof(UINT32)));
    return writer.Get();
}

VOID RecordWriter::EncodeMember(const RecordMember& rMember, const BYTE* pRecord, ByteWriter& rWriter)
{
    const BYTE* const pPlace = pRecord + rMember.offset;
    switch (rMember.form)
    {
    case Form::EntryID:
        break;
    case Form::Fixed:
        if (rMember.count >= 2 && m_rBuilder.Version() >= BinaryFileFormat::MultiModeTableVersion)
        {
            rWriter.Add(rMember.count);
        }
        EncodeValues(rMember, pPlace, rMember.count, rWriter);
        break;
    case Form::Single:
        EncodeValues(rMember, pPlace, 1, rWriter);
        break;
    case Form::Variable:
    case Form::Optional:
    {
        const UINT32      count   = ValueAt<UINT32>(pRecord + rMember.countOffset);
        const BYTE* const pValues = (rMember.form == Form::Variable) ? ValueAt<const BYTE*>(pPlace) : pPlace;
        ByteWriter        block;
        EncodeValues(rMember, pValues, count, block);
        rWriter.Add(count).Add((count > 0) ? AddArray(block.Get()) : m_rBuilder.EmptyData());
        break;
    }
    }
}

UINT32 RecordWriter::AddArray(const std::vector<BYTE>& rBlock)
{
    const auto same = m_arrays.find(rBlock);
    if (m_sharesArrays && same != m_arrays.end())
    {
        return m_rBuilder.AddData({}, same->second);
    }
    return m_arrays[rBlock] = m_rBuilder.AddData(rBlock);
}

VOID RecordWriter::EncodeValues(const RecordMember& rMember, const BYTE* pValues, UINT32 count, ByteWriter& rWriter)
{
    for (UINT32 index = 0; index < count; ++index)
    {
        const BYTE* const pValue = pValues + static_cast<size_t>(index) * rMember.valueSize;
        if (rMember.type == ValueType::Record)
        {
            rWriter.Bytes(Encode(*rMember.pRecord, pValue));
        }
        else if (rMember.type == ValueType::Text)
        {
            const CHAR* const pText = ValueAt<const CHAR*>(pValue);
            const std::string text  = (pText != nullptr) ? pText : "";
            ByteWriter        block;
            block.Field(text, text.size() + 1);
            rWriter.Add(static_cast<UINT32>(block.Size())).Add(m_rBuilder.AddData(block.Get()));
        }
        else
        {
            rWriter.Bytes(std::vector<BYTE>(pValue, pValue + rMember.valueSize));
        }
    }
}

std::vector<DefinedMember> RecordWriter::Members(const RecordDescription& rRecord)
{
    std::vector<DefinedMember> members;
    for (UINT32 index = 0; index < rRecord.memberCount; ++index)
    {
        const RecordMember& rMember = rRecord.pMembers[index];
        if (!rMember.IsStored())
        {
            continue;
        }
        DefinedMember member{rMember.pName, ParameterUtils::NativeType(rMember.type), 1, 1, 0, 0};
        if (rMember.form == Form::Fixed)
        {
            member.minimum = rMember.count;
            member.maximum = rMember.count;
        }
        else if (rMember.HasCount())
        {
            member.minimum = 0;
            member.maximum = (rMember.form == Form::Optional) ? 1 : NoUpperBound;
        }
        if (rMember.pRecord != nullptr)
        {
            member.structureId = Define(*rMember.pRecord);
        }
        members.push_back(member);
    }
    return members;
}

UINT32 RecordWriter::Define(const RecordDescription& rRecord)
{
    const auto known = m_defined.find(&rRecord);
    if (known != m_defined.end())
    {
        return known->second;
    }
    const std::vector<DefinedMember> members = Members(rRecord);
    const UINT32                     id      = static_cast<UINT32>(m_defined.size()) + 1;
    m_defined[&rRecord]                      = id;
    m_rBuilder.DefineStructure(id, rRecord.pName, members);
    return id;
}

UINT32 RecordWriter::AddModule(const CHAR* pName, const VersionUnion& rVersion, UINT32 modeId,
                               const RecordDescription& rRecord, const VOID* pRecord)
{
    if (!m_definedModules[pName])
    {
        m_definedModules[pName] = true;
        m_rBuilder.DefineModule(pName, Define(rRecord));
    }
    return m_rBuilder.AddModule(pName, rVersion, modeId, Encode(rRecord, pRecord));
}
