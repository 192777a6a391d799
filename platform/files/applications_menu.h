// The applications menu as folders: how they are called, and which menu file they come from.
//
// The menu is two trees of categories: the user's own programs, and everybody else's. Their paths begin with a name
// that no path of a file begins with, since those begin with '/'; then come the names of the categories in the menu
// file, which are the same in every language. A program in a category is listed as "ID/PATH": its desktop file
// identifier, which is its name in the category, and the path of its entry.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace platform
{

constexpr std::string_view kUserMenu = "::applications-of-user";
constexpr std::string_view kCommonMenu = "::applications-of-all";

/// Whether the path is that of the whole menu or of a category.
bool IsMenuPath(std::string_view path);
bool IsMenuRoot(std::string_view path);

std::string MenuProgramName(std::string_view id, std::string_view path);
/// The parts of such a name. A name without a path, such as a category's, is its own identifier.
std::string_view MenuProgramId(std::string_view name);
std::string_view MenuProgramPath(std::string_view name);

/// Where a user's own entry of that identifier is, which goes before everybody's.
std::string UserEntryPath(std::string_view id);
/// Whether an entry is one of the user's own.
bool IsUserEntry(std::string_view path);

/// The menu file of the desktop: ${XDG_MENU_PREFIX}applications.menu, else applications.menu, else the one that is
/// named after the running desktop or, failing that, after any desktop that Debian has; each in the user's
/// configuration folder and then in the system's. "" when there is none.
std::string MenuFile();

} // namespace platform
