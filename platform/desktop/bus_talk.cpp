// Calls over the session bus with a bounded wait.
#include "platform/desktop/bus_talk.h"

#include <gio/gunixfdlist.h>

#include <string_view>

namespace platform
{

void BusTalk::OnBus(GObject*, GAsyncResult* result, gpointer data)
{
    auto& answer = *static_cast<Answer*>(data);
    answer.bus.reset(g_bus_get_finish(result, nullptr));
    answer.isThere = true;
}

void BusTalk::OnReply(GObject* bus, GAsyncResult* result, gpointer data)
{
    auto& answer = *static_cast<Answer*>(data);
    answer.reply.reset(
        g_dbus_connection_call_with_unix_fd_list_finish(G_DBUS_CONNECTION(bus), nullptr, result, nullptr));
    answer.isThere = true;
}

BusTalk::BusTalk(std::function<bool()> givenUp) : m_givenUp(std::move(givenUp)), m_context(g_main_context_new())
{
    g_main_context_push_thread_default(m_context);
}

BusTalk::~BusTalk()
{
    m_bus.reset();
    while (g_main_context_iteration(m_context, FALSE))
    {
    }
    g_main_context_pop_thread_default(m_context);
    g_main_context_unref(m_context);
}

bool BusTalk::Wait(const std::function<bool()>& done, std::chrono::milliseconds limit)
{
    constexpr guint kLookAround = 50; // milliseconds
    const auto start = std::chrono::steady_clock::now();
    GSource* ticks = g_timeout_source_new(kLookAround);
    g_source_set_callback(
        ticks, [](gpointer) -> gboolean { return G_SOURCE_CONTINUE; }, nullptr, nullptr);
    g_source_attach(ticks, m_context);
    bool isDone = done();
    while (!isDone && !(m_givenUp && m_givenUp()) && std::chrono::steady_clock::now() - start < limit)
    {
        g_main_context_iteration(m_context, TRUE);
        isDone = done();
    }
    g_source_destroy(ticks);
    g_source_unref(ticks);
    return isDone;
}

GDBusConnection* BusTalk::Bus()
{
    if (m_bus != nullptr)
        return m_bus.get();
    Answer& answer = m_answers.emplace_back();
    g_bus_get(G_BUS_TYPE_SESSION, nullptr, OnBus, &answer);
    if (Wait([&] { return answer.isThere; }, kPatience))
        m_bus = std::move(answer.bus);
    if (m_bus != nullptr)
        g_dbus_connection_set_exit_on_close(m_bus.get(), FALSE);
    return m_bus.get();
}

GVariantOwner BusTalk::Call(const char* name, const char* path, const char* method, GVariant* arguments,
                            GUnixFDList* descriptors)
{
    const GVariantOwner owner(arguments != nullptr ? g_variant_ref_sink(arguments) : nullptr);
    if (Bus() == nullptr)
        return nullptr;
    const std::string_view whole = method;
    const std::size_t dot = whole.rfind('.');
    const std::string interface(whole.substr(0, dot));
    Answer& answer = m_answers.emplace_back();
    g_dbus_connection_call_with_unix_fd_list(Bus(), name, path, interface.c_str(), method + dot + 1, arguments, nullptr,
                                             G_DBUS_CALL_FLAGS_NONE, static_cast<int>(kPatience.count()), descriptors,
                                             nullptr, OnReply, &answer);
    Wait([&] { return answer.isThere; }, kPatience);
    return std::move(answer.reply);
}

} // namespace platform
