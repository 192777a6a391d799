// A desk: the whole launcher on the headless screen, used as a person uses it.
//
// Time stands still until the story advances it. The launcher folder, the stored orders and the options are empty at
// the start of every story. The environment's home must be a scratch one (tools/scratch-home).
#pragma once

#include "menu/custom_bar.h"
#include "tests/headless/headless.h"

#include <commctrl.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

using Labels = std::vector<std::string>;

/// Where the root level's order is stored, and below it the other levels'.
inline const WString kRootLayout = TEXT("Software\\Quillfen\\OrbLauncher\\Layout");
/// The bytes of an order; "|" is a separator.
std::vector<std::uint8_t> Order(const Labels& names);

class Desk
{
public:
    explicit Desk(const std::string& monitors = "1920x1080+0+0", int dpi = 96);
    /// With what the store holds, where the other desk begins with an empty one.
    struct WithStoreAsItIs
    {
    };
    explicit Desk(WithStoreAsItIs);
    ~Desk();
    Desk(const Desk&) = delete;
    Desk& operator=(const Desk&) = delete;

    // --- what is in the folder (paths relative to the launcher folder, UTF-8)
    std::filesystem::path Folder() const;
    void MakeFolder(const std::string& path);
    void MakeFile(const std::string& path, const std::string& content = {});
    void MakeShortcut(const std::string& path, const std::string& name, const std::string& exec);
    void StoreOrder(const WString& layoutKey, const std::vector<std::uint8_t>& bytes, DWORD type = REG_BINARY);
    std::vector<std::uint8_t> StoredBytes(const WString& layoutKey, LPCWSTR value = TEXT("m_layout"));
    DWORD StoredType(const WString& layoutKey, LPCWSTR value = TEXT("m_layout")); ///< REG_…
    void StoreOptions(std::uint32_t options);

    // --- what the person does
    void Launch(const std::string& commandLine = "100,700,0");
    void MoveTo(POINT point);
    void RestOn(const std::string& item, int level = -1);
    void Click(const std::string& item, int level = -1);
    void Press(unsigned virtualKey);
    void Hold(unsigned virtualKey);
    void LetGo(unsigned virtualKey);
    void PressWith(unsigned held, std::initializer_list<unsigned> virtualKeys);
    void Wheel(int delta);
    void Advance(std::chrono::milliseconds time);
    void SwitchToOtherProgram();
    void PressMouse(platform::screen::Button button = platform::screen::Button::Left);
    void ReleaseMouse(platform::screen::Button button = platform::screen::Button::Left);
    /// Dispatches what is queued.
    void Settle();
    /// Settles, then does what the program does when it has nothing else to do: frames are presented, watches started.
    void Idle();
    /// Dispatches until the condition holds; false when it does not within real seconds.
    bool WaitFor(const std::function<bool()>& condition, int seconds = 20);
    /// Boxes may appear. Every box is answered with Return; one that the story did not expect fails it.
    void ExpectBoxes() { m_boxesExpected = true; }
    /// What the shell sends a level when a folder that it shows has changed. Posted only.
    void SendNotice(int level = -1);
    /// The same, and lets the level take it.
    void Refresh(int level = -1);
    /// Closes what is open and ends the program, which may show a last box. The destructor does so otherwise.
    void End();

    // --- what the person sees; levels count from the root, −1 is the deepest
    bool IsOpen() const;
    int Levels() const;
    Labels Items(int level = -1) const;    ///< labels, "|" for a separator
    std::string Hot(int level = -1) const; ///< label of the highlighted item, empty for none
    RECT Bounds(int level = -1) const;
    RECT ItemBounds(const std::string& item, int level = -1) const;
    int Boxes() const { return m_boxes; }
    /// Texts of the boxes asked for since the desk was made, shown or not.
    const Labels& BoxTexts() const;
    /// 0x00RRGGBB of a point of the screen as presented.
    std::uint32_t PixelAt(POINT point);
    CustomMenu::CustomBar& Level(int level = -1) const;

    int IndexOf(const std::string& item, int level = -1) const;

private:
    void SetUp(const std::string& monitors, int dpi);
    void AnswerBoxes();

    HWND m_root = nullptr;
    bool m_boxesExpected = false;
    bool m_started = false;
    int m_boxes = 0;
};

/// Counts a message that a window gets, as long as the counter lives.
class MessageCounter
{
public:
    MessageCounter(HWND window, UINT message);
    ~MessageCounter();
    MessageCounter(const MessageCounter&) = delete;
    MessageCounter& operator=(const MessageCounter&) = delete;
    int Count() const { return m_count; }

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                      DWORD_PTR self);
    HWND m_window;
    UINT m_message;
    int m_count = 0;
};

POINT CentreOf(const RECT& rect);
std::string Narrow(const WString& text);
WString Widen(const std::string& text);
