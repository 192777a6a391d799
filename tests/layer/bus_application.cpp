// An application that the bus starts: writes down how it was asked, and ends.
// Usage: bus_application BUS-NAME REPORT [GO]
// With GO it refuses, and only once a file of that name is there.
#include <gio/gio.h>

#include <cstdio>
#include <fstream>
#include <string>

namespace
{

constexpr char kInterfaces[] = "<node><interface name='org.freedesktop.Application'>"
                               "<method name='Activate'><arg type='a{sv}' direction='in'/></method>"
                               "<method name='Open'><arg type='as' direction='in'/><arg type='a{sv}' direction='in'/>"
                               "</method></interface></node>";

GMainLoop* g_loop;
std::string g_report;
std::string g_go;

void OnCall(GDBusConnection* bus, const char*, const char* path, const char*, const char* method, GVariant* arguments,
            GDBusMethodInvocation* invocation, gpointer)
{
    char* text = g_variant_print(arguments, FALSE);
    std::ofstream(g_report + ".part") << method << " " << path << " " << text << "\n";
    std::rename((g_report + ".part").c_str(), g_report.c_str());
    g_free(text);
    while (!g_go.empty() && !g_file_test(g_go.c_str(), G_FILE_TEST_EXISTS))
        g_poll(nullptr, 0, 2);
    if (g_go.empty())
        g_dbus_method_invocation_return_value(invocation, nullptr);
    else
        g_dbus_method_invocation_return_dbus_error(invocation, "org.example.Error", "It will not.");
    g_dbus_connection_flush_sync(bus, nullptr, nullptr);
    g_main_loop_quit(g_loop);
}

void OnBus(GDBusConnection* bus, const char* name, gpointer)
{
    static const GDBusInterfaceVTable table = {OnCall, nullptr, nullptr, {}};
    std::string path = std::string("/") + name;
    for (char& c : path)
        c = c == '.' ? '/' : c == '-' ? '_' : c;
    GDBusNodeInfo* info = g_dbus_node_info_new_for_xml(kInterfaces, nullptr);
    g_dbus_connection_register_object(bus, path.c_str(), info->interfaces[0], &table, nullptr, nullptr, nullptr);
    g_dbus_node_info_unref(info);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 3)
        return 2;
    g_report = argv[2];
    g_go = argc > 3 ? argv[3] : "";
    g_loop = g_main_loop_new(nullptr, FALSE);
    g_bus_own_name(G_BUS_TYPE_SESSION, argv[1], G_BUS_NAME_OWNER_FLAGS_NONE, OnBus, nullptr, nullptr, nullptr, nullptr);
    g_main_loop_run(g_loop);
    return 0;
}
