#include "tools/kirotune/debugcommand.h"

#include <fmt/format.h>

#include "tools/debugdata/debugfile.h"
#include "tools/debugdata/debugtext.h"
#include "tools/program/privatefile.h"
#include "tools/program/standardstreams.h"
#include "tools/tuningfile/files.h"
#include "tools/tuningfile/inputerror.h"

namespace kirotune
{

namespace
{

UINT32 FrameOf(const AECDebugData& rRecord)
{
    return rRecord.frameHistoryInfo.currentFrame.frameID;
}

}  // namespace

int Debug(const std::string& rInput, std::optional<UINT32> frame, bool isList)
{
    const std::string                   name = program::InputName(rInput);
    std::optional<program::PrivateFile> copy;  // records are looked for here and there, a pipe is read once
    if (program::IsStandardStream(rInput))
    {
        copy.emplace(tuningfile::ReadBytes(rInput));
    }
    debugdata::DebugFileReader file(copy.has_value() ? copy->Path() : rInput, name);
    if (file.Count() == 0)
    {
        throw tuningfile::InputError(fmt::format("{}: holds no records", name));
    }
    if (isList)
    {
        for (UINT64 index = 0; index < file.Count(); ++index)
        {
            fmt::print("{}", debugdata::FormatLine(file.Read(index)));
        }
        return 0;
    }
    UINT64 index = file.Count() - 1;
    if (frame.has_value())
    {
        for (index = 0; index < file.Count() && FrameOf(file.Read(index)) != *frame;)
        {
            ++index;
        }
        if (index == file.Count())
        {
            const UINT32 first = FrameOf(file.Read(0));
            const UINT32 last  = FrameOf(file.Read(file.Count() - 1));
            throw tuningfile::InputError(
                fmt::format("{}: no frame {}, there are frames {} to {}", name, *frame, first, last));
        }
    }
    fmt::print("record {} of {}\n{}", index + 1, file.Count(), debugdata::FormatRecord(file.Read(index)));
    return 0;
}

}  // namespace kirotune
