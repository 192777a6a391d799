// What the files of the headless screen share.
#pragma once

#include "tests/headless/headless.h"

#include <atomic>
#include <deque>

namespace platform::headless
{

/// A rectangle of pixels with the surface that drawing uses.
struct Picture
{
    Picture(int width, int height);
    std::vector<std::uint32_t> pixels;
    Surface surface;
};

struct HeadlessWindow
{
    WindowInfo info;
    std::shared_ptr<Picture> drawn; ///< what the program draws on
    std::shared_ptr<Picture> shown; ///< what has been presented
};

struct State
{
    std::vector<screen::Monitor> monitors;
    std::map<std::string, std::string, std::less<>> settings;
    std::map<std::uint32_t, RECT> foreignWindows;
    std::vector<HeadlessWindow> windows; ///< topmost first
    screen::NativeWindow nextWindow = 0x200001;
    bool hasKeyboard = false;
    std::size_t presentedPixels = 0;
    std::size_t placeRequests = 0;

    std::deque<screen::Event> events;
    POINT pointer{};
    screen::NativeWindow pointerWindow = 0; ///< where the program believes the pointer to be
    screen::NativeWindow pressedWindow = 0; ///< gets all mouse events while a button is down
    unsigned pressedButtons = 0;
    unsigned modifiers = 0;
    std::optional<RECT> textCaret; ///< where text is typed
    screen::Composition composition;
    std::function<bool()> idleHandler;
    std::atomic<bool> woken{false};
};

State& TheState();
/// Nobody has any selection.
void ForgetSelections();
/// Nobody drags anything.
void ForgetDrags();
/// This program drags: mouse and keyboard are its own wherever the pointer is.
bool IsDragging();
HeadlessWindow* FindWindow(screen::NativeWindow window);
/// The topmost visible window at a point, 0 for none.
screen::NativeWindow WindowAt(POINT point);
/// Reports that the window under the resting pointer is another one now.
void PointerMayHaveChangedWindow();

} // namespace platform::headless
