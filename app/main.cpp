// Entry point: one run shows one menu, and ends when its root level is gone.
#include "app/startup.h"

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, LPWSTR commandLine, int)
{
    const HWND root = StartLauncher(instance, commandLine);
    PumpMessagesWhileOpen(root);
    EndLauncher(root);
    return 0;
}
