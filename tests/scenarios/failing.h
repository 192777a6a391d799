// Calls of the platform that fail while a story asks for it.
#pragma once

#include "platform/base/fault_points.h"

#include <string>
#include <string_view>

/// Fails calls of one name while it lives: after `spared` of them as many as asked for.
class Failing
{
public:
    explicit Failing(std::string_view call, int times = 1 << 30, int spared = 0)
    {
        s_call = call;
        s_left = times;
        s_spared = spared;
        platform::SetFaultHook([](const char* asked) { return asked == s_call && s_spared-- <= 0 && s_left-- > 0; });
    }
    ~Failing() { platform::SetFaultHook(nullptr); }
    Failing(const Failing&) = delete;
    Failing& operator=(const Failing&) = delete;

private:
    static inline std::string_view s_call;
    static inline int s_left = 0;
    static inline int s_spared = 0;
};

enum class FaultMode
{
    Once,       ///< the n-th call fails
    FromThenOn, ///< the n-th and every later one, as when something has run out
};

/// Fails calls by their number, from 1, while it lives.
class Faults
{
public:
    Faults(int nth, FaultMode mode)
    {
        s_calls = 0;
        s_nth = nth;
        s_mode = mode;
        s_failed.clear();
        platform::SetFaultHook(Hook);
    }
    ~Faults() { platform::SetFaultHook(nullptr); }
    Faults(const Faults&) = delete;
    Faults& operator=(const Faults&) = delete;

    /// False when the step made fewer calls.
    static bool Reached() { return s_calls >= s_nth; }
    static int Calls() { return s_calls; }
    static const std::string& Failed() { return s_failed; }

private:
    static bool Hook(const char* call)
    {
        const std::string_view name(call);
        // A window that can never be painted asks for it for ever, on every platform. Posting is relied on: the queue
        // takes every message.
        const bool spared = name == "PostMessageW" || (s_mode == FaultMode::FromThenOn && name == "BeginPaint");
        if (spared || ++s_calls < s_nth || (s_mode == FaultMode::Once && s_calls > s_nth))
            return false;
        if (s_failed.empty())
            s_failed = call;
        return true;
    }

    static inline int s_calls = 0;
    static inline int s_nth = 0;
    static inline FaultMode s_mode = FaultMode::Once;
    static inline std::string s_failed;
};
