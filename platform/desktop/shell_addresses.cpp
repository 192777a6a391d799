// File addresses, by GLib.
#include "platform/services/address_service.h"

#include "platform/desktop/glib_owner.h"

#include <string_view>

namespace platform
{
namespace
{

/// By the names that this machine goes by: none, "localhost", its own.
bool IsThisHost(const char* host)
{
    const std::string_view name = host != nullptr ? host : "";
    return name.empty() || g_ascii_strcasecmp(host, "localhost") == 0 ||
           g_ascii_strcasecmp(host, g_get_host_name()) == 0;
}

void AddressOf(const char* path, void* context, void (*receive)(void* context, const char* address))
{
    const GTextOwner address(g_filename_to_uri(path, nullptr, nullptr));
    if (address != nullptr)
        receive(context, address.get());
}

void PathsIn(const char* list, void* context, void (*receive)(void* context, const char* path))
{
    const GStrvOwner addresses(g_uri_list_extract_uris(list));
    for (char** address = addresses.get(); *address != nullptr; ++address)
    {
        char* host = nullptr;
        const GTextOwner path(g_filename_from_uri(*address, &host, nullptr));
        const GTextOwner hostOwner(host);
        if (path != nullptr && IsThisHost(host))
            receive(context, path.get());
    }
}

} // namespace
} // namespace platform

extern "C" __attribute__((visibility("default")))
const platform::AddressService orb_address_service = {platform::AddressOf, platform::PathsIn};
