// What a person sees of one file of a folder.
#pragma once

#include <climits>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace platform
{

enum class ItemKind : std::uint8_t
{
    Folder = 1,
    File,         ///< a regular file
    Link,         ///< a symbolic link, whatever it leads to
    DesktopEntry, ///< a .desktop file, or a symbolic link named so to one
    Other,        ///< pipe, socket, device
    Category,     ///< a folder of the applications menu, which is no file
};

/// The longest display name kept, in UTF-16 units; longer ones are cut.
constexpr std::size_t kMaxDisplayUnits = 512;
/// The longest name that a system call takes. What most file systems allow is less.
constexpr std::size_t kMaxNameBytes = PATH_MAX - 1;

// An icon identity says how to find a picture: alternatives in order of preference, '\n' between, each an icon theme
// name, an absolute path, or one of the built-in pictures "!folder", "!document", "!program" that an identity ends
// with.
constexpr std::string_view kFolderIcon = "folder\n!folder";
constexpr std::string_view kDocumentIcon = "text-x-generic\n!document";
constexpr std::string_view kProgramIcon = "application-x-executable\n!program";
constexpr std::u16string_view kFolderTypeName = u"Folder";
constexpr std::u16string_view kProgramTypeName = u"Program";

/// One file; the views live as long as its listing.
struct ListedFile
{
    std::string_view name;
    ItemKind kind = ItemKind::File;
    bool hidden = false;
    bool described = false;  ///< icon, type and display name are the desktop's own, worth remembering
    std::uint64_t stamp = 0; ///< changes with everything that the description was made from
    std::u16string_view display;
    std::string_view icon; ///< icon identity
    std::u16string_view typeName;
};

} // namespace platform
