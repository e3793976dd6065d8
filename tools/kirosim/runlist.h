/// @file
/// The runs that one command asks for: each of its scenes in each of its variants with each of its seeds.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/kirosim/runoptions.h"

namespace kirosim
{

/// A list that is empty leaves the scene as it is.
struct RunChoice
{
    std::vector<std::string> scenes;
    std::vector<std::string> variants;  ///< names; "plain" is the scene without one, "all" is that and all it has
    std::vector<std::string> seeds;     ///< numbers or ranges such as 1..8
};

/// What is wrong with a seed or range of seeds on a command line, empty if nothing is.
std::string FaultOfSeeds(const std::string& rText);

/// In names of files, {scene} stands for the scene's file without folder and ending, {variant} for the variant or
/// "plain", {seed} for the seed or "own".
/// @param rCommon what all runs have in common; names of files may have places to fill
/// @return at least one run. @throws std::runtime_error if two of them would write one file, tuningfile::InputError for
/// a scene whose variants cannot be read
std::vector<RunOptions> RunsOf(const RunOptions& rCommon, const RunChoice& rChoice);

/// What a person calls a run of a list, such as "natural step+2, seed 3".
std::string RunName(const RunOptions& rRun);

}  // namespace kirosim
