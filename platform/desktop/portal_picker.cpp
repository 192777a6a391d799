// The portal's file picker (org.freedesktop.portal.FileChooser): a request that is answered by a signal.
#include "platform/desktop/file_picker.h"

#include <algorithm>

namespace platform
{

namespace
{

constexpr char kPortal[] = "org.freedesktop.portal.Desktop";
constexpr char kPortalPath[] = "/org/freedesktop/portal/desktop";

struct Response
{
    bool isThere = false;
    bool portalLeft = false;
    guint32 code = 0; ///< 0 picked, 1 cancelled, 2 ended in another way
    std::string uri;
};

/// Tells the response to a request, and the portal's leaving, as long as it lives.
class ResponseWatch
{
public:
    ResponseWatch(GDBusConnection* bus, Response& response) : m_bus(bus), m_response(response)
    {
        m_owner =
            g_dbus_connection_signal_subscribe(bus, "org.freedesktop.DBus", "org.freedesktop.DBus", "NameOwnerChanged",
                                               nullptr, kPortal, G_DBUS_SIGNAL_FLAGS_NONE, OnOwner, &response, nullptr);
    }
    ~ResponseWatch()
    {
        g_dbus_connection_signal_unsubscribe(m_bus, m_owner);
        Stop();
    }
    ResponseWatch(const ResponseWatch&) = delete;
    ResponseWatch& operator=(const ResponseWatch&) = delete;

    void Follow(const std::string& request)
    {
        if (request == m_request)
            return;
        Stop();
        m_request = request;
        m_signal = g_dbus_connection_signal_subscribe(m_bus, kPortal, "org.freedesktop.portal.Request", "Response",
                                                      request.c_str(), nullptr, G_DBUS_SIGNAL_FLAGS_NONE, OnResponse,
                                                      &m_response, nullptr);
    }

private:
    void Stop() const
    {
        if (m_signal != 0)
            g_dbus_connection_signal_unsubscribe(m_bus, m_signal);
    }

    static void OnOwner(GDBusConnection*, const char*, const char*, const char*, const char*, GVariant* arguments,
                        gpointer data)
    {
        const char* owner = nullptr;
        g_variant_get(arguments, "(&s&s&s)", nullptr, nullptr, &owner);
        if (*owner == '\0')
            static_cast<Response*>(data)->portalLeft = true;
    }

    static void OnResponse(GDBusConnection*, const char*, const char*, const char*, const char*, GVariant* arguments,
                           gpointer data)
    {
        auto& response = *static_cast<Response*>(data);
        if (!g_variant_is_of_type(arguments, G_VARIANT_TYPE("(ua{sv})")))
            return;
        GVariant* results = nullptr;
        g_variant_get(arguments, "(u@a{sv})", &response.code, &results);
        const GVariantOwner owner(results);
        const GVariantOwner uris(g_variant_lookup_value(results, "uris", G_VARIANT_TYPE_STRING_ARRAY));
        const char* uri = nullptr;
        if (uris != nullptr && g_variant_n_children(uris.get()) > 0)
            g_variant_get_child(uris.get(), 0, "&s", &uri);
        response.uri = uri != nullptr ? uri : "";
        response.isThere = true;
    }

    GDBusConnection* m_bus;
    Response& m_response;
    guint m_owner = 0;
    guint m_signal = 0;
    std::string m_request;
};

GVariant* Options(const PickRequest& request, const std::string& token)
{
    GVariantBuilder options;
    g_variant_builder_init(&options, G_VARIANT_TYPE_VARDICT);
    const auto add = [&](const char* key, GVariant* value) { g_variant_builder_add(&options, "{sv}", key, value); };
    add("handle_token", g_variant_new_string(token.c_str()));
    add("modal", g_variant_new_boolean(TRUE));
    add("multiple", g_variant_new_boolean(FALSE));
    add("directory", g_variant_new_boolean(request.pickFolder));
    if (*request.okLabel != '\0')
        add("accept_label", g_variant_new_string(request.okLabel));
    if (*request.folder != '\0')
        add("current_folder", g_variant_new_bytestring(request.folder));
    return g_variant_builder_end(&options);
}

/// Where a request of that token is to be found, by which its response can be waited for before it is made.
std::string RequestPath(GDBusConnection* bus, const std::string& token)
{
    const char* unique = g_dbus_connection_get_unique_name(bus);
    std::string sender = unique != nullptr ? unique + 1 : "";
    std::replace(sender.begin(), sender.end(), '.', '_');
    return std::string(kPortalPath) + "/request/" + sender + "/" + token;
}

Picked Outcome(const Response& response)
{
    if (response.code != 0)
        return {response.code == 1 ? PickResult::Cancelled : PickResult::Failed, {}};
    char* host = nullptr;
    const GTextOwner path(g_filename_from_uri(response.uri.c_str(), &host, nullptr));
    const GTextOwner hostOwner(host);
    const bool isLocal = path != nullptr && (host == nullptr || *host == '\0');
    return isLocal ? Picked{PickResult::Picked, path.get()} : Picked{PickResult::Failed, {}};
}

} // namespace

std::string ParentOf(std::uint32_t window)
{
    char text[16] = "";
    if (window != 0)
        g_snprintf(text, sizeof text, "x11:%x", window);
    return text;
}

Picked PickByPortal(const PickRequest& request)
{
    bool givenUp = false;
    BusTalk talk([&] { return givenUp = givenUp || request.givenUp(request.context); });
    GDBusConnection* bus = talk.Bus();
    const PickResult none = givenUp ? PickResult::Cancelled : PickResult::Unavailable;
    if (bus == nullptr)
        return {none, {}};
    const std::string token = "orb_launcher_" + std::to_string(g_random_int());
    Response response;
    ResponseWatch watch(bus, response);
    watch.Follow(RequestPath(bus, token));
    const GVariantOwner reply = talk.Call(
        kPortal, kPortalPath, "org.freedesktop.portal.FileChooser.OpenFile",
        g_variant_new("(ss@a{sv})", ParentOf(request.parent).c_str(), request.title, Options(request, token)));
    if (reply == nullptr || !g_variant_is_of_type(reply.get(), G_VARIANT_TYPE("(o)")))
        return {givenUp ? PickResult::Cancelled : PickResult::Unavailable, {}};
    const char* handle = nullptr;
    g_variant_get(reply.get(), "(&o)", &handle);
    watch.Follow(handle);
    if (!talk.Wait([&] { return response.isThere || response.portalLeft; }))
    {
        g_dbus_connection_call(bus, kPortal, handle, "org.freedesktop.portal.Request", "Close", nullptr, nullptr,
                               G_DBUS_CALL_FLAGS_NO_AUTO_START, -1, nullptr, nullptr, nullptr);
        return {PickResult::Cancelled, {}};
    }
    return response.isThere ? Outcome(response) : Picked{PickResult::Failed, {}};
}

} // namespace platform
