// Fault points: named places at which a test can make a platform call fail.
//
// Every API function that can fail asks its fault point first and, if told to, fails as it would for lack of resources.
#pragma once

namespace platform
{

using FaultHook = bool (*)(const char* call);
extern FaultHook g_faultHook;

/// Installs a hook that is asked at every fault point; null removes it.
inline void SetFaultHook(FaultHook hook)
{
    g_faultHook = hook;
}

/// True when the call named must fail now.
inline bool FaultPoint(const char* call)
{
    return g_faultHook != nullptr && g_faultHook(call);
}

} // namespace platform
