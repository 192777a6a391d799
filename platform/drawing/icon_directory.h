// Group icons: the directory of an icon's pictures, and the choice among them.
#pragma once

#include "platform/drawing/dib_file.h"

namespace platform
{

/// The RT_ICON number of the picture in an RT_GROUP_ICON directory that suits a size best, 0 when there is none: the
/// nearest width, the larger of two equally near ones, then the most colours.
int BestIconId(Bytes directory, int width, int height);

/// Data of one of the program's resources, empty when there is none.
Bytes ResourceBytesOf(HINSTANCE instance, LPCWSTR name, LPCWSTR type);

/// A new icon of this size out of a module's resources, the system's for null; made of the picture that suits best.
HICON LoadResourceIcon(HINSTANCE instance, LPCWSTR name, int width, int height);
/// The same handle each time it is asked for; it lives as long as the process.
HICON LoadSharedIcon(HINSTANCE instance, LPCWSTR name, int width, int height);

} // namespace platform
