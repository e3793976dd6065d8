/// @file
/// Addresses that mean something in later calls: which is which, without the address itself. InputWriter gives them
/// numbers, InputReader turns the numbers into addresses of the replay.
#pragma once

#include <deque>
#include <map>
#include <vector>

#include "interface/aecalgogetparam.h"
#include "interface/ikirocorealgo.h"
#include "interface/kiromulticam.h"
#include "interface/kirostartexposure.h"
#include "parameters/tuningmode.h"
#include "tools/recording/fieldreader.h"

namespace recording
{

/// What a recording holds at most: far more than a device has. A replay takes no more, so that a file from anywhere
/// cannot have it create instances without end.
constexpr size_t InstanceCountMax = 16;  ///< at a time
constexpr size_t TuningCountMax   = 16;

/// One instance of the core, in a recorded run or in a replay.
struct InstanceState
{
    UINT32                                     number     = 0;
    IKIROCoreAlgo*                             pCore      = nullptr;  ///< the core's own table
    VOID*                                      pPeerInfo  = nullptr;  ///< its own record, once the host has asked
    kirodbarbitrationtable::ExposureTableType* pLastTable = nullptr;  ///< that arbitration has named last
    StatsTuningData                            tuning{};              ///< of a recorded instance, as it was last set
};

/// How an address is written: a kind, and the number of what it is.
enum class ReferenceKind : UINT8
{
    Null       = 0,
    Instance   = 1,  ///< the own record of the instance of that number
    HostRecord = 2   ///< a record of the host's that chunks HOST give
};

enum class HostRecordKind : UINT32
{
    PeerInfo              = 0,  ///< AECMultiCamInfo of a camera that is no instance of the recording
    PrecisionFlashHistory = 1
};

const tuning::RecordDescription& DescriptionOf(HostRecordKind kind);

/// @return the description of a bank's payloads, null for an ID that is no bank
const tuning::RecordDescription* PayloadOf(KIROBankIDType bank);

/// A record of the host's that the core reads whenever it likes.
struct HostRecord
{
    UINT32            number;
    UINT32            instance;  ///< that was told of it
    HostRecordKind    kind;
    const VOID*       pRecord;
    std::vector<BYTE> last;  ///< its bytes as the replay has them
};

/// The recorder's side.
struct RecordedIdentities
{
    std::vector<const VOID*>      tunings;      ///< managers, by number
    std::map<const VOID*, UINT32> ownRecords;   ///< of instances, with their numbers
    std::map<const VOID*, UINT32> kept;         ///< payloads that banks keep
    std::vector<HostRecord>       hostRecords;  ///< in use
    UINT32                        hostRecordCount = 0;
};

/// The inputs of a call on their way into a recording.
class InputWriter : public FieldWriter
{
public:
    InputWriter(std::vector<BYTE>& rBytes, RecordedIdentities& rIdentities, InstanceState& rInstance)
        : FieldWriter(rBytes), m_rIdentities(rIdentities), m_rInstance(rInstance)
    {
    }

    /// @throws MalformedError for a store that the recorder was not told of
    VOID TuningData(const StatsTuningData& rTuning);
    VOID OwnOrHostRecord(HostRecordKind kind, VOID* pRecord);
    VOID LastTable(kirodbarbitrationtable::ExposureTableType* pTable);
    VOID BankPayload(KIROBankIDType bank, VOID* pPayload);

    /// Whether the core looks at a channel of that name to decide on preflash metering: it goes by the tuning alone.
    bool IsReadForPreflash(const CHAR* pChannelName) const;

    /// The records of a kind that this instance was told of are no longer in use.
    VOID ForgetHostRecords(HostRecordKind kind);

private:
    RecordedIdentities& m_rIdentities;
    InstanceState&      m_rInstance;
};

/// A payload that a bank keeps by its address.
struct KeptPayload
{
    VOID* pPayload = nullptr;
    Arena record;
    Arena nested;
};

/// An instance in a replay, and what the host would keep alive for it.
struct ReplayInstance : InstanceState
{
    std::map<std::pair<INT32, UINT32>, KeptPayload> payloads;  ///< by bank and number
    std::map<INT64, Arena>                          inputs;    ///< of the last call of a kind that was taken, and since
    Arena                                           forLife;
    KIROMeteringOutput                              metering{};  ///< of the last frame
    AECMultiCamInfo                                 shared{};    ///< its own record as of its last call, for the others
    UINT64                                          frameID     = 0;
    UINT64                                          frameCount  = 0;
    bool                                            isDestroyed = false;
};

/// The replayer's side.
struct ReplayIdentities
{
    std::vector<VOID*>            tunings;  ///< managers, by number
    std::deque<ReplayInstance>    instances;
    std::map<UINT32, KeptPayload> hostRecords;
    TextPool                      texts;
};

/// The inputs of a call on their way out of a recording.
class InputReader : public FieldReader
{
public:
    InputReader(std::span<const BYTE> bytes, Arena& rArena, ReplayIdentities& rIdentities, ReplayInstance& rInstance)
        : FieldReader(bytes, rArena, rIdentities.texts), m_rIdentities(rIdentities), m_rInstance(rInstance)
    {
    }

    VOID TuningData(StatsTuningData& rTuning);
    VOID OwnOrHostRecord(HostRecordKind kind, VOID*& rpRecord);
    VOID LastTable(kirodbarbitrationtable::ExposureTableType*& rpTable);
    VOID BankPayload(KIROBankIDType bank, VOID*& rpPayload);

    VOID ForgetHostRecords(HostRecordKind)
    {
    }

private:
    ReplayIdentities& m_rIdentities;
    ReplayInstance&   m_rInstance;
};

}  // namespace recording
