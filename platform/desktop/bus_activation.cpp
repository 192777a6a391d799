// Activation over D-Bus.
#include "platform/desktop/bus_activation.h"

#include "platform/desktop/bus_talk.h"

#include <algorithm>

namespace platform
{

namespace
{

/// How long to wait for the application's answer before taking it for slow, in milliseconds.
constexpr int kAnswerTimeout = 5000;

std::string BusNameOf(const std::string& entryPath)
{
    std::string name = entryPath.substr(entryPath.rfind('/') + 1);
    const std::size_t suffix = name.rfind(".desktop");
    return name.substr(0, suffix);
}

/// The object path that the desktop entry rules derive from the name.
std::string ObjectPathOf(const std::string& busName)
{
    std::string path = "/" + busName;
    std::replace(path.begin(), path.end(), '.', '/');
    std::replace(path.begin(), path.end(), '-', '_');
    return path;
}

GVariant* PlatformData(const BusRequest& request)
{
    GVariantBuilder builder;
    g_variant_builder_init(&builder, G_VARIANT_TYPE_VARDICT);
    if (!request.startupId.empty())
        for (const char* key : {"desktop-startup-id", "activation-token"})
            g_variant_builder_add(&builder, "{sv}", key, g_variant_new_string(request.startupId.c_str()));
    return g_variant_builder_end(&builder);
}

const char* MethodOf(const BusRequest& request)
{
    return !request.action.empty() ? "ActivateAction" : request.uris.empty() ? "Activate" : "Open";
}

GVariant* Arguments(const BusRequest& request)
{
    if (!request.action.empty())
        return g_variant_new("(s@av@a{sv})", request.action.c_str(),
                             g_variant_new_array(G_VARIANT_TYPE_VARIANT, nullptr, 0), PlatformData(request));
    if (request.uris.empty())
        return g_variant_new("(@a{sv})", PlatformData(request));
    GVariantBuilder uris;
    g_variant_builder_init(&uris, G_VARIANT_TYPE_STRING_ARRAY);
    for (const std::string& uri : request.uris)
        g_variant_builder_add(&uris, "s", uri.c_str());
    return g_variant_new("(@as@a{sv})", g_variant_builder_end(&uris), PlatformData(request));
}

} // namespace

bool ActivateOverBus(const BusRequest& request)
{
    const std::string name = BusNameOf(request.entryPath);
    const std::string path = ObjectPathOf(name);
    if (!g_dbus_is_name(name.c_str()) || !g_variant_is_object_path(path.c_str()))
        return false;
    BusTalk talk;
    GDBusConnection* bus = talk.Bus();
    if (bus == nullptr)
        return false;
    GError* error = nullptr;
    const GVariantOwner reply(g_dbus_connection_call_sync(
        bus, name.c_str(), path.c_str(), "org.freedesktop.Application", MethodOf(request), Arguments(request), nullptr,
        G_DBUS_CALL_FLAGS_NONE, kAnswerTimeout, nullptr, &error));
    const GErrorOwner owner(error);
    return reply != nullptr || g_error_matches(error, G_IO_ERROR, G_IO_ERROR_TIMED_OUT) != FALSE ||
           g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_NO_REPLY) != FALSE;
}

} // namespace platform
