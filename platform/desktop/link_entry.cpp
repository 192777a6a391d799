// Desktop entries of the type Link.
#include "platform/desktop/link_entry.h"

#include "platform/base/text.h"
#include "platform/base/unique_fd.h"
#include "platform/desktop/desktop_entry.h"
#include "platform/desktop/file_transfer.h"

#include <gio/gdesktopappinfo.h>

#include <cerrno>
#include <fcntl.h>
#include <string>
#include <string_view>
#include <unistd.h>

namespace platform
{

namespace
{

constexpr char kGroup[] = G_KEY_FILE_DESKTOP_GROUP;
/// Of the name before its ending, in bytes: leaves room for a number, also where names are encrypted (143 bytes).
constexpr std::size_t kLongestName = 120;
constexpr std::size_t kLongestTitle = 500;

/// One line of text with single blanks.
std::string PlainTitle(const char* title)
{
    const GTextOwner valid(g_utf8_make_valid(title, -1));
    std::string plain;
    for (const char* c = valid.get(); *c != '\0'; c = g_utf8_next_char(c))
    {
        const gunichar character = g_utf8_get_char(c);
        const bool blank = g_unichar_isspace(character) || g_unichar_iscntrl(character);
        if (!blank)
            plain.append(c, static_cast<std::size_t>(g_utf8_next_char(c) - c));
        else if (!plain.empty() && !plain.ends_with(' '))
            plain += ' ';
    }
    while (plain.ends_with(' '))
        plain.pop_back();
    return std::string(Cut(plain, kLongestTitle));
}

/// A title as a file's name, which neither hides the file nor leads out of the folder.
std::string FileNameOf(std::string_view title)
{
    std::string name(title);
    for (char& c : name)
        c = c == '/' || c == '\\' ? '-' : c;
    name.erase(0, name.find_first_not_of(". "));
    name = Cut(name, kLongestName);
    while (name.ends_with(' ') || name.ends_with('.'))
        name.pop_back();
    return (name.empty() ? "Link" : name) + ".desktop";
}

/// The icon of the program that opens addresses of the scheme.
std::string IconFor(const char* url)
{
    const GTextOwner scheme(g_uri_parse_scheme(url));
    const GObjectOwner<GAppInfo> program(scheme != nullptr ? g_app_info_get_default_for_uri_scheme(scheme.get())
                                                           : nullptr);
    std::string icon;
    if (program != nullptr && G_IS_DESKTOP_APP_INFO(program.get()))
    {
        const GTextOwner name(
            g_desktop_app_info_get_string(G_DESKTOP_APP_INFO(program.get()), G_KEY_FILE_DESKTOP_KEY_ICON));
        icon = CleanIconName(name != nullptr ? name.get() : "");
    }
    return icon.empty() ? "web-browser" : icon;
}

std::string EntryFor(const char* url, const std::string& title)
{
    const GKeyFileOwner entry(g_key_file_new());
    g_key_file_set_string(entry.get(), kGroup, G_KEY_FILE_DESKTOP_KEY_TYPE, G_KEY_FILE_DESKTOP_TYPE_LINK);
    g_key_file_set_string(entry.get(), kGroup, G_KEY_FILE_DESKTOP_KEY_NAME, title.c_str());
    g_key_file_set_string(entry.get(), kGroup, G_KEY_FILE_DESKTOP_KEY_URL, url);
    g_key_file_set_string(entry.get(), kGroup, G_KEY_FILE_DESKTOP_KEY_ICON, IconFor(url).c_str());
    const GTextOwner content(g_key_file_to_data(entry.get(), nullptr, nullptr));
    return content.get();
}

/// A file of a hidden name; "" with errno set when it cannot be written.
std::string WriteHidden(const OpenFolder& folder, std::string_view content)
{
    const std::string name = ".orb-launcher-" + std::to_string(getpid()) + "-" + std::to_string(g_random_int());
    UniqueFd file(openat(folder.fd.Get(), name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
    if (!file)
        return "";
    if (WriteAll(file.Get(), content) && fsync(file.Get()) == 0 && file.Close())
        return name;
    const int error = errno;
    unlinkat(folder.fd.Get(), name.c_str(), 0);
    errno = error;
    return "";
}

} // namespace

int MakeLinkEntry(const char* folderPath, const char* url, const char* titleText)
{
    OpenFolder folder;
    if (const int error = folder.Open(std::string(folderPath)))
        return error;
    const std::string title = PlainTitle(titleText);
    const std::string hidden = WriteHidden(folder, EntryFor(url, title.empty() ? url : title));
    if (hidden.empty())
        return errno;
    const std::string wanted = FileNameOf(title);
    std::string name = wanted;
    int error = EEXIST;
    while ((error = RenameToFree(folder.At(hidden), folder.At(name))) == EEXIST)
        name = FreeName(folder, wanted, false, "");
    if (error != 0)
        unlinkat(folder.fd.Get(), hidden.c_str(), 0);
    return error;
}

} // namespace platform
