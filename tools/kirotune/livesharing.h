/// @file
/// Which other modules an edit of a running camera shows in.
///
/// Lists that are alike are one object for all records that have them, so an edit within one changes them all. The
/// service does not tell which records share. But it tells values: those of all modules that may share are compared
/// before and after.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "schema/tuningrecord.h"
#include "tools/liveclient/liveclient.h"

namespace kirotune
{

class SharedEdit
{
public:
    /// Reads what may share a list with the members that are about to be set; nothing if they stand in none.
    /// @param rClient must outlive this object
    /// @param rModule the module's text, perhaps with a record within it @param rMembers paths
    SharedEdit(liveclient::Client& rClient, const std::string& rPath, const std::string& rModule,
               const std::vector<std::string>& rMembers);

    /// Reads it again. @return mode path, module and member of each value that has changed in another module
    std::vector<std::string> Touched();

private:
    using Values = std::map<std::string, std::string>;  ///< by member path

    /// A module as frames of a mode find it.
    struct Place
    {
        std::string path;
        std::string module;
        Values      before;
    };

    VOID   AddPlaces(const std::string& rPath);
    Values Read(const Place& rPlace, bool isWhole);
    VOID   ReadRecord(const std::string& rPath, const std::string& rText, const tuning::RecordDescription& rRecord,
                      bool isWhole, Values& rValues);
    bool   IsOfInterest(const tuning::RecordDescription& rRecord) const;

    liveclient::Client&                        m_rClient;
    const std::string                          m_path;
    const std::string                          m_module;   ///< its name alone
    std::set<const tuning::RecordDescription*> m_holders;  ///< records that hold what is set
    std::vector<Place>                         m_places;
};

}  // namespace kirotune
