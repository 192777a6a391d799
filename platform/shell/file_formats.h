// Files and web addresses in the forms in which programs hand them to each other: on the clipboard, and dragged.
#pragma once

#include "platform/windowing/clipboard.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace platform
{

constexpr std::string_view kUriList = "text/uri-list";                    ///< RFC 2483; everybody
constexpr std::string_view kCopiedFiles = "x-special/gnome-copied-files"; ///< a line "copy" or "cut" before the list
constexpr std::string_view kKdeCut = "application/x-kde-cutselection";    ///< "1" beside a list of what is to be moved
constexpr std::string_view kMozillaUrl = "text/x-moz-url";                ///< UTF-16: an address, a line with its title
constexpr std::string_view kNetscapeUrl = "_NETSCAPE_URL";                ///< the same in UTF-8

/// The forms of FormsOfFiles, the best first.
constexpr std::string_view kFileForms[] = {kCopiedFiles, kUriList, "UTF8_STRING", "text/plain;charset=utf-8",
                                           "text/plain"};

struct CopiedFiles
{
    std::vector<std::string> paths; ///< POSIX, absolute
    bool cut = false;               ///< to be moved by whoever takes them
};

struct WebAddress
{
    std::string url;
    std::string title; ///< UTF-8; "" when nobody told it
    bool operator==(const WebAddress&) const = default;
};

/// The files in every form in which other programs look for them, as kFileForms has them. Nothing when no file has an
/// address, or the desktop module is missing.
std::vector<ClipboardForm> FormsOfFiles(const CopiedFiles& files);

/// The local files in a list of addresses, in order; skips addresses of other kinds, of other hosts and malformed ones.
/// The paths are written without "." and ".." and without a '/' at their end.
std::vector<std::string> PathsInUriList(const std::string& list);
/// The web addresses in a list of addresses, in order.
std::vector<WebAddress> WebAddressesInUriList(std::string_view list);
/// Nothing when the content is not of the form.
std::optional<CopiedFiles> ReadCopiedFiles(const std::string& content);
/// What the two browsers' forms hold: lines of UTF-8 that are in turn an address and its title. Lines that are no
/// addresses of the web are passed over.
std::vector<WebAddress> ReadTitledAddresses(std::string_view lines);
/// kMozillaUrl's content as UTF-8, which some programs write it in.
std::string Utf8OfMozillaUrl(std::string_view content);

/// Keeps the first of those with the same text.
template <typename T, typename Text = std::identity>
void KeepEachOnce(std::vector<T>& all, Text text = {})
{
    std::unordered_set<std::string> seen;
    std::erase_if(all, [&](const T& one) { return !seen.insert(std::invoke(text, one)).second; });
}

} // namespace platform
