// Reading index.theme files and looking names up.
#include "platform/icons/icon_theme.h"

#include "platform/base/file_content.h"
#include "platform/base/file_stamp.h"
#include "platform/base/text.h"
#include "platform/base/xdg_folders.h"
#include "platform/files/trusted_place.h"
#include "platform/icons/icon_file.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <map>
#include <sys/stat.h>

namespace platform
{

namespace
{

using Group = std::map<std::string_view, std::string_view>;
using IndexFile = std::map<std::string_view, Group>;

/// Calls `use` for each part of `text` between separators, trimmed, empty ones left out.
template <typename F>
void ForEachPart(std::string_view text, char separator, F use)
{
    while (!text.empty())
    {
        const std::string_view part = text.substr(0, text.find(separator));
        text.remove_prefix(std::min(part.size() + 1, text.size()));
        if (!Trimmed(part).empty())
            use(Trimmed(part));
    }
}

IndexFile ParseIndex(std::string_view content)
{
    IndexFile index;
    Group* group = nullptr;
    ForEachPart(content, '\n',
                [&](std::string_view line)
                {
                    if (line.front() == '[' && line.back() == ']')
                        group = &index[line.substr(1, line.size() - 2)];
                    const std::size_t equals = line.find('=');
                    if (group != nullptr && line.front() != '#' && equals != line.npos)
                        (*group)[Trimmed(line.substr(0, equals))] = Trimmed(line.substr(equals + 1));
                });
    return index;
}

std::string_view TextOf(const Group& group, std::string_view key)
{
    const auto found = group.find(key);
    return found != group.end() ? found->second : std::string_view();
}

int NumberOf(const Group& group, std::string_view key, int fallback)
{
    const std::string_view text = TextOf(group, key);
    int number = fallback;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return std::clamp(number, 0, 4096);
}

/// A link out of the trusted places counts as there: asking takes patience.
bool Exists(const std::string& path)
{
    const std::optional<struct statx> status = KnownStatus(path);
    return status && (!S_ISLNK(status->stx_mode) || TrustedWalk().Follow(path).error == 0);
}

/// How ill a folder for icons of [minSize, maxSize] suits `size`. A picture made smaller looks better than one blown
/// up.
int Distance(int minSize, int maxSize, int size)
{
    constexpr int kBlowingUp = 4;
    return size < minSize ? minSize - size : size > maxSize ? (size - maxSize) * kBlowingUp : 0;
}

/// The file of `icon` in one directory, "" when it has none.
std::string FileIn(const std::string& folder, std::string_view icon)
{
    for (const char* extension : {".png", ".svg", ".xpm"})
    {
        std::string path = folder;
        path.append(icon).append(extension);
        if (Exists(path))
            return path;
    }
    return {};
}

} // namespace

IconTheme::IconTheme(std::string_view name, std::vector<std::string> baseFolders, std::vector<std::string> looseFolders)
    : m_baseFolders(std::move(baseFolders)), m_looseFolders(std::move(looseFolders))
{
    Load(name);
    Load("hicolor");
    for (const std::string& folder : m_looseFolders)
        m_dependencies.push_back({folder, ModificationTime(folder)});
}

void IconTheme::Load(std::string_view name)
{
    constexpr std::size_t kMostThemes = 32;
    if (name.empty() || name.find('/') != name.npos || m_loaded.size() == kMostThemes ||
        std::find(m_loaded.begin(), m_loaded.end(), name) != m_loaded.end())
        return;
    m_loaded.emplace_back(name);
    std::vector<std::string> roots;
    FileContent indexFile;
    for (const std::string& base : m_baseFolders)
    {
        const std::string root = base + "/" + m_loaded.back();
        m_dependencies.push_back({root, ModificationTime(root)});
        if (m_dependencies.back().modified == 0)
            continue;
        if (indexFile.Content().empty())
            indexFile = FileContent(root + "/index.theme"); // the first one found describes the theme everywhere
        roots.push_back(root + "/");
    }
    m_themes.push_back(ReadIndex(indexFile.Content(), roots));
    WatchUserFolders(m_themes.back());
    const IndexFile index = ParseIndex(indexFile.Content());
    const auto header = index.find("Icon Theme");
    if (header != index.end() && name != "hicolor")
    {
        ForEachPart(
            TextOf(header->second, "Inherits"), ',',
            [this](std::string_view parent)
            {
                if (parent != "hicolor") // always the last
                    Load(parent);
            });
    }
}

void IconTheme::WatchUserFolders(const Theme& theme)
{
    const std::string_view home = m_baseFolders.empty() ? std::string_view() : m_baseFolders.front();
    const std::string_view data = m_baseFolders.size() < 2 ? std::string_view() : m_baseFolders[1];
    for (const Subfolder& folder : theme)
    {
        for (const std::string& path : folder.paths)
            if (path.starts_with(home) || path.starts_with(data))
                m_dependencies.push_back({path, ModificationTime(path)});
    }
}

IconTheme::Theme IconTheme::ReadIndex(std::string_view content, const std::vector<std::string>& roots) const
{
    Theme theme;
    const IndexFile index = ParseIndex(content);
    const auto header = index.find("Icon Theme");
    if (header == index.end())
        return theme;
    const auto add = [&](std::string_view name)
    {
        const auto found = index.find(name);
        Subfolder folder;
        for (const std::string& root : roots)
        {
            std::string path = root + std::string(name) + "/";
            if (found != index.end() && Exists(path))
                folder.paths.push_back(std::move(path));
        }
        if (folder.paths.empty())
            return;
        const Group& group = found->second;
        const int scale = std::clamp(NumberOf(group, "Scale", 1), 1, 16);
        const int size = NumberOf(group, "Size", 48);
        const int threshold = NumberOf(group, "Threshold", 2);
        const std::string_view type = TextOf(group, "Type");
        const bool scalable = type == "Scalable";
        const int slack = type == "Fixed" ? 0 : threshold;
        folder.size = size * scale;
        folder.minSize = (scalable ? NumberOf(group, "MinSize", size) : size - slack) * scale;
        folder.maxSize = (scalable ? NumberOf(group, "MaxSize", size) : size + slack) * scale;
        theme.push_back(std::move(folder));
    };
    ForEachPart(TextOf(header->second, "Directories"), ',', add);
    ForEachPart(TextOf(header->second, "ScaledDirectories"), ',', add);
    return theme;
}

std::string IconTheme::FindInTheme(const Theme& theme, std::string_view icon, int size) const
{
    // Folders that suit the size come first, in the theme's order; the rest by distance.
    std::vector<std::pair<int, const Subfolder*>> order;
    order.reserve(theme.size());
    for (const Subfolder& folder : theme)
    {
        const int distance = Distance(folder.minSize, folder.maxSize, size);
        // Within a threshold, an icon of exactly the size is still the better one.
        order.emplace_back(distance * 2 + (distance == 0 && folder.size != size), &folder);
    }
    std::stable_sort(order.begin(), order.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    for (const auto& [distance, folder] : order)
    {
        for (const std::string& path : folder->paths)
        {
            std::string file = FileIn(path, icon);
            if (!file.empty())
                return file;
        }
    }
    return {};
}

std::string IconTheme::Find(std::string_view icon, int size) const
{
    if (icon.empty() || icon.find('/') != icon.npos)
        return {};
    for (const Theme& theme : m_themes)
    {
        std::string file = FindInTheme(theme, icon, size);
        if (!file.empty())
            return file;
    }
    for (const std::string& folder : m_looseFolders)
    {
        std::string file = FileIn(folder + "/", icon);
        if (!file.empty())
            return file;
    }
    return {};
}

std::vector<std::string> IconBaseFolders()
{
    std::vector<std::string> folders{HomeFolder() + "/.icons"};
    for (const std::string& data : DataFolders())
        folders.push_back(data + "/icons");
    return AnsweringFolders(std::move(folders));
}

std::vector<std::string> LooseIconFolders()
{
    std::vector<std::string> folders = IconBaseFolders();
    std::vector<std::string> pixmaps;
    for (const std::string& data : DataFolders())
        pixmaps.push_back(data + "/pixmaps");
    for (std::string& folder : AnsweringFolders(std::move(pixmaps)))
        folders.push_back(std::move(folder));
    return folders;
}

} // namespace platform
