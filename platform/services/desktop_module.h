// The desktop module: the part of the layer that stands on GLib, GIO, Pango and gdk-pixbuf.
//
// It is a shared object beside the program (orb-launcher-desktop.so), loaded on first use, so that a start that finds
// everything in its caches pays neither for loading those libraries nor for their start-up. Each service is a struct of
// function pointers that the module exports under a name.
#pragma once

namespace platform
{

/// A symbol of the desktop module, which is loaded by the first call from any thread; null when the module or the
/// symbol is missing. The module is never unloaded.
void* DesktopModuleSymbol(const char* name);
/// The same of the keyboard module (orb-launcher-keyboard.so), which is loaded with the first key.
void* KeyboardModuleSymbol(const char* name);
/// And of the input method module (orb-launcher-input-method.so), which is loaded when text is first typed.
void* InputMethodModuleSymbol(const char* name);
/// And of the cursor module (orb-launcher-cursors.so), which is loaded when the pointer is first given a picture.
void* CursorModuleSymbol(const char* name);

} // namespace platform
