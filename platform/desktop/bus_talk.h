// Talking to other programs over the session bus from a thread that may wait, but not for ever.
#pragma once

#include "platform/desktop/glib_owner.h"

#include <chrono>
#include <deque>
#include <functional>
#include <string>

namespace platform
{

using GVariantOwner = std::unique_ptr<GVariant, GFree<g_variant_unref>>;

/// A main context of this thread's own for as long as it lives: what is begun meanwhile is answered while Wait runs.
class BusTalk
{
public:
    /// How long another program may take to answer, being started included.
    static constexpr std::chrono::milliseconds kPatience{5000};

    static constexpr std::chrono::milliseconds kForEver = std::chrono::hours(24 * 365); // what fits in nanoseconds

    /// `givenUp`, if there is one, is asked several times a second; true ends every waiting.
    explicit BusTalk(std::function<bool()> givenUp = {});
    ~BusTalk();
    BusTalk(const BusTalk&) = delete;
    BusTalk& operator=(const BusTalk&) = delete;

    /// Waits until `done`; false when it was not within the limit, or the waiting was given up.
    bool Wait(const std::function<bool()>& done, std::chrono::milliseconds limit = kForEver);
    /// The session bus; null when there is none or it does not answer in time.
    GDBusConnection* Bus();
    /// Whether there is a bus that does not answer. What GIO does over the session bus then waits for ever.
    bool BusIsStuck() { return Bus() == nullptr && !m_answers.back().isThere; }
    /// A method's reply; null on failure. Takes the arguments over when they are floating.
    GVariantOwner Call(const char* name, const char* path, const char* method, GVariant* arguments,
                       GUnixFDList* descriptors = nullptr);

private:
    /// The end of a call, which may come after the waiting was given up.
    struct Answer
    {
        bool isThere = false;
        GObjectOwner<GDBusConnection> bus{};
        GVariantOwner reply{};
    };
    static void OnBus(GObject* source, GAsyncResult* result, gpointer answer);
    static void OnReply(GObject* source, GAsyncResult* result, gpointer answer);

    std::function<bool()> m_givenUp;
    GMainContext* m_context;
    std::deque<Answer> m_answers; ///< of every call that was begun
    GObjectOwner<GDBusConnection> m_bus;
};

} // namespace platform
