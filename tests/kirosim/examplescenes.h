/// @file
/// The example scenes, for tests that hold in all of them.
#pragma once

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

/// Names of all example scenes, in order.
inline std::vector<std::string> ExampleScenes()
{
    std::vector<std::string> names;
    for (const auto& rEntry : std::filesystem::directory_iterator(EXAMPLES_DIR "/scenes"))
    {
        names.push_back(rEntry.path().stem().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

inline std::string ExampleScenePath(const std::string& rName)
{
    return EXAMPLES_DIR "/scenes/" + rName + ".yaml";
}

/// What a test of a scene or variant may be called.
inline std::string TestNameOf(std::string name)
{
    std::erase(name, '-');
    return name;
}
