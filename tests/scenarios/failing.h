// Calls of the platform that fail while a story asks for it.
#pragma once

#include "platform/base/fault_points.h"

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
