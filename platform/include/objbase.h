// COM start-up and object creation.
#pragma once

#include "unknwn.h"

#define CLSCTX_INPROC_SERVER 1

/// REGDB_E_CLASSNOTREG for a class that the layer does not have.
HRESULT CoCreateInstance(REFCLSID classId, IUnknown* outer, DWORD context, REFIID iid, LPVOID* object);
