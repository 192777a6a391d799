// File addresses (RFC 8089) and lists of them (RFC 2483). Answered by GLib.
#pragma once

namespace platform
{

struct AddressService
{
    /// Hands over the address of the file at `path` (absolute). Bytes that an address may not hold are escaped,
    /// whatever encoding they are of. Not called for a path that has none.
    void (*addressOf)(const char* path, void* context, void (*receive)(void* context, const char* address));
    /// Hands over the path of each local file in a list, a line each, in order; skips addresses of other kinds, of
    /// other hosts and malformed ones, and comments.
    void (*pathsIn)(const char* list, void* context, void (*receive)(void* context, const char* path));
};

} // namespace platform

extern "C" const platform::AddressService orb_address_service;
