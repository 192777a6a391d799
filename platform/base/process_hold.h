// The object by which work that outlives a call keeps the process alive (SHSetInstanceExplorer).
#pragma once

#include "shlobj.h"

#include <chrono>

namespace platform
{

/// Holds the process reference for as long as it lives, if the program has set one. May be released on any thread.
class ProcessHold
{
public:
    ProcessHold();
    /// Holds what `other` holds, also when the reference has been withdrawn meanwhile. `other` must live through it.
    ProcessHold(const ProcessHold& other);
    ~ProcessHold();
    ProcessHold& operator=(const ProcessHold&) = delete;

    /// For work that waits for others, who may never answer: such a hold is given up kLongestWait after the program
    /// has withdrawn its reference, which it does at its end.
    void Limit();

    static constexpr std::chrono::seconds kLongestWait{20}; ///< twice what any answer is waited for

private:
    friend void ::SHSetInstanceExplorer(IUnknown* reference);
    static void GiveUpLimited();

    IUnknown* m_reference; ///< when limited, guarded as their set is
};

} // namespace platform
