/// @file
/// The trace of a run as columns of numbers, from its lines or from a file.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/tavotypes.h"

namespace kirosim
{

class TraceTable
{
public:
    /// Frames that are kept at least; of a longer trace the last ones, up to twice as many.
    static constexpr size_t FramesMax = 20000;

    /// @param rName  what a person calls the trace; begins the messages of faults
    /// @param header names of the columns, separated by commas
    /// @throws tuningfile::InputError for a header without frame or time, or with a name that stands in it twice
    TraceTable(const std::string& rName, std::string_view header);

    /// Reads a trace that a run has written as CSV. Columns that nobody knows do no harm.
    /// @throws tuningfile::InputError with file and line
    static TraceTable Read(const std::string& rPath);

    /// @param line of numbers, one per column, separated by commas
    /// @throws tuningfile::InputError for another count, what is no number, and a time that does not rise
    VOID Add(std::string_view line);

    const std::string& Name() const
    {
        return m_name;
    }

    size_t FrameCount() const
    {
        return m_columns.front().size();
    }

    /// How many frames there were before those that are kept.
    UINT64 DroppedCount() const
    {
        return m_droppedCount;
    }

    /// @return the numbers of a column, one per frame; null if the trace has no such column. Valid until the next line
    const std::vector<DOUBLE>* Find(std::string_view column) const;

    /// @param column frame or time_s
    const std::vector<DOUBLE>& Get(std::string_view column) const
    {
        return *Find(column);
    }

private:
    VOID Refuse(const std::string& rText) const;
    VOID CheckTime() const;

    std::string                      m_name;
    std::vector<std::string>         m_names;
    std::vector<std::vector<DOUBLE>> m_columns;
    UINT64                           m_line;  ///< number of the last one
    UINT64                           m_droppedCount;
};

}  // namespace kirosim
