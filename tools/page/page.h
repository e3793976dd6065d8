/// @file
/// What the server of the page does, apart from HTTP: questions and edits of browsers as JSON, and what they are told
/// without asking.
#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "tools/page/cameralink.h"
#include "tools/page/edits.h"
#include "tools/page/eventhub.h"
#include "tools/tuningfile/tuning.h"

namespace page
{

struct PageOptions
{
    liveclient::Options                       camera;
    std::string                               file    = {};  ///< that the camera was started with
    std::shared_ptr<const tuningfile::Tuning> pTuning = {};  ///< of that file, null without one

    /// Gets a line whenever a camera is found or lost, on a thread of the page. May be empty.
    std::function<VOID(const std::string&)> tell = {};
};

/// Edits come faster than a person makes them.
class TooManyEditsError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// May be used by any thread. Answers are JSON; what fails throws the errors of CameraLink and Edits, and
/// std::invalid_argument for a body that says nothing.
class Page
{
public:
    /// Edits in any second, of all browsers together.
    static constexpr size_t MaxEditsPerSecond = 50;

    explicit Page(const PageOptions& rOptions);

    std::string State();
    std::string Module(const std::string& rMode, const std::string& rModule);
    std::string Changes();

    /// @return a patch, empty if there is nothing to save. Without a camera it holds what the page has set
    std::string Patch();

    /// @return a patch of the edits that a new camera does not hold; empty if there are none
    std::string LostPatch();

    // Edits. @param rClient by which the browser names itself

    std::string Set(std::string_view body, const std::string& rClient);
    std::string Reset(std::string_view body, const std::string& rClient);
    std::string Undo(const std::string& rClient);
    std::string Redo(const std::string& rClient);

    /// Sets all edits again that a new camera does not hold. All browsers are told of them.
    std::string SetLostAgain(const std::string& rClient);

    /// They are not wanted any more.
    std::string ForgetLost();

    /// The latest one.
    std::optional<liveclient::Picture> Picture() const;

    EventHub& Events()
    {
        return m_events;
    }

private:
    using EditWork = std::function<EditResult(kirotune::LiveCamera&)>;

    CameraWatcher Watcher();
    std::string   Edit(const std::string& rClient, const EditWork& rWork);
    VOID          PublishEdit(const std::string& rClient, const EditResult& rResult);
    std::string   PublishLost();
    VOID          RequireRate();
    VOID          TakeState(const CameraState& rState);
    VOID          TakePicture(liveclient::Picture picture);

    const PageOptions                                 m_options;
    const std::string                                 m_address;  ///< of the camera
    EventHub                                          m_events;
    Edits                                             m_edits;
    mutable std::mutex                                m_mutex;
    std::deque<std::chrono::steady_clock::time_point> m_editTimes;  ///< of the last second
    std::optional<liveclient::Picture>                m_picture;
    CameraLink                                        m_link;  ///< last, since its thread uses all of the above
};

}  // namespace page
