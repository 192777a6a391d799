// Letting the user pick a file by what the desktop has for it.
#pragma once

#include "platform/desktop/bus_talk.h"
#include "platform/services/peer_service.h"

#include <string>

namespace platform
{

struct Picked
{
    PickResult result = PickResult::Unavailable;
    std::string path;
};

/// The window as other programs take it ("x11:<id>"), "" for none.
std::string ParentOf(std::uint32_t window);

/// By org.freedesktop.portal.FileChooser.
Picked PickByPortal(const PickRequest& request);
/// By zenity, else by kdialog.
Picked PickByProgram(const PickRequest& request);

} // namespace platform
