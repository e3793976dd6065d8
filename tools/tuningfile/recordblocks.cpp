#include "tools/tuningfile/recordblocks.h"

#include "schema/recordwalk.h"
#include "tools/tuningfile/bytes.h"

namespace tuningfile
{

UINT32 RecordBlockPool::AddRecord(const tuning::RecordDescription& rDescription, const VOID* pRecord,
                                  const VOID* pPlace)
{
    RecordBlock block;
    AppendRecord(rDescription, static_cast<const BYTE*>(pRecord), block);
    return Add(std::move(block), pPlace);
}

UINT32 RecordBlockPool::Add(RecordBlock block, const VOID* pPlace)
{
    // The positions of references follow from the place and need not be compared.
    std::string key(reinterpret_cast<const CHAR*>(&pPlace), sizeof(pPlace));
    key.append(reinterpret_cast<const CHAR*>(block.bytes.data()), block.bytes.size());
    for (const RecordBlock::Reference& rReference : block.references)
    {
        key.append(reinterpret_cast<const CHAR*>(&rReference.block), sizeof(rReference.block));
    }
    const auto [known, isNew] = m_known.try_emplace(std::move(key), static_cast<UINT32>(m_blocks.size()));
    if (isNew)
    {
        m_blocks.push_back(std::move(block));
    }
    return known->second;
}

VOID RecordBlockPool::AppendReference(UINT32 count, UINT32 block, RecordBlock& rBlock)
{
    AppendInteger(rBlock.bytes, count);
    rBlock.references.push_back({static_cast<UINT32>(rBlock.bytes.size()), block});
    AppendInteger(rBlock.bytes, UINT32{0});
}

/// A record is the number of the bytes that follow, then its members.
VOID RecordBlockPool::AppendRecord(const tuning::RecordDescription& rDescription, const BYTE* pRecord,
                                   RecordBlock& rBlock)
{
    const size_t start = rBlock.bytes.size();
    AppendInteger(rBlock.bytes, UINT32{0});
    for (const tuning::RecordMember& rMember : rDescription.Members())
    {
        if (rMember.IsStored())
        {
            AppendMember(rMember, pRecord, rBlock);
        }
    }
    StoreInteger(rBlock.bytes, start, static_cast<UINT32>(rBlock.bytes.size() - start - sizeof(UINT32)));
}

VOID RecordBlockPool::AppendMember(const tuning::RecordMember& rMember, const BYTE* pRecord, RecordBlock& rBlock)
{
    const auto values = tuning::ValuesOf(rMember, pRecord);
    if (!rMember.HasCount())
    {
        // An array of one is a single value to readers.
        if (m_countedArrays && values.count > 1)
        {
            AppendInteger(rBlock.bytes, values.count);
        }
        for (UINT32 index = 0; index < values.count; ++index)
        {
            AppendValue(rMember, values.At(rMember, index), rBlock);
        }
        return;
    }
    if (values.count == 0)
    {
        AppendReference(0, EmptyBlock, rBlock);
        return;
    }
    RecordBlock block;
    for (UINT32 index = 0; index < values.count; ++index)
    {
        AppendValue(rMember, values.At(rMember, index), block);
    }
    AppendReference(values.count, Add(std::move(block), &rMember), rBlock);
}

VOID RecordBlockPool::AppendValue(const tuning::RecordMember& rMember, const BYTE* pValue, RecordBlock& rBlock)
{
    switch (rMember.type)
    {
    case tuning::ValueType::Record:
        AppendRecord(*rMember.pRecord, pValue, rBlock);
        break;
    case tuning::ValueType::Text:
    {
        // Readers take an empty text for what it is, but complain about a missing one.
        const std::string_view text = tuning::TextAt(pValue);
        RecordBlock            block;
        block.bytes.assign(text.begin(), text.end());
        block.bytes.push_back(0);
        const UINT32 length = static_cast<UINT32>(block.bytes.size());
        AppendReference(length, Add(std::move(block), &rMember), rBlock);
        break;
    }
    default:
        rBlock.bytes.insert(rBlock.bytes.end(), pValue, pValue + rMember.valueSize);
        break;
    }
}

}  // namespace tuningfile
