#include "tests/support/recordwriter.h"

#include "parameters/parameterutils.h"
#include "tools/tuningfile/bytes.h"

using tuning::Form;
using tuning::RecordDescription;
using tuning::RecordMember;
using tuningfile::RecordBlockPool;

namespace
{

constexpr UINT32 NoUpperBound = 65535;

}  // namespace

std::vector<BYTE> RecordWriter::Encode(const RecordDescription& rRecord, const VOID* pRecord)
{
    RecordBlockPool pool(m_rBuilder.Version() >= BinaryFileFormat::MultiModeTableVersion);
    const UINT32    block = pool.AddRecord(rRecord, pRecord, nullptr);
    return BytesOf(pool, block);
}

std::vector<BYTE> RecordWriter::BytesOf(const RecordBlockPool& rPool, UINT32 block)
{
    std::vector<BYTE> bytes = rPool[block].bytes;
    for (const tuningfile::RecordBlock::Reference& rReference : rPool[block].references)
    {
        const bool isEmpty = rReference.block == RecordBlockPool::EmptyBlock;
        tuningfile::StoreInteger(bytes, rReference.position,
                                 isEmpty ? m_rBuilder.EmptyData() : AddData(BytesOf(rPool, rReference.block)));
    }
    return bytes;
}

UINT32 RecordWriter::AddData(const std::vector<BYTE>& rBlock)
{
    const auto same = m_data.find(rBlock);
    if (m_sharesData && same != m_data.end())
    {
        return m_rBuilder.AddData({}, same->second);
    }
    return m_data[rBlock] = m_rBuilder.AddData(rBlock);
}

std::vector<DefinedMember> RecordWriter::Members(const RecordDescription& rRecord)
{
    std::vector<DefinedMember> members;
    for (const RecordMember& rMember : rRecord.Members())
    {
        if (!rMember.IsStored())
        {
            continue;
        }
        const UINT32  minimum = rMember.HasCount() ? 0 : rMember.count;
        const UINT32  maximum = (rMember.form == Form::Variable) ? NoUpperBound : rMember.count;
        DefinedMember member{rMember.pName, ParameterUtils::NativeType(rMember.type), minimum, maximum, 0, 0};
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
