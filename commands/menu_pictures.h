// Pictures of menu entries, made from icon resources.
#pragma once

#include "support/unique_handle.h"

namespace CustomMenu
{

/// The group icon `resource` of the program as a bitmap of 32 bits per pixel, premultiplied, made from its image that
/// suits `size` pixels best. Empty when that image has another depth, and when any step fails.
UniqueBitmap MakeMenuPicture(int resource, int size);

} // namespace CustomMenu
