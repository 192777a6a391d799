// Settings by name: what the running desktop publishes, else what the user's GTK settings file says.
#include "platform/screen/desktop_settings.h"

#include "platform/base/file_content.h"
#include "platform/base/text.h"
#include "platform/base/xdg_folders.h"
#include "platform/screen/screen.h"

namespace platform
{
namespace
{

using Settings = std::map<std::string, std::string, std::less<>>;

struct FileKey
{
    std::string_view key;
    std::string_view name;
};

// The settings file's keys and the names under which a desktop publishes the same settings.
constexpr FileKey kFileKeys[] = {
    {"gtk-icon-theme-name", "Net/IconThemeName"},
    {"gtk-theme-name", "Net/ThemeName"},
    {"gtk-font-name", "Gtk/FontName"},
    {"gtk-cursor-theme-name", "Gtk/CursorThemeName"},
    {"gtk-xft-dpi", "Xft/DPI"},
    {"gtk-xft-hinting", "Xft/Hinting"},
    {"gtk-xft-hintstyle", "Xft/HintStyle"},
    {"gtk-xft-antialias", "Xft/Antialias"},
    {"gtk-xft-rgba", "Xft/RGBA"},
    {"gtk-double-click-time", "Net/DoubleClickTime"},
    {"gtk-dnd-drag-threshold", "Net/DndDragThreshold"},
    {"gtk-menu-popup-delay", "Gtk/MenuPopupDelay"},
};

void TakeLine(Settings& settings, std::string_view line)
{
    const auto equals = line.find('=');
    if (equals == line.npos)
        return;
    const std::string_view key = Trimmed(line.substr(0, equals));
    for (const FileKey& known : kFileKeys)
        if (known.key == key)
            settings.insert_or_assign(std::string(known.name), std::string(Trimmed(line.substr(equals + 1))));
}

Settings ReadSettingsFile()
{
    Settings settings;
    const FileContent file(ConfigHome() + "/gtk-3.0/settings.ini");
    std::string_view rest = file.Content();
    while (!rest.empty())
    {
        const auto end = rest.find('\n');
        TakeLine(settings, rest.substr(0, end));
        rest.remove_prefix(end == rest.npos ? rest.size() : end + 1);
    }
    return settings;
}

std::optional<std::string> Find(const Settings& settings, std::string_view name)
{
    const auto found = settings.find(name);
    return found != settings.end() ? std::optional(found->second) : std::nullopt;
}

} // namespace

std::optional<std::string> DesktopSetting(std::string_view name)
{
    const Settings& published = screen::PublishedSettings();
    if (!published.empty())
        return Find(published, name);
    static const Settings& file = *new Settings(ReadSettingsFile());
    return Find(file, name);
}

} // namespace platform
