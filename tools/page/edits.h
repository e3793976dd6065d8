/// @file
/// What the browsers together have set, and how it is taken back.
#pragma once

#include <atomic>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "tools/kirotune/livecamera.h"
#include "tools/page/keptedits.h"
#include "tools/tuningfile/tuning.h"

namespace page
{

/// Numbers that cannot be meant; they are sent only on demand.
class SenselessError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// There is nothing to take back, or to do again.
class NothingLeftError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// What a browser wants to be set.
struct WantedEdit
{
    std::string                    mode;
    std::string                    module;
    std::vector<liveclient::Value> values;            ///< as a person writes them: true, names of enumerators
    bool                           isForced = false;  ///< also numbers that cannot be meant
    bool                           isJoined = false;  ///< one step with the edit before, if that is alike
};

struct EditResult
{
    std::string                    mode;
    std::string                    module;
    std::vector<liveclient::Value> values = {};  ///< as the camera holds them now
    std::vector<std::string>       shared = {};  ///< mode, module and member of what has changed with them elsewhere
};

/// To be used by one thread at a time, but for the counts. All operations that take a camera throw liveclient::Error.
class Edits
{
public:
    /// @param pTuning what the camera was started with, to compare with it; null if nobody has said
    explicit Edits(std::shared_ptr<const tuningfile::Tuning> pTuning) : m_pTuning(std::move(pTuning))
    {
    }

    /// @param rClient by which the browser names itself: edits are joined with its own only
    /// @throws SenselessError unless forced
    EditResult Set(kirotune::LiveCamera& rCamera, const WantedEdit& rWanted, const std::string& rClient);

    /// @throws NothingLeftError
    EditResult Undo(kirotune::LiveCamera& rCamera);

    /// @throws NothingLeftError
    EditResult Redo(kirotune::LiveCamera& rCamera);

    /// Sets members back to where they started. @param rPaths members, or records that hold them; none for all
    EditResult Reset(kirotune::LiveCamera& rCamera, const std::string& rMode, const std::string& rModule,
                     const std::vector<std::string>& rPaths);

    /// What is no longer where it started.
    std::vector<kirotune::Change> Changes(kirotune::LiveCamera& rCamera);

    /// @return the text that 'live save' writes; empty if there is nothing to save
    std::string Patch(kirotune::LiveCamera& rCamera);

    /// Where the members of a module started, by path: as the tuning holds them or, without one, as the camera held
    /// those that were set since.
    std::map<std::string, std::string> Starts(kirotune::LiveCamera& rCamera, const std::string& rMode,
                                              const std::string& rModule);

    /// Another camera has answered: it holds none of the edits, which are lost until they are set again.
    VOID Lose();

    /// Sets lost edits of one module in this camera; they are lost no longer.
    EditResult SetLostAgain(kirotune::LiveCamera& rCamera, const ModulePlace& rPlace, const KeptNumbers& rNumbers);

    /// What needs no camera, and may be used by any thread.
    KeptEdits& Kept()
    {
        return m_kept;
    }

    size_t UndoCount() const
    {
        return m_undoCount;
    }

    size_t RedoCount() const
    {
        return m_redoCount;
    }

private:
    /// What is taken back, and done again, in one go.
    struct Step
    {
        kirotune::EditCommand    command;
        std::string              client;  ///< empty if nothing joins it
        std::vector<std::string> shared;  ///< as EditResult has it
    };

    bool       Joins(const Step& rStep, const WantedEdit& rWanted) const;
    EditResult Apply(kirotune::LiveCamera& rCamera, Step step);
    EditResult ApplyJoined(kirotune::LiveCamera& rCamera, kirotune::EditCommand command);
    VOID       SetCounts();

    std::shared_ptr<const tuningfile::Tuning> m_pTuning;
    std::vector<Step>                         m_undo;  ///< the latest last
    std::vector<Step>                         m_redo;  ///< as they were done, the one to do next last
    KeptEdits                                 m_kept;
    std::atomic<size_t>                       m_undoCount = 0;
    std::atomic<size_t>                       m_redoCount = 0;
};

}  // namespace page
