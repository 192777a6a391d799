// Names of the applications menu's folders, and the choice of its menu file.
#include "platform/files/applications_menu.h"

#include "platform/base/xdg_folders.h"

#include <algorithm>
#include <cstdlib>
#include <sys/stat.h>
#include <vector>

namespace platform
{

namespace
{

constexpr std::string_view kMenuName = "applications.menu";

std::string Variable(const char* name)
{
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

std::string Lower(std::string text)
{
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    std::transform(text.begin(), text.end(), text.begin(), lower);
    return text;
}

/// The file names of menus in the order in which they are looked for.
std::vector<std::string> MenuNames()
{
    std::vector<std::string> names;
    const auto add = [&](std::string name)
    {
        if (name.find('/') == name.npos)
            names.push_back(std::move(name));
    };
    if (const std::string prefix = Variable("XDG_MENU_PREFIX"); !prefix.empty())
        add(prefix + std::string(kMenuName));
    add(std::string(kMenuName));
    std::string desktops = Lower(Variable("XDG_CURRENT_DESKTOP"));
    while (!desktops.empty())
    {
        const std::string desktop = desktops.substr(0, desktops.find(':'));
        desktops.erase(0, desktop.size() + 1);
        add(desktop + "-" + std::string(kMenuName));
    }
    for (const char* desktop : {"debian", "gnome", "xfce", "lxde", "lxqt", "mate", "cinnamon", "kf5", "plasma"})
        add(std::string(desktop) + "-" + std::string(kMenuName));
    add("debian-menu.menu");
    return names;
}

bool IsFile(const std::string& path)
{
    struct stat status;
    return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

} // namespace

bool IsMenuPath(std::string_view path)
{
    return IsMenuRoot(path.substr(0, path.find('/')));
}

bool IsMenuRoot(std::string_view path)
{
    return path == kUserMenu || path == kCommonMenu;
}

std::string MenuProgramName(std::string_view id, std::string_view path)
{
    return std::string(id).append("/").append(path);
}

std::string_view MenuProgramId(std::string_view name)
{
    return name.substr(0, name.find('/'));
}

std::string_view MenuProgramPath(std::string_view name)
{
    return name.substr(std::min(MenuProgramId(name).size() + 1, name.size()));
}

std::string UserEntryPath(std::string_view id)
{
    return (DataHome() + "/applications/").append(id);
}

bool IsUserEntry(std::string_view path)
{
    return path.starts_with(UserEntryPath({}));
}

std::string MenuFile()
{
    std::vector<std::string> folders = SystemConfigFolders();
    folders.insert(folders.begin(), ConfigHome());
    for (const std::string& name : MenuNames())
        for (const std::string& folder : folders)
            if (std::string path = folder + "/menus/" + name; IsFile(path))
                return path;
    return {};
}

} // namespace platform
