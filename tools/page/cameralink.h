/// @file
/// The one connection to the camera, for all browsers.
#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <future>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "tools/kirotune/livecamera.h"
#include "tools/liveclient/liveclient.h"
#include "tools/liveclient/picturecommand.h"

namespace page
{

/// There is none to ask.
class NoCameraError : public liveclient::Error
{
public:
    using liveclient::Error::Error;
};

/// Whether there is a camera, and which.
struct CameraState
{
    bool        isConnected = false;
    std::string name        = {};
    std::string version     = {};  ///< of the protocol
    std::string error       = {};  ///< why it is not connected
    bool        hasPictures = false;
};

/// What the link tells. Called on its thread; must not wait for it.
struct CameraWatcher
{
    /// The connection was lost, or is there again.
    std::function<VOID(const CameraState&)> changed;

    /// Another camera has answered than before, or the same one has been started anew: edits of before are not its.
    std::function<VOID()> replaced;

    /// @param seconds since the link was made
    std::function<VOID(DOUBLE seconds, const std::vector<liveclient::ControlValue>&)> sampled;

    std::function<VOID(liveclient::Picture)> pictured;

    /// Samples and pictures are taken only then.
    std::function<bool()> isWatched;
};

/// Runs a thread that connects, connects again whenever the camera was lost, and does all that needs the camera, one
/// piece after the other.
class CameraLink
{
public:
    using Work = std::function<VOID(kirotune::LiveCamera&)>;

    CameraLink(const liveclient::Options& rOptions, CameraWatcher watcher);
    ~CameraLink();
    CameraLink(const CameraLink&)            = delete;
    CameraLink& operator=(const CameraLink&) = delete;

    CameraState State() const;

    /// Does something with the camera, and waits for it. May be called by any thread but the link's.
    /// @throws NoCameraError if there is none or if it has too much to do, and whatever the work throws
    VOID Do(Work work);

private:
    using Clock = std::chrono::steady_clock;

    struct Task
    {
        Work               work;
        std::promise<VOID> done;
    };

    /// When what is asked for again and again is due.
    struct Schedule
    {
        Clock::time_point sample;
        Clock::time_point picture;
        Clock::time_point sign;  ///< of life, from a camera that nobody watches
    };

    VOID Run();
    VOID Serve(kirotune::LiveCamera& rCamera);
    VOID TakePart(kirotune::LiveCamera& rCamera, Task task);
    VOID AskWhatIsDue(kirotune::LiveCamera& rCamera, Schedule& rSchedule);
    VOID TakeSample(kirotune::LiveCamera& rCamera);
    VOID TakePicture(kirotune::LiveCamera& rCamera);
    VOID Find(kirotune::LiveCamera& rCamera);
    VOID Lose(const std::string& rWhy);
    bool Wait(Clock::time_point until);
    bool IsStopping() const;

    const liveclient::Options m_options;
    const CameraWatcher       m_watcher;
    const Clock::time_point   m_start;
    mutable std::mutex        m_mutex;
    std::condition_variable   m_changed;
    CameraState               m_state;
    std::deque<Task>          m_tasks;
    bool                      m_isStopping = false;

    // Of the thread alone.
    std::string m_identity;            ///< of the last camera
    DOUBLE      m_lastFrame   = -1.0;  ///< of the last sample
    UINT64      m_lastPicture = 0;     ///< frame of the last picture

    std::thread m_thread;  ///< last, since it uses all of the above
};

}  // namespace page
