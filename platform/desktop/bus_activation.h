// Starting applications through the session bus: the interface org.freedesktop.Application.
#pragma once

#include <string>
#include <vector>

namespace platform
{

struct BusRequest
{
    std::string entryPath; ///< its file name without ".desktop" is the application's name on the bus
    std::vector<std::string> uris;
    std::string action;    ///< one of the application's own; "" for none
    std::string startupId; ///< "" for none
};

/// Asks the application to activate itself, to run the action or to open the URIs, and waits for its answer. False when
/// it cannot be had over the bus; one that is slow to answer may yet do it.
bool ActivateOverBus(const BusRequest& request);

} // namespace platform
