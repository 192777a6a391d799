// Content types, by GIO.
#include "platform/desktop/content_type.h"

#include "platform/desktop/glib_owner.h"

namespace platform
{

std::string ContentTypeOf(const std::string& path, const struct stat& status)
{
    if (S_ISDIR(status.st_mode))
        return "inode/directory";
    const GObjectOwner<GFile> file(g_vfs_get_file_for_path(g_vfs_get_local(), path.c_str()));
    const GObjectOwner<GFileInfo> info(g_file_query_info(file.get(), G_FILE_ATTRIBUTE_STANDARD_CONTENT_TYPE,
                                                         G_FILE_QUERY_INFO_NONE, nullptr, nullptr));
    const char* type = info != nullptr ? g_file_info_get_content_type(info.get()) : nullptr;
    return type != nullptr ? type : "application/octet-stream";
}

} // namespace platform
