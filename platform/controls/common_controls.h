// The window classes that this folder provides.
#pragma once

namespace platform
{

/// Registers the toolbar, the pager and the push button. Windowing calls it when it meets a class it does not know, so
/// that a program without them pays nothing; calling it again does nothing.
void RegisterCommonControls();

} // namespace platform
