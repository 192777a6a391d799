// Start-up notification messages, and the GAppLaunchContext that sends them.
#include "platform/desktop/startup_notice.h"

#include "platform/base/product.h"

#include <gio/gdesktopappinfo.h>
#include <xcb/xcb.h>

#include <atomic>
#include <cstring>
#include <unistd.h>

namespace platform
{

namespace
{

constexpr char kStartupId[] = "DESKTOP_STARTUP_ID";
constexpr char kActivationToken[] = "XDG_ACTIVATION_TOKEN";

/// A short connection of its own: the program's own one belongs to its thread and its event loop.
class NoticeConnection
{
public:
    NoticeConnection() : m_connection(xcb_connect(nullptr, &m_screenNumber))
    {
        if (!Usable())
            return;
        xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(m_connection));
        for (int i = 0; i < m_screenNumber && screens.rem > 1; ++i)
            xcb_screen_next(&screens);
        m_root = screens.data->root;
        m_window = xcb_generate_id(m_connection);
        const std::uint32_t values[] = {1, XCB_EVENT_MASK_PROPERTY_CHANGE};
        xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, m_window, m_root, -100, -100, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT,
                          XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
    }
    ~NoticeConnection() { xcb_disconnect(m_connection); }
    NoticeConnection(const NoticeConnection&) = delete;
    NoticeConnection& operator=(const NoticeConnection&) = delete;

    bool Usable() const { return xcb_connection_has_error(m_connection) == 0; }
    int ScreenNumber() const { return m_screenNumber; }

    /// The server's time, learnt from the event that a change of a property brings.
    std::uint32_t ServerTime()
    {
        xcb_change_property(m_connection, XCB_PROP_MODE_APPEND, m_window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, 0, "");
        xcb_flush(m_connection);
        std::uint32_t time = 0;
        while (xcb_generic_event_t* event = time == 0 ? xcb_wait_for_event(m_connection) : nullptr)
        {
            if ((event->response_type & 0x7F) == XCB_PROPERTY_NOTIFY)
                time = reinterpret_cast<xcb_property_notify_event_t*>(event)->time;
            std::free(event);
        }
        return time;
    }

    /// Broadcasts a message, its terminating zero included, in pieces of 20 bytes.
    void Broadcast(const std::string& message)
    {
        const xcb_atom_t begin = Atom("_NET_STARTUP_INFO_BEGIN");
        const xcb_atom_t rest = Atom("_NET_STARTUP_INFO");
        for (std::size_t offset = 0; offset <= message.size(); offset += 20)
        {
            xcb_client_message_event_t event = {};
            event.response_type = XCB_CLIENT_MESSAGE;
            event.format = 8;
            event.window = m_window;
            event.type = offset == 0 ? begin : rest;
            std::memcpy(event.data.data8, message.data() + offset, std::min<std::size_t>(20, message.size() - offset));
            xcb_send_event(m_connection, 0, m_root, XCB_EVENT_MASK_PROPERTY_CHANGE,
                           reinterpret_cast<const char*>(&event));
        }
        Atom("WM_NAME"); // its reply says that the server has had everything before
    }

private:
    xcb_atom_t Atom(std::string_view name)
    {
        const auto cookie = xcb_intern_atom(m_connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
        xcb_intern_atom_reply_t* reply = xcb_intern_atom_reply(m_connection, cookie, nullptr);
        const xcb_atom_t atom = reply != nullptr ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
        std::free(reply);
        return atom;
    }

    int m_screenNumber = 0;
    xcb_connection_t* m_connection;
    xcb_window_t m_root = 0;
    xcb_window_t m_window = 0;
};

/// ` KEY="value"` with the protocol's escapes.
std::string Field(const char* key, const char* value)
{
    std::string field = std::string(" ") + key + "=\"";
    for (; value != nullptr && *value != '\0'; ++value)
        field.append(*value == '"' || *value == '\\' ? "\\" : "").append(1, *value);
    return field + "\"";
}

std::string MakeId(const char* name, std::uint32_t time)
{
    static std::atomic<int> sequence = 0; // an activation over D-Bus is announced on a thread of its own
    const char* base = std::strrchr(name, '/') != nullptr ? std::strrchr(name, '/') + 1 : name;
    const GTextOwner plain(g_uri_escape_string(base, nullptr, FALSE));
    return ORB_PRODUCT "-" + std::to_string(getpid()) + "-" + g_get_host_name() + "-" + plain.get() + "-" +
           std::to_string(sequence++) + "_TIME" + std::to_string(time);
}

struct LaunchContext
{
    GAppLaunchContext parent;
};
struct LaunchContextClass
{
    GAppLaunchContextClass parent;
};

char* DisplayOfContext(GAppLaunchContext*, GAppInfo*, GList*)
{
    return g_strdup(g_getenv("DISPLAY"));
}

char* IdOfContext(GAppLaunchContext* context, GAppInfo*, GList*)
{
    return g_strdup(static_cast<const char*>(g_object_get_data(G_OBJECT(context), kStartupId)));
}

void InitLaunchContextClass(gpointer classPointer, gpointer)
{
    auto* contextClass = static_cast<GAppLaunchContextClass*>(classPointer);
    contextClass->get_display = DisplayOfContext;
    contextClass->get_startup_notify_id = IdOfContext;
}

GType LaunchContextType()
{
    static const GType type =
        g_type_register_static_simple(G_TYPE_APP_LAUNCH_CONTEXT, "OrbLaunchContext", sizeof(LaunchContextClass),
                                      InitLaunchContextClass, sizeof(LaunchContext), nullptr, GTypeFlags(0));
    return type;
}

} // namespace

GObjectOwner<GAppLaunchContext> MakeLaunchContext(const std::string& id)
{
    GObjectOwner<GAppLaunchContext> context(G_APP_LAUNCH_CONTEXT(g_object_new(LaunchContextType(), nullptr)));
    g_app_launch_context_unsetenv(context.get(), kStartupId);
    g_app_launch_context_unsetenv(context.get(), kActivationToken);
    if (!id.empty())
    {
        g_object_set_data_full(G_OBJECT(context.get()), kStartupId, g_strdup(id.c_str()), g_free);
        g_app_launch_context_setenv(context.get(), kActivationToken, id.c_str()); // GIO sets the other one itself
    }
    return context;
}

std::string AnnounceStart(const char* name, const char* icon, const char* program)
{
    NoticeConnection connection;
    if (!connection.Usable())
        return {};
    const char* shownName = name != nullptr ? name : "";
    const std::string id = MakeId(program != nullptr ? program : shownName, connection.ServerTime());
    connection.Broadcast("new:" + Field("ID", id.c_str()) + Field("NAME", shownName) +
                         Field("SCREEN", std::to_string(connection.ScreenNumber()).c_str()) +
                         (program != nullptr ? Field("BIN", program) : "") +
                         (icon != nullptr ? Field("ICON", icon) : ""));
    return id;
}

void RetractStart(const std::string& id)
{
    if (id.empty())
        return;
    NoticeConnection connection;
    if (connection.Usable())
        connection.Broadcast("remove:" + Field("ID", id.c_str()));
}

} // namespace platform
