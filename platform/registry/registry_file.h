// Where the hives lie, and what is done about a damaged file.
#pragma once

#include <string>

namespace platform
{

/// orb-launcher/registry.db in ConfigHome().
std::string UserHivePath();
/// orb-launcher/registry.db in the first of SystemConfigFolders().
std::string MachineHivePath();

/// Creates the folder that a file lies in, with its parents. An errno value, 0 on success.
int MakeParentFolder(const std::string& path);

/// True when this process may write the file, or create it when it does not exist.
bool MayWrite(const std::string& path);

/// Renames a damaged file to <path>.damaged-<n>, with the first n that is free, and its rollback journal with it.
/// Nothing is overwritten. False when that is impossible.
bool SetFileAside(const std::string& path);

} // namespace platform
