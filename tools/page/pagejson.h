/// @file
/// What the server tells the page, as JSON. Bytes of a camera that are not UTF-8 are replaced.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "tools/page/cameralink.h"
#include "tools/page/cameramodes.h"
#include "tools/page/edits.h"
#include "tools/page/modulereader.h"

namespace page
{

/// All that the page begins with.
struct PageState
{
    CameraState              camera;
    std::string              address;  ///< of the camera
    std::string              file;     ///< that the camera was started with; empty if nobody has said
    ModeNode                 modes   = {};
    std::vector<std::string> active  = {};
    std::vector<std::string> modules = {};
    size_t                   undo    = 0;
    size_t                   redo    = 0;
    size_t                   lost    = 0;  ///< numbers that a camera before was set to
};

std::string ErrorJson(const std::string& rError, bool isGuard = false);
std::string CameraJson(const CameraState& rState, const std::string& rAddress);
std::string StateJson(const PageState& rState);

/// @param rStarts where numbers started, by path
std::string ModuleJson(const std::string& rMode, const std::string& rModule, const std::vector<Member>& rMembers,
                       const std::map<std::string, std::string>& rStarts);

/// What the browser gets that has set something.
std::string ResultJson(const EditResult& rResult);

/// What all browsers get.
std::string EditJson(const EditResult& rResult, bool isOwn, size_t undo, size_t redo);

std::string ChangesJson(const std::vector<kirotune::Change>& rChanges);

/// A sample of the control values, in the order of StateJson's list.
std::string SampleJson(DOUBLE seconds, const std::vector<liveclient::ControlValue>& rValues);

/// @param count as PageState has it
std::string LostJson(size_t count);

std::string FrameJson(UINT64 frame);

}  // namespace page
