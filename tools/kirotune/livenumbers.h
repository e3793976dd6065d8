/// @file
/// Numbers of records, one by one: how live tuning names them, and how a camera stores and tells them.
#pragma once

#include <string>
#include <vector>

#include "schema/recordmember.h"
#include "tools/liveclient/liveclient.h"

namespace kirotune
{

/// Paths within a record.
struct NumberPaths
{
    std::vector<std::string> held;    ///< of every number that it holds; the elements of arrays one by one
    std::vector<std::string> beyond;  ///< of numbers that a record has whose lists are longer
};

NumberPaths PathsOf(const tuning::RecordDescription& rRecord, const VOID* pRecord);

/// Whether an answer is one number: for an element that there is not, the service tells all elements of a list.
bool IsOneNumber(const std::string& rText);

/// @return a number of a record as a camera that holds it would tell it
std::string NumberText(const tuning::RecordDescription& rRecord, const VOID* pRecord, const std::string& rMember);

/// Reads numbers of a running camera, in as many requests as their answers need.
/// @param rMembers paths @return those that could be read, in the same order
std::vector<liveclient::Value> ReadNumbers(liveclient::Client& rClient, const std::string& rPath,
                                           const std::string& rModule, const std::vector<std::string>& rMembers);

/// A number as a camera stores it.
class StoredNumber
{
public:
    explicit StoredNumber(const tuning::RecordMember& rMember);

    /// Stores a text as the service does. @return false if it is no number to it
    bool Set(const std::string& rText);

    /// The text by which the service tells it.
    std::string Told() const;

    /// The text by which a tuning holds it, with all its digits.
    std::string InTuning() const;

private:
    tuning::RecordDescription Record() const;

    tuning::RecordMember m_member;
    alignas(UINT64) BYTE m_bytes[sizeof(UINT64)] = {};
};

}  // namespace kirotune
