// Visual styles: there are none in the layer, so turning them off always succeeds.
#pragma once

#include "windows.h"

HRESULT SetWindowTheme(HWND window, LPCWSTR subAppName, LPCWSTR subIdList);
