#include "tools/kirosim/tracetable.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include <fmt/format.h>

#include "tools/program/standardstreams.h"
#include "tools/tuningfile/files.h"
#include "tools/tuningfile/inputerror.h"

namespace kirosim
{

namespace
{

/// A trace of some hundred thousand frames.
constexpr size_t MaxTraceSize = 128 << 20;

/// Takes the text up to a separator away from a text. @return it, without the separator
std::string_view TakeUpTo(CHAR separator, std::string_view& rText)
{
    const size_t           end  = std::min(rText.find(separator), rText.size());
    const std::string_view part = rText.substr(0, end);
    rText.remove_prefix(std::min(end + 1, rText.size()));
    return part;
}

std::string_view WithoutReturn(std::string_view line)
{
    return line.substr(0, line.size() - (line.ends_with('\r') ? 1 : 0));
}

/// What a person is shown of a text that is not what was expected.
std::string Excerpt(std::string_view text)
{
    constexpr size_t length = 20;
    std::string      shown(text.substr(0, length));
    std::replace_if(
        shown.begin(), shown.end(), [](CHAR letter) { return letter < ' ' || letter > '~'; }, '?');
    return shown;
}

}  // namespace

TraceTable::TraceTable(const std::string& rName, std::string_view header) : m_name(rName), m_line(1), m_droppedCount(0)
{
    while (!header.empty())
    {
        const std::string name(TakeUpTo(',', header));
        if (std::find(m_names.begin(), m_names.end(), name) != m_names.end())
        {
            Refuse(fmt::format("column '{}' stands twice in the header", Excerpt(name)));
        }
        m_names.push_back(name);
    }
    m_columns.resize(m_names.size());
    for (const CHAR* pNeeded : {"frame", "time_s"})
    {
        if (Find(pNeeded) == nullptr)
        {
            Refuse(fmt::format("no column {} in the header, expected a trace of kirosim run --csv", pNeeded));
        }
    }
}

TraceTable TraceTable::Read(const std::string& rPath)
{
    const std::vector<BYTE> bytes = tuningfile::ReadBytes(rPath, MaxTraceSize);
    std::string_view        text(reinterpret_cast<const CHAR*>(bytes.data()), bytes.size());
    TraceTable              table(program::InputName(rPath), WithoutReturn(TakeUpTo('\n', text)));
    while (!text.empty())
    {
        table.Add(WithoutReturn(TakeUpTo('\n', text)));
    }
    if (table.FrameCount() == 0)
    {
        ++table.m_line;
        table.Refuse("no frame, expected one per line");
    }
    return table;
}

VOID TraceTable::Refuse(const std::string& rText) const
{
    throw tuningfile::InputError(fmt::format("{}:{}: {}", m_name, m_line, rText));
}

VOID TraceTable::Add(std::string_view line)
{
    ++m_line;
    const size_t count = static_cast<size_t>(std::count(line.begin(), line.end(), ',')) + 1;
    if (count != m_names.size())
    {
        Refuse(fmt::format("{} value{}, expected {} as in the header", count, (count == 1) ? "" : "s", m_names.size()));
    }
    for (size_t column = 0; column < m_columns.size(); ++column)
    {
        const std::string_view text  = TakeUpTo(',', line);
        DOUBLE                 value = 0.0;
        const auto [pEnd, error]     = std::from_chars(text.data(), text.data() + text.size(), value);
        if (error != std::errc() || pEnd != text.data() + text.size())
        {
            Refuse(fmt::format("'{}' found for {}, expected a number", Excerpt(text), Excerpt(m_names[column])));
        }
        m_columns[column].push_back(value);
    }
    CheckTime();
    if (FrameCount() == 2 * FramesMax)
    {
        m_droppedCount += FramesMax;
        for (std::vector<DOUBLE>& rColumn : m_columns)
        {
            rColumn.erase(rColumn.begin(), rColumn.begin() + FramesMax);
        }
    }
}

VOID TraceTable::CheckTime() const
{
    const std::vector<DOUBLE>& rTimes = Get("time_s");
    if (!std::isfinite(rTimes.back()))
    {
        Refuse("time_s is no time");
    }
    if (rTimes.size() > 1 && rTimes.back() <= rTimes[rTimes.size() - 2])
    {
        Refuse(fmt::format("time_s is {}, expected more than the {} of the frame before", rTimes.back(),
                           rTimes[rTimes.size() - 2]));
    }
}

const std::vector<DOUBLE>* TraceTable::Find(std::string_view column) const
{
    const auto found = std::find(m_names.begin(), m_names.end(), column);
    return (found != m_names.end()) ? &m_columns[static_cast<size_t>(found - m_names.begin())] : nullptr;
}

}  // namespace kirosim
