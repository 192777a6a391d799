// What the desktop knows of an item beyond its verbs: an entry's own actions, the programs that open a file.
#pragma once

#include <string>
#include <vector>

namespace platform
{

/// One thing that can be chosen.
struct ItemChoice
{
    std::string id; ///< of an action its name in the entry; of a program the path of its entry
    std::u16string text;
    std::string icon; ///< an icon identity (platform/files/listed_file.h)
};

/// The actions of the desktop entry at `path`, or that a link there leads to; none when it is something else, or when
/// its place does not answer within a moment.
std::vector<ItemChoice> ActionsOf(const std::string& path);

struct ItemPrograms
{
    std::vector<ItemChoice> programs; ///< the default first; not all when there are very many
    bool canChooseOther = false;      ///< whether the desktop has a chooser
};
/// The programs recommended for the file or folder.
ItemPrograms ProgramsFor(const std::string& path);

} // namespace platform
