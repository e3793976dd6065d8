/// @file
/// One block of tuning data of a parameter file, and the reading of a record's members from it.
#pragma once

#include "parameters/loadallowance.h"
#include "parameters/parameterdefinitions.h"
#include "parameters/parameterlogging.h"
#include "parameters/sharedobjects.h"
#include "parameters/tuningmemory.h"
#include "schema/tuningrecord.h"

class ParameterFileSymbolTable;
class ParameterFileSymbolTableEntry;

/// Limit of a record whose end is not known.
constexpr UINT32 NoLoadDataLimit = 0xFFFFFFFF;

/// Where a record or a member is read from, and what the file says about its shape.
struct ParameterLoadParameters
{
    ParameterFileSymbolTableEntry* Entry           = nullptr;
    UINT64                         NameHash        = 0;
    bool                           UseParent       = false;    ///< Element is the member itself, not its parent
    bool                           UseParentOffset = false;    ///< the member's own offset counts in its position
    ParameterDefinitionElement*    Element         = nullptr;  ///< of the enclosing record; null if there is none
    UINT64                         Position        = 0;        ///< start of the enclosing record in Entry
    UINT32                         Index           = 0;        ///< of an array item
    UINT32                         LoadDataLimit   = NoLoadDataLimit;  ///< end of the enclosing record in Entry
    ParameterDefinitionElement*    Member = nullptr;  ///< of the member itself, if Entry stands at its place; else null
};

/// An entry of the symbol table or of the data table: its block of data and a read position in it.
///
/// The readers take a member out of a record in whatever way the file stores it. They never fail a load: a member that
/// the file does not have stays zero, a count that cannot be is clipped, and both are logged.
class ParameterFileSymbolTableEntry
{
public:
    ParameterFileSymbolTableEntry()                                                = default;
    ParameterFileSymbolTableEntry(const ParameterFileSymbolTableEntry&)            = delete;
    ParameterFileSymbolTableEntry& operator=(const ParameterFileSymbolTableEntry&) = delete;

    /// Makes the entry an empty one of the table. Its allowance stays that of the load.
    VOID Init(ParameterFileSymbolTable* pTable);

    UINT32                      GetAlignment() const;
    const IParameterLoggingAPI* GetLog() const;

    /// @return whether counted inline arrays have their count in front
    bool IsFixedCountVersion() const;

    /// Reads the byte count in front of a record. @return the end of the record, at most limit
    UINT32 ReadLoadDataLimit(UINT32 limit);

    /// Moves the read position to the end of a record. Members that the code does not know are stepped over here.
    VOID UpdatePosition(UINT32 limit);

    /// Finds the definition of the member that is about to be read and compares the read position with it. A mismatch
    /// is logged and tolerated: the position stays.
    /// @param rAdjusted whether the position was another one
    /// @return null if there are no definitions for it
    ParameterDefinitionElement* AdjustPositionAndGetElement(const ParameterLoadParameters& rParameters,
                                                            bool&                          rAdjusted) const;

    /// Logs that the file does not have a member. @param pReader which reader missed it
    VOID LogNotFound(const CHAR* pReader, UINT64 nameHash) const;

    VOID ReadSimpleTypeFixedArray(VOID* pDestination, tuning::ValueType type, UINT32 count,
                                  const ParameterLoadParameters& rParameters);

    /// @param rpArray receives memory that the record owns, unless the site shares it; null for no values
    VOID ReadSimpleTypeArray(VOID*& rpArray, tuning::ValueType type, UINT32& rCount, UINT32& rID, UINT32 minimumCount,
                             const ParameterLoadParameters& rParameters, const ReadingSite& rSite);

    VOID ReadOptionalSimpleType(VOID* pDestination, tuning::ValueType type, UINT32& rCount, UINT32& rID,
                                const ParameterLoadParameters& rParameters);

    VOID ReadStructureFixedArray(const tuning::RecordDescription& rRecord, VOID* pDestination, UINT32 count,
                                 const ParameterLoadParameters& rParameters);

    VOID ReadStructureArray(const tuning::RecordDescription& rRecord, VOID*& rpArray, UINT32& rCount, UINT32& rID,
                            UINT32 minimumCount, const ParameterLoadParameters& rParameters, const ReadingSite& rSite);

    VOID ReadOptionalStructure(const tuning::RecordDescription& rRecord, VOID* pDestination, UINT32& rCount,
                               UINT32& rID, const ParameterLoadParameters& rParameters);

    VOID ReadString(CHAR*& rpText, const ParameterLoadParameters& rParameters, const ReadingSite& rSite);

    VOID ReadStringFixedArray(CHAR** ppTexts, UINT32 count, const ParameterLoadParameters& rParameters,
                              const ReadingSite& rSite);

    VOID ReadStringArray(CHAR**& rppTexts, UINT32& rCount, UINT32& rID, UINT32 minimumCount,
                         const ParameterLoadParameters& rParameters, const ReadingSite& rSite);

    VOID ReadOptionalString(CHAR*& rpText, UINT32& rCount, UINT32& rID, const ParameterLoadParameters& rParameters,
                            const ReadingSite& rSite);

    /// Charges the load that the entry serves. @return false once its allowance is used up
    bool ChargeWork(UINT64 bytes) const
    {
        return Allowance == nullptr || Allowance->Charge(bytes);
    }

    ParameterFileSymbolTable* Table       = nullptr;
    UINT32                    ID          = 0;
    UINT32                    DuplicateID = 0;
    UINT32                    DataSize    = 0;        ///< bytes of the block
    bool                      IsModule    = false;    ///< fetched from a file, as a module
    const BYTE*               Data        = nullptr;  ///< the block; null if it is not in memory
    TuningBlock               OwnedData;              ///< the same, if the block was read for this entry alone
    UINT64                    Position  = 0;          ///< read position inside Data
    LoadAllowance*            Allowance = nullptr;    ///< of the load that the entry serves; null outside of one

private:
    friend class ParameterFileSymbolTable;

    /// A member as the code declares it.
    struct MemberRequest;

    /// A member as it was found in the file.
    struct MemberSource;

    template <typename Matches> bool FindMember(const MemberRequest& rRequest, MemberSource& rSource, Matches matches);
    bool                             GetCountAndPointerEntry(const MemberRequest& rRequest, MemberSource& rSource);
    bool                             ReadInlineCount(const MemberRequest& rRequest, MemberSource& rSource);
    bool                             ReadPointerCount(const MemberRequest& rRequest, MemberSource& rSource);
    VOID   ClipCount(const MemberRequest& rRequest, MemberSource& rSource, UINT64 available) const;
    UINT64 Available(UINT32 limit) const;

    bool ReadArray(VOID* pDestination, tuning::ValueType type, const ParameterDefinitionElement* pElement, UINT32 count,
                   UINT32 limit);
    VOID* ReadAllocatedArray(tuning::ValueType type, const ParameterDefinitionElement* pElement, UINT32 count,
                             UINT32 limit);
    VOID* AllocateItems(UINT32 count, UINT32 size) const;
    CHAR* ReadSharedText(UINT32 size, const ReadingSite& rSite);
    CHAR* ReadTextItem(const ReadingSite& rSite, UINT32 limit);

    ParameterDefinitionElement* FindElement(const ParameterLoadParameters& rParameters) const;

    bool   ReadLimited(UINT32& rValue, UINT32 limit);
    UINT32 StoredPairSize() const;
    VOID*  GetDupObject(const ReadingSite& rSite, UINT32 count) const;
    VOID   SetDupObject(VOID* pObject, const ReadingSite& rSite, UINT32 count) const;
    VOID   LogMessage(bool isError, const CHAR* pFormat, ...) const __attribute__((format(printf, 3, 4)));
};
