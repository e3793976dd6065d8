/// @file
/// What a row of a record's table says to people: the meaning of a tunable, its unit, the values that make sense.
///
/// Words are for tools. The library reads none, so that none is in it (tuningrecord.h).
#pragma once

#include <array>
#include <cstddef>
#include <limits>
#include <type_traits>

#include "schema/recordmember.h"

namespace tuning
{

enum class Unit : UINT8
{
    None,            ///< a bare number; also of what is no number
    Nanoseconds,
    Microseconds,
    Milliseconds,
    Seconds,
    LogStep,         ///< 3 percent
    EV,
    EVStep,          ///< 1 / stepsPerEV EV
    Gain,            ///< linear, 1 is the least of a sensor
    Factor,          ///< linear
    GainTimesNs,     ///< exposure
    Luma,            ///< 0 to 255, of the channel's full scale
    Share,           ///< 1 is all
    Percent,
    Frames,
    FramesPerSecond,
    Hertz,
    Lux,
    LuxIndex,
    Kelvin,
    Milliampere,
    Millimetre,
    Pixels,
    Degrees,
    RadPerSecond,
    ColourRatio,     ///< red or blue over green
    Count,
    Index,
    ID,              ///< Words::refers says of what
    ChannelUnits,    ///< the scale of a statistics channel
    Varies           ///< the meaning says with what
};

/// When an edit in a running camera acts.
enum class Acts : UINT8
{
    NextFrame,
    Rebuilt,       ///< in the next frame, but what is made from the module starts anew
    NextAnalysis,
    NewTuning,     ///< once the host hands over a tuning or a mode
    NextStart,
    RoleChange,
    EVChange,
    Creation,
    Never          ///< read by no stage, or a text
};

/// Which values make sense. A bound may itself be out.
struct Range
{
    static constexpr DOUBLE Unlimited = std::numeric_limits<DOUBLE>::infinity();

    DOUBLE low     = Unlimited;   ///< above high: not given
    DOUBLE high    = -Unlimited;
    bool   lowOut  = false;
    bool   highOut = false;

    constexpr bool IsGiven() const
    {
        return low <= high;
    }

    /// Not-a-number is in no range.
    constexpr bool Holds(DOUBLE value) const
    {
        return (lowOut ? value > low : value >= low) && (highOut ? value < high : value <= high);
    }
};

/// What a number or a text can name.
enum class Thing : UINT8
{
    Nothing,
    Bank,             ///< an entry of one of Reference::banks
    SiblingBank,      ///< an entry of the bank that the member bankID beside it names
    OwnBank,          ///< an entry of the bank that the module fills
    Calculator,
    Analyzer,
    Algorithm,
    VectorProcessor,
    MapProcessor,
    TableGenerator,
    Detector,
    Channel,
    Control,
    HistoryReference,  ///< of kiroarbitration: a past frame to stay near
    Mode
};

enum class Verb : UINT8
{
    Reads,
    Writes,
    Defines   ///< gives the thing its number
};

struct Reference
{
    static constexpr INT64 AlwaysMeant = std::numeric_limits<INT64>::min();

    Verb   verb  = Verb::Reads;
    Thing  thing = Thing::Nothing;
    UINT32 banks = 0;             ///< bits by number, of Thing::Bank
    INT64  none  = AlwaysMeant;   ///< with this value nothing is meant

    constexpr Reference Unless(INT64 value) const
    {
        Reference reference = *this;
        reference.none      = value;
        return reference;
    }
};

struct Words
{
    const CHAR*              meaning = nullptr;  ///< a sentence or two: what happens when it is doubled or switched
    Unit                     unit    = Unit::None;
    Range                    range   = {};       ///< of each number, where it makes sense
    Range                    odd     = {};       ///< the wider one where it works; not given: the same
    Range                    entries = {};       ///< how many a list holds
    const CHAR*              start   = nullptr;  ///< as in a text tuning: what a tuner writes first
    Acts                     acts    = Acts::NextFrame;
    Reference    refers[3] = {};
    const CHAR*              when    = nullptr; ///< "flag", "flag=false" or "choice=A|B", joined by " & ": read only if
                                                 ///< these hold, by members of this record or of the nearest around it
};

/// What an enumerator says.
struct EnumeratorWords
{
    const CHAR* meaning = nullptr;
    Unit        unit    = Unit::None;  ///< of a trigger: of what it measures
    Reference   refers  = {};          ///< of a control: what its ID names
};

struct EnumWords
{
    const EnumDescription* pEnum;
    const EnumeratorWords* pEnumerators;  ///< as many as pEnum has, in its order
};

struct RecordWords;

struct MemberWords
{
    Words              words   = {};
    const RecordWords* pRecord = nullptr;  ///< of a nested record, null otherwise
    const EnumWords*   pEnum   = nullptr;  ///< of an enumeration with names, null otherwise
};

struct RecordWords
{
    const RecordDescription* pRecord;
    const MemberWords*       pMembers;  ///< as many as pRecord has, in its order
};

/// The terms in which rows are written: every table inherits them.
struct RowTerms
{
    using Unit  = tuning::Unit;
    using Acts  = tuning::Acts;
    using Thing = tuning::Thing;

    static constexpr Range Any = {-Range::Unlimited, Range::Unlimited};

    static constexpr Range AtLeast(DOUBLE low)
    {
        return {low, Range::Unlimited};
    }

    static constexpr Range AtMost(DOUBLE high)
    {
        return {-Range::Unlimited, high};
    }

    static constexpr Range Above(DOUBLE low, DOUBLE high = Range::Unlimited)
    {
        return {low, high, true};
    }

    static constexpr Range Below(DOUBLE low, DOUBLE high)
    {
        return {low, high, false, true};
    }

    /// Both bounds are out.
    static constexpr Range Between(DOUBLE low, DOUBLE high)
    {
        return {low, high, true, true};
    }

    static constexpr Reference Reads(Thing thing)
    {
        return {Verb::Reads, thing};
    }

    static constexpr Reference Writes(Thing thing)
    {
        return {Verb::Writes, thing};
    }

    static constexpr Reference Defines(Thing thing)
    {
        return {Verb::Defines, thing};
    }

    template <typename... Bank>
    requires(std::is_enum_v<Bank> && ...)
    static constexpr UINT32 BitsOf(Bank... banks)
    {
        return ((UINT32{1} << static_cast<UINT32>(banks)) | ...);
    }

    template <typename... Bank> static constexpr Reference ReadsBank(Bank... banks)
    {
        return {Verb::Reads, Thing::Bank, BitsOf(banks...)};
    }

    template <typename... Bank> static constexpr Reference DefinesBank(Bank... banks)
    {
        return {Verb::Defines, Thing::Bank, BitsOf(banks...)};
    }

    template <typename... Bank> static constexpr Reference WritesBank(Bank... banks)
    {
        return {Verb::Writes, Thing::Bank, BitsOf(banks...)};
    }
};

} // namespace tuning
