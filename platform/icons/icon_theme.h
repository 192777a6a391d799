// Finding icon files by the freedesktop Icon Theme Specification 0.13.
//
// Plain file access and nothing else: neither GLib nor a theme's cache file is needed to find a name. A theme object
// knows which of the directories its theme names exist when it is made, and which directories that depended on.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace platform
{

/// The times by which a later run sees that a directory's content may have changed.
struct DirectoryStamp
{
    std::string path;
    std::int64_t modified = 0; ///< nanoseconds; 0 when there is no such directory
};

class IconTheme
{
public:
    /// `baseFolders` are searched in order, the first two of which are the user's own; `looseFolders` hold files that
    /// belong to no theme, searched last.
    IconTheme(std::string_view name, std::vector<std::string> baseFolders, std::vector<std::string> looseFolders);

    /// The file that shows `icon` best at `size` pixels; "" when no theme has it.
    std::string Find(std::string_view icon, int size) const;

    /// Every theme and loose directory looked at, present or not. By the freedesktop icon theme rules, whoever installs
    /// an icon touches the theme's top directory; a person who copies one into a folder of their own does not, so those
    /// are listed too.
    const std::vector<DirectoryStamp>& Dependencies() const { return m_dependencies; }

private:
    struct Subfolder
    {
        std::vector<std::string> paths; ///< where it exists, in order of the base folders, each ending in '/'
        int size = 0;                   ///< pixels, the scale already applied, as are all below
        int minSize = 0;                ///< smallest and largest size that the folder's icons suit
        int maxSize = 0;
    };
    using Theme = std::vector<Subfolder>;

    void Load(std::string_view name);
    void WatchUserFolders(const Theme& theme);
    Theme ReadIndex(std::string_view index, const std::vector<std::string>& roots) const;
    std::string FindInTheme(const Theme& theme, std::string_view icon, int size) const;

    std::vector<std::string> m_baseFolders;
    std::vector<std::string> m_looseFolders;
    std::vector<std::string> m_loaded; ///< names, so that a circle of parents ends
    std::vector<Theme> m_themes;       ///< the theme itself, its parents, hicolor
    std::vector<DirectoryStamp> m_dependencies;
};

/// The folders that the freedesktop icon theme rules name, without those that do not answer.
std::vector<std::string> IconBaseFolders();
std::vector<std::string> LooseIconFolders();

} // namespace platform
