#include "tools/program/filekind.h"

#include <charconv>
#include <filesystem>
#include <string_view>
#include <system_error>

#include <sys/stat.h>

namespace program
{

namespace
{

namespace fs = std::filesystem;

/// As many links as the kernel follows.
constexpr UINT32 MaxLinks = 40;

bool HasStatus(const std::string& rPath, struct stat& rStatus)
{
    return stat(rPath.c_str(), &rStatus) == 0;
}

/// A folder and a name in it: what a file is before it exists.
bool IsSamePlace(const std::string& rOne, const std::string& rOther)
{
    const fs::path one(fs::absolute(EndOfLinks(rOne)).lexically_normal());
    const fs::path other(fs::absolute(EndOfLinks(rOther)).lexically_normal());
    struct stat    oneFolder   = {};
    struct stat    otherFolder = {};
    return one.filename() == other.filename() && HasStatus(one.parent_path(), oneFolder) &&
           HasStatus(other.parent_path(), otherFolder) && oneFolder.st_dev == otherFolder.st_dev &&
           oneFolder.st_ino == otherFolder.st_ino;
}

}  // namespace

std::optional<int> DescriptorOf(const std::string& rPath)
{
    constexpr std::string_view names[]   = {"/dev/stdin", "/dev/stdout", "/dev/stderr"};
    constexpr std::string_view folders[] = {"/dev/fd/", "/proc/self/fd/"};
    for (int descriptor = 0; descriptor < 3; ++descriptor)
    {
        if (rPath == names[descriptor])
        {
            return descriptor;
        }
    }
    for (const std::string_view folder : folders)
    {
        if (rPath.starts_with(folder))
        {
            int         descriptor = -1;
            const char* pEnd       = rPath.data() + rPath.size();
            const auto  read       = std::from_chars(rPath.data() + folder.size(), pEnd, descriptor);
            if (read.ec == std::errc() && read.ptr == pEnd && descriptor >= 0)
            {
                return descriptor;
            }
        }
    }
    return std::nullopt;
}

std::string EndOfLinks(const std::string& rPath)
{
    fs::path        path(rPath);
    std::error_code ignored;
    for (UINT32 links = 0; fs::is_symlink(fs::symlink_status(path, ignored)); ++links)
    {
        if (links == MaxLinks)
        {
            throw std::system_error(std::make_error_code(std::errc::too_many_symbolic_link_levels));
        }
        path = path.parent_path() / fs::read_symlink(path);
    }
    return path.string();
}

std::string UnusableKind(const std::string& rPath)
{
    struct stat status = {};
    if (DescriptorOf(rPath).has_value() || !HasStatus(rPath, status))
    {
        return {};
    }
    switch (status.st_mode & S_IFMT)
    {
    case S_IFDIR:
        return "a folder";
    case S_IFIFO:
        return "a pipe";
    case S_IFSOCK:
        return "a socket";
    case S_IFBLK:
        return "a disk";
    default:
        return {};
    }
}

bool IsSameFile(const std::string& rOne, const std::string& rOther)
{
    struct stat one   = {};
    struct stat other = {};
    const bool  isOne = HasStatus(rOne, one);
    if (isOne != HasStatus(rOther, other))
    {
        return false;
    }
    // Whatever is written to a terminal or to /dev/null destroys nothing.
    return isOne ? one.st_dev == other.st_dev && one.st_ino == other.st_ino && !S_ISCHR(one.st_mode)
                 : IsSamePlace(rOne, rOther);
}

}  // namespace program
