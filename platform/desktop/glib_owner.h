// Owners for GLib's pointers.
#pragma once

#include <gio/gio.h>

#include <memory>

namespace platform
{

template <auto freeFunction>
struct GFree
{
    template <typename T>
    void operator()(T* pointer) const
    {
        freeFunction(pointer);
    }
};

template <typename T>
using GObjectOwner = std::unique_ptr<T, GFree<g_object_unref>>;
using GKeyFileOwner = std::unique_ptr<GKeyFile, GFree<g_key_file_unref>>;
using GErrorOwner = std::unique_ptr<GError, GFree<g_error_free>>;
using GStrvOwner = std::unique_ptr<char*, GFree<g_strfreev>>;
/// Text or other memory that g_free frees.
using GTextOwner = std::unique_ptr<char, GFree<g_free>>;

} // namespace platform
