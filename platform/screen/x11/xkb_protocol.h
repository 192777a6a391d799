// libxcb's XKB header, which names a structure member `explicit`.
#pragma once

#include <xcb/xcb.h>

#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit
