// GUIDs.
#pragma once

#include "windef.h"

#include <cstring>

struct GUID
{
    std::uint32_t Data1;
    std::uint16_t Data2;
    std::uint16_t Data3;
    std::uint8_t Data4[8];
};
using IID = GUID;
using CLSID = GUID;
using KNOWNFOLDERID = GUID;
using REFGUID = const GUID&;
using REFIID = const IID&;
using REFCLSID = const CLSID&;
using REFKNOWNFOLDERID = const KNOWNFOLDERID&;

inline bool operator==(REFGUID a, REFGUID b)
{
    return std::memcmp(&a, &b, sizeof(GUID)) == 0;
}
inline bool IsEqualIID(REFIID a, REFIID b)
{
    return a == b;
}
