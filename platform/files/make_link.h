// Making shortcuts: symbolic links.
#pragma once

#include <string>

namespace platform
{

/// Makes a link of that name in the folder; an errno value on failure, else 0. Nothing is replaced: where the name is
/// taken the link is called "name (2)" and so on, the number before the endings, and a name longer than the file system
/// takes is cut before them.
int MakeLink(const std::string& folder, const std::string& name, const std::string& target);

} // namespace platform
