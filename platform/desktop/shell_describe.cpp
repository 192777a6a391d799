// What files are to the desktop, by GIO and GKeyFile.
#include "platform/services/describe_service.h"

#include "platform/desktop/desktop_entry.h"
#include "platform/desktop/glib_owner.h"

#include <climits>
#include <cstdlib>
#include <string>
#include <string_view>
#include <sys/stat.h>

namespace platform
{

namespace
{

/// FileFacts with its memory.
struct Facts
{
    std::string displayName;
    std::string icons;
    std::string typeName;
    bool hidden = false;
};

std::string TakeText(char* text)
{
    const GTextOwner owner(text);
    return text != nullptr ? text : "";
}

Facts DescribeDesktopEntry(const std::string& path)
{
    Facts facts;
    facts.typeName = TakeText(g_content_type_get_description("application/x-desktop"));
    const GKeyFileOwner entry = LoadDesktopEntry(path.c_str());
    if (entry != nullptr)
    {
        facts.displayName = LocalisedEntryText(entry.get(), G_KEY_FILE_DESKTOP_KEY_NAME);
        facts.icons = CleanIconName(LocalisedEntryText(entry.get(), G_KEY_FILE_DESKTOP_KEY_ICON));
        facts.hidden = !EntryIsShown(entry.get());
    }
    return facts;
}

std::string IconNames(const char* contentType)
{
    const GObjectOwner<GIcon> icon(g_content_type_get_icon(contentType));
    std::string names;
    if (icon == nullptr || !G_IS_THEMED_ICON(icon.get()))
        return names;
    for (const char* const* name = g_themed_icon_get_names(G_THEMED_ICON(icon.get())); *name != nullptr; ++name)
    {
        names += names.empty() ? "" : "\n";
        names += *name;
    }
    return names;
}

/// A regular file by its name and mode.
std::string ContentTypeOf(std::string_view path, std::uint32_t mode)
{
    const std::string name(path.substr(path.rfind('/') + 1));
    const GTextOwner text(g_filename_display_name(name.c_str()));
    std::string type = TakeText(g_content_type_guess(text.get(), nullptr, 0, nullptr));
    const bool executable = (mode & 0111) != 0;
    return executable && g_content_type_is_unknown(type.c_str()) ? "application/x-executable" : type;
}

const char* SpecialType(std::uint32_t mode)
{
    switch (mode & S_IFMT)
    {
    case S_IFDIR:
        return "inode/directory";
    case S_IFIFO:
        return "inode/fifo";
    case S_IFSOCK:
        return "inode/socket";
    case S_IFCHR:
        return "inode/chardevice";
    case S_IFBLK:
        return "inode/blockdevice";
    }
    return "inode/symlink"; // leads nowhere
}

Facts DescribeOrdinary(const std::string& path, std::uint32_t mode)
{
    Facts facts;
    char target[PATH_MAX];
    const std::string real = realpath(path.c_str(), target) != nullptr ? target : path;
    if (S_ISREG(mode) && real.ends_with(".desktop"))
        facts.icons = DescribeDesktopEntry(real).icons; // a link of another name to a desktop entry
    const std::string type = S_ISREG(mode) ? ContentTypeOf(real, mode) : SpecialType(mode);
    const std::string generic = IconNames(type.c_str());
    facts.icons += facts.icons.empty() || generic.empty() ? "" : "\n";
    facts.icons += generic;
    struct stat status;
    const bool link = lstat(path.c_str(), &status) == 0 && S_ISLNK(status.st_mode);
    facts.typeName = TakeText(g_content_type_get_description(link ? "inode/symlink" : type.c_str()));
    return facts;
}

void Describe(const char* folder, const DescribeRequest* requests, std::size_t count,
              void (*receive)(void* context, std::size_t index, const FileFacts& facts), void* context)
{
    for (std::size_t i = 0; i < count; ++i)
    {
        const std::string path = std::string(folder) + "/" + requests[i].name;
        const Facts facts =
            requests[i].desktopEntry ? DescribeDesktopEntry(path) : DescribeOrdinary(path, requests[i].mode);
        const char* name = facts.displayName.empty() ? nullptr : facts.displayName.c_str();
        receive(context, i, {name, facts.icons.c_str(), facts.typeName.c_str(), facts.hidden});
    }
}

} // namespace

} // namespace platform

extern "C" __attribute__((visibility("default")))
const platform::DescribeService orb_describe_service = {platform::Describe};
