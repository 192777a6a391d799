// What files are to the desktop: the name, icon and type that a person sees. Answered by GIO.
//
// Local files only, by name and mode; no content is read but that of desktop entries. May be called on any thread.
#pragma once

#include <cstddef>
#include <cstdint>

namespace platform
{

struct DescribeRequest
{
    const char* name;   ///< within the folder
    std::uint32_t mode; ///< st_mode of the file that the name leads to; 0 when it leads nowhere
    bool desktopEntry;  ///< read the file as a desktop entry
};

/// UTF-8 text, valid until the receiver returns.
struct FileFacts
{
    const char* displayName; ///< null when the file's name is what is shown
    const char* icons;       ///< theme names or absolute paths in order of preference, '\n' between
    const char* typeName;
    bool hidden;
};

struct DescribeService
{
    /// Calls `receive` once per request, in order.
    void (*describe)(const char* folder, const DescribeRequest* requests, std::size_t count,
                     void (*receive)(void* context, std::size_t index, const FileFacts& facts), void* context);
};

} // namespace platform

extern "C" const platform::DescribeService orb_describe_service;
