// The desktop's file manager, chooser of programs and file picker.
#include "platform/services/peer_service.h"

#include "platform/base/unique_fd.h"
#include "platform/desktop/bus_talk.h"
#include "platform/desktop/file_picker.h"

#include <gio/gunixfdlist.h>

#include <fcntl.h>
#include <string>

namespace platform
{

namespace
{

constexpr char kPortal[] = "org.freedesktop.portal.Desktop";

bool AskFileManager(const char* method, const char* path)
{
    const GTextOwner uri(g_filename_to_uri(path, nullptr, nullptr));
    if (uri == nullptr)
        return false;
    const char* uris[] = {uri.get(), nullptr};
    return BusTalk().Call("org.freedesktop.FileManager1", "/org/freedesktop/FileManager1", method,
                          g_variant_new("(^ass)", uris, "")) != nullptr;
}

bool ShowInFolder(const char* path)
{
    return AskFileManager("org.freedesktop.FileManager1.ShowItems", path);
}

bool ShowProperties(const char* path)
{
    return AskFileManager("org.freedesktop.FileManager1.ShowItemProperties", path);
}

GVariantOwner AskBus(BusTalk& talk, const char* method, GVariant* arguments)
{
    const std::string whole = std::string("org.freedesktop.DBus.") + method;
    return talk.Call("org.freedesktop.DBus", "/org/freedesktop/DBus", whole.c_str(), arguments);
}

/// Whether the portal runs, or would be started.
bool HasProgramChooser()
{
    BusTalk talk;
    gboolean owned = FALSE;
    const GVariantOwner owner = AskBus(talk, "NameHasOwner", g_variant_new("(s)", kPortal));
    if (owner != nullptr && g_variant_is_of_type(owner.get(), G_VARIANT_TYPE("(b)")))
        g_variant_get(owner.get(), "(b)", &owned);
    if (owned)
        return true;
    const GVariantOwner reply = AskBus(talk, "ListActivatableNames", nullptr);
    if (reply == nullptr || !g_variant_is_of_type(reply.get(), G_VARIANT_TYPE("(as)")))
        return false;
    char** names = nullptr;
    g_variant_get(reply.get(), "(^as)", &names);
    const GStrvOwner namesOwner(names);
    return g_strv_contains(names, kPortal) != FALSE;
}

bool ChooseProgram(const char* path, std::uint32_t parent)
{
    const UniqueFd file(open(path, O_PATH | O_CLOEXEC));
    const GObjectOwner<GUnixFDList> descriptors(g_unix_fd_list_new());
    const int index = file ? g_unix_fd_list_append(descriptors.get(), file.Get(), nullptr) : -1;
    if (index < 0)
        return false;
    GVariantBuilder options;
    g_variant_builder_init(&options, G_VARIANT_TYPE_VARDICT);
    g_variant_builder_add(&options, "{sv}", "ask", g_variant_new_boolean(TRUE));
    return BusTalk().Call(kPortal, "/org/freedesktop/portal/desktop", "org.freedesktop.portal.OpenURI.OpenFile",
                          g_variant_new("(sh@a{sv})", ParentOf(parent).c_str(), index, g_variant_builder_end(&options)),
                          descriptors.get()) != nullptr;
}

PickResult Pick(const PickRequest& request, char* path, std::size_t capacity)
{
    Picked picked = PickByPortal(request);
    if (picked.result == PickResult::Unavailable)
        picked = PickByProgram(request);
    if (picked.result == PickResult::Picked && g_strlcpy(path, picked.path.c_str(), capacity) >= capacity)
        return PickResult::Failed;
    return picked.result;
}

} // namespace

} // namespace platform

extern "C" __attribute__((visibility("default")))
const platform::PeerService orb_peer_service = {platform::ShowInFolder, platform::ShowProperties,
                                                platform::HasProgramChooser, platform::ChooseProgram, platform::Pick};
