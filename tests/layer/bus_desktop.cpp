// A desktop on the bus: a file manager and a portal that do as they are told, and write down what they were asked.
// Usage: bus_desktop REPORT BEHAVIOUR
// The file BEHAVIOUR is read at each call: "answer URI", "cancel", "die", "silent". A "late" file manager answers once
// the file says something else.
#include <gio/gio.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

namespace
{

constexpr char kInterfaces[] =
    "<node><interface name='org.freedesktop.FileManager1'>"
    "<method name='ShowItems'><arg type='as' direction='in'/><arg type='s' direction='in'/></method>"
    "<method name='ShowItemProperties'><arg type='as' direction='in'/><arg type='s' direction='in'/></method>"
    "</interface><interface name='org.freedesktop.portal.FileChooser'>"
    "<method name='OpenFile'><arg type='s' direction='in'/><arg type='s' direction='in'/>"
    "<arg type='a{sv}' direction='in'/><arg type='o' direction='out'/></method>"
    "</interface><interface name='org.freedesktop.portal.OpenURI'>"
    "<method name='OpenFile'><arg type='s' direction='in'/><arg type='h' direction='in'/>"
    "<arg type='a{sv}' direction='in'/><arg type='o' direction='out'/></method></interface></node>";

std::string g_report;
std::string g_behaviour;

std::string Behaviour()
{
    std::ifstream file(g_behaviour);
    std::string line;
    std::getline(file, line);
    return line;
}

void Report(const char* method, GVariant* arguments)
{
    char* text = g_variant_print(arguments, FALSE);
    std::ofstream(g_report + ".part") << method << " " << text << "\n";
    std::rename((g_report + ".part").c_str(), g_report.c_str());
    g_free(text);
}

void Respond(GDBusConnection* bus, const std::string& request, const std::string& behaviour)
{
    GVariantBuilder results;
    g_variant_builder_init(&results, G_VARIANT_TYPE_VARDICT);
    const bool answered = behaviour.starts_with("answer ");
    if (answered)
    {
        const std::string uri = behaviour.substr(7);
        const char* uris[] = {uri.c_str(), nullptr};
        g_variant_builder_add(&results, "{sv}", "uris", g_variant_new_strv(uris, -1));
    }
    g_dbus_connection_emit_signal(bus, nullptr, request.c_str(), "org.freedesktop.portal.Request", "Response",
                                  g_variant_new("(ua{sv})", answered ? 0u : 1u, &results), nullptr);
}

void OnCall(GDBusConnection* bus, const char* sender, const char*, const char* interface, const char* method,
            GVariant* arguments, GDBusMethodInvocation* invocation, gpointer)
{
    const std::string behaviour = Behaviour();
    Report(method, arguments);
    const bool portal = std::string(interface).find("portal") != std::string::npos;
    if (!portal)
    {
        while (Behaviour() == "late")
            g_poll(nullptr, 0, 2);
        if (behaviour != "silent")
            g_dbus_method_invocation_return_value(invocation, nullptr);
        return;
    }
    std::string request = "/org/freedesktop/portal/desktop/request/" + std::string(sender + 1);
    for (char& c : request)
        c = c == '.' ? '_' : c;
    GVariant* options = g_variant_get_child_value(arguments, 2);
    const char* token = "t";
    g_variant_lookup(options, "handle_token", "&s", &token);
    request += std::string("/") + token;
    g_dbus_method_invocation_return_value(invocation, g_variant_new("(o)", request.c_str()));
    g_dbus_connection_flush_sync(bus, nullptr, nullptr);
    if (behaviour == "die")
        std::_Exit(1);
    if (behaviour != "silent")
        Respond(bus, request, behaviour);
    g_variant_unref(options);
}

void OnBus(GDBusConnection* bus, const char*, gpointer)
{
    static const GDBusInterfaceVTable table = {OnCall, nullptr, nullptr, {}};
    GDBusNodeInfo* info = g_dbus_node_info_new_for_xml(kInterfaces, nullptr);
    const char* paths[] = {"/org/freedesktop/FileManager1", "/org/freedesktop/portal/desktop",
                           "/org/freedesktop/portal/desktop"};
    for (int i = 0; i < 3; ++i)
        g_dbus_connection_register_object(bus, paths[i], info->interfaces[i], &table, nullptr, nullptr, nullptr);
    g_dbus_node_info_unref(info);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 3)
        return 2;
    g_report = argv[1];
    g_behaviour = argv[2];
    g_bus_own_name(G_BUS_TYPE_SESSION, "org.freedesktop.FileManager1", G_BUS_NAME_OWNER_FLAGS_NONE, OnBus, nullptr,
                   nullptr, nullptr, nullptr);
    g_bus_own_name(G_BUS_TYPE_SESSION, "org.freedesktop.portal.Desktop", G_BUS_NAME_OWNER_FLAGS_NONE, nullptr, nullptr,
                   nullptr, nullptr, nullptr);
    g_main_loop_run(g_main_loop_new(nullptr, FALSE));
    return 0;
}
