/// @file
/// Records as the blocks of bytes that a parameter file holds.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "schema/tuningrecord.h"

namespace tuningfile
{

/// A block and its references to others. Where a reference's entry ID belongs, four zero bytes stand.
struct RecordBlock
{
    struct Reference
    {
        UINT32 position;  ///< of the entry ID in bytes
        UINT32 block;     ///< index in the pool
    };

    std::vector<BYTE>      bytes;
    std::vector<Reference> references;
};

/// Takes records apart into blocks and keeps those that are the same once. Blocks are the same if they belong to the
/// same place of the schema and are equal in all that they hold and refer to.
class RecordBlockPool
{
public:
    /// Stands for a block without values: an array or optional member that is empty refers to it.
    static constexpr UINT32 EmptyBlock = 0xFFFFFFFF;

    /// @param countedArrays a fixed array has its count in front
    explicit RecordBlockPool(bool countedArrays) : m_countedArrays(countedArrays)
    {
    }

    /// @param pPlace identity of the module that the record belongs to
    /// @return index of the record's block
    UINT32 AddRecord(const tuning::RecordDescription& rDescription, const VOID* pRecord, const VOID* pPlace);

    const RecordBlock& operator[](UINT32 index) const
    {
        return m_blocks[index];
    }

private:
    UINT32      Add(RecordBlock block, const VOID* pPlace);
    VOID        AppendRecord(const tuning::RecordDescription& rDescription, const BYTE* pRecord, RecordBlock& rBlock);
    VOID        AppendMember(const tuning::RecordMember& rMember, const BYTE* pRecord, RecordBlock& rBlock);
    VOID        AppendValue(const tuning::RecordMember& rMember, const BYTE* pValue, RecordBlock& rBlock);
    static VOID AppendReference(UINT32 count, UINT32 block, RecordBlock& rBlock);

    const bool                              m_countedArrays;
    std::vector<RecordBlock>                m_blocks;
    std::unordered_map<std::string, UINT32> m_known;  ///< index by place and content
};

}  // namespace tuningfile
