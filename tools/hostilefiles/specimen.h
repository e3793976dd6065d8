/// @file
/// Whole parameter files, and the places in them where damage does most.
#pragma once

#include <string>
#include <vector>

#include "parameters/binaryfileformat.h"

namespace hostilefiles
{

/// A place in a record where an array stands: how many items, and which row of the data table has them.
struct ArrayPlace
{
    UINT32 position;  ///< of the count in the file; the row's index follows
    UINT32 row;
};

/// A file of version 6.0.0 or later.
class Specimen
{
public:
    /// @throws std::runtime_error if the bytes are no parameter file with modules and arrays
    Specimen(std::string name, std::vector<BYTE> bytes);

    /// The same without definitions: readers then go by their own schema.
    Specimen WithoutDefinitions() const;

    const std::string       name;
    const std::vector<BYTE> bytes;
    const BinaryFileHeader& Header() const
    {
        return m_header;
    }
    const BinaryFileSections& Sections() const
    {
        return m_sections;
    }
    const std::vector<ArrayPlace>& Arrays() const
    {
        return m_arrays;
    }

private:
    VOID FindArrays();

    BinaryFileHeader        m_header;
    BinaryFileSections      m_sections;
    std::vector<ArrayPlace> m_arrays;
};

}  // namespace hostilefiles
