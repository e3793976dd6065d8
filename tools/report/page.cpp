#include "tools/report/page.h"

#include <span>
#include <stdexcept>
#include <string_view>

#include "tools/report/pagedata.h"
#include "tools/webfile/webfile.h"

namespace webfile
{

extern const std::span<const File> ReportFiles;

}  // namespace webfile

namespace report
{

namespace
{

std::string_view FileNamed(std::string_view name)
{
    const webfile::File* pFile = webfile::Find(webfile::ReportFiles, name);
    if (pFile == nullptr)
    {
        throw std::logic_error("the program lacks a file of its pages");
    }
    return pFile->content;
}

}  // namespace

/// The frame of the page names what stands in it: "<!--report.css-->" is the place of that file.
std::string WritePage(const Page& rPage)
{
    constexpr std::string_view open  = "<!--";
    constexpr std::string_view close = "-->";
    std::string_view           rest  = FileNamed("report.html");
    std::string                text;
    for (size_t place = rest.find(open); place != std::string_view::npos; place = rest.find(open))
    {
        text += rest.substr(0, place);
        rest.remove_prefix(place + open.size());
        const std::string_view name = rest.substr(0, rest.find(close));
        if (name == "data")
        {
            text += PageData(rPage);
        }
        else
        {
            text += FileNamed(name);
        }
        rest.remove_prefix(name.size() + close.size());
    }
    text += rest;
    return text;
}

}  // namespace report
