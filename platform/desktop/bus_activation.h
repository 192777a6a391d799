// Starting applications through the session bus: the interface org.freedesktop.Application.
#pragma once

#include "platform/desktop/entry_launch.h"

#include <functional>
#include <memory>

namespace platform
{

struct BusRequest
{
    std::string entryPath; ///< its file name without ".desktop" is the application's name on the bus
    std::vector<std::string> uris;
    std::string action;    ///< one of the application's own; "" for none
    std::string startupId; ///< "" for none
};

/// Asks the application to activate itself, to run the action or to open the URIs, from a thread of its own. When the
/// bus cannot have it started, `runCommand` is tried on that thread. Waits a moment for a failure; returns "" when
/// there was none so far, else the reason. `end` is kept until the application has answered, five seconds at most, and
/// told a failure that comes after that moment.
std::string ActivateOverBus(BusRequest request, std::function<std::string()> runCommand,
                            std::shared_ptr<LaunchEnd> end);

} // namespace platform
