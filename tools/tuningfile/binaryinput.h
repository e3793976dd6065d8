/// @file
/// Tunings from parameter files, by way of the tuning store.
#pragma once

#include <string>
#include <vector>

#include "parameters/binaryfileformat.h"
#include "parameters/parametersetmanager.h"
#include "tools/tuningfile/tuning.h"

namespace tuningfile
{

/// A parameter file and what its text cannot say.
struct BinaryTuning
{
    Tuning                   tuning;
    BinaryFileHeader         header;
    BinaryFileSections       sections;
    std::vector<std::string> notes;  ///< what was passed over, one sentence each
};

/// Reads a whole parameter file.
/// @param rFileName for messages
/// @throws InputError if the store refuses the file
BinaryTuning ReadBinary(const std::vector<BYTE>& rBytes, const std::string& rFileName);

/// The mode trees of a loaded store and the modules in them whose records are known. The records belong to the store.
/// @param rNotes receives what was passed over
std::vector<ModeTable> ReadModeTables(ParameterSetManager& rStore, std::vector<std::string>& rNotes);

}  // namespace tuningfile
