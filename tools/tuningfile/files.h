/// @file
/// Tunings in files: which kind a file is, and how to read and write it. "-" is standard input or standard output.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "tools/tuningfile/binaryoutput.h"
#include "tools/tuningfile/tuning.h"

namespace tuningfile
{

constexpr size_t MaxTextSize = 16 << 20;

/// @return whether a file holds a text rather than a parameter file: by what it begins with, and by its name, ".yaml"
/// or
/// ".yml", where that does not tell
bool IsText(const std::string& rPath);

/// @throws InputError if the file cannot be read, is no file, or is larger than that
std::vector<BYTE> ReadBytes(const std::string& rPath, size_t maxSize = MaxFileSize);

/// Reads a file that a person has written. What YAML makes of a text takes a hundred times its size in memory.
/// @throws InputError as ReadBytes does, also for more than MaxTextSize and for a parameter file
std::string ReadText(const std::string& rPath);

/// @throws InputError as ReadBytes does, also for a text
std::vector<BYTE> ReadParameterFile(const std::string& rPath);

/// Reads a text tuning. @throws InputError
Tuning ReadTextFile(const std::string& rPath);

/// Makes the parameter file of a text tuning. The store takes the bytes as they are.
/// @throws InputError, whose message names the place in the text
std::vector<BYTE> CompileFile(const std::string& rPath, const VersionUnion& rVersion = NewestVersion);

/// Why a text that was made from a parameter file does not compile: a damaged file can hold what no text may say.
/// @param rName of the text, for the place
/// @return empty if it compiles
std::string CompileFault(const std::string& rText, const std::string& rName);

/// Puts bytes in the place of a file, or makes it; a failure leaves what was there.
/// @throws InputError if that cannot be done
VOID ReplaceFile(const std::string& rPath, std::span<const BYTE> bytes);

}  // namespace tuningfile
