// What the files that are dropped and the folder they are dropped into are to each other.
#pragma once

#include "platform/shell/drop_rules.h"

#include <string>
#include <vector>

namespace platform
{

/// Fills in what the file system knows. Takes a second at most: of places that do not answer by then the file work will
/// tell.
void LookAtDrop(DropFacts& facts, const std::string& folder, const std::vector<std::string>& sources);

} // namespace platform
