// Settings that the user's desktop publishes.
//
// Source: the XSETTINGS manager of the screen where one runs, else ~/.config/gtk-3.0/settings.ini. Names are those of
// the XSETTINGS registry, such as "Net/IconThemeName", "Gtk/FontName", "Xft/DPI" (DPI × 1024), "Net/DndDragThreshold".
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace platform
{

/// A setting as text (integers in decimal), nothing when it is not set. Read once, at the first call.
std::optional<std::string> DesktopSetting(std::string_view name);

} // namespace platform
