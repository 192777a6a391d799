// The Windows API names that the launcher uses, for its Linux build.
#pragma once

#include "windef.h"
#include "winerror.h"
#include "guiddef.h"
#include "winbase.h"
#include "wingdi.h"
#include "winuser.h"
#include "winreg.h"
