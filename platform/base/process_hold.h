// The object by which work that outlives a call keeps the process alive (SHSetInstanceExplorer).
#pragma once

#include "shlobj.h"

namespace platform
{

/// Holds the process reference for as long as it lives, if the program has set one. May be released on any thread.
class ProcessHold
{
public:
    ProcessHold();
    ~ProcessHold();
    ProcessHold(const ProcessHold&) = delete;
    ProcessHold& operator=(const ProcessHold&) = delete;

private:
    IUnknown* m_reference;
};

} // namespace platform
