/// @file
/// Objects that records with the same data share.
#pragma once

#include <cstddef>
#include <shared_mutex>
#include <unordered_map>

#include "parameters/parametersync.h"
#include "schema/tuningrecord.h"

/// The place in the code that reads a member. The same bytes read at different places become objects of different
/// types, so an object may be shared only by reads of one place.
struct ReadingSite
{
    const tuning::RecordDescription* pRecord;   ///< type of the enclosing record
    INT32                            location;  ///< number of the place in that type

    /// @return the place that reads a member, by the member's ordinal
    static ReadingSite OfMember(const tuning::RecordDescription& rRecord, UINT32 memberIndex)
    {
        return {&rRecord, static_cast<INT32>(2 * memberIndex)};
    }

    /// @return the place that reads the items of an array of texts, which are objects besides the array
    ReadingSite OfItems() const
    {
        return {pRecord, location + 1};
    }

    bool operator==(const ReadingSite&) const = default;
};

/// A shared object.
struct DupObjInfo
{
    VOID*             Object = nullptr;
    ParameterRefCount RefCount{0};
};

/// The objects that are shared at present, and how many records have each. Any thread may call; the objects themselves
/// are the records'.
class SharedObjects
{
public:
    /// What an object is known by.
    struct Key
    {
        const VOID* pTable;  ///< the file's table that has the group
        UINT32      group;   ///< of entries with the same block
        ReadingSite site;
        UINT32      count;  ///< of the values in it; an object of another size does not serve

        bool operator==(const Key&) const = default;
    };

    /// @return the object, for which one more reference is taken; null if there is none
    VOID* Get(const Key& rKey);

    /// Enters an object with its first reference. @return false if there is another one
    bool Set(const Key& rKey, VOID* pObject);

    /// Gives a reference back.
    /// @return whether the caller has to free the object: it was the last reference, or the object was never shared
    bool Release(VOID* pObject);

    /// @return how many there are. Not while another thread calls
    size_t Count() const
    {
        return m_dupEntries.size();
    }

private:
    struct KeyHash
    {
        size_t operator()(const Key& rKey) const;
    };

    using Entries = std::unordered_map<Key, DupObjInfo, KeyHash>;

    std::shared_mutex                               m_dupInfoMutex;  ///< guards the two maps
    Entries                                         m_dupEntries;
    std::unordered_map<VOID*, Entries::value_type*> m_dupInfoMap;  ///< by object
};
