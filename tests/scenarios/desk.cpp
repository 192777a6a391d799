// The desk's hands.
#include "tests/scenarios/desk.h"
#include "tests/scenarios/staged.h"

#include "app/launcher_state.h"
#include "app/startup.h"
#include "content/item_key.h"
#include "content/layout_store.h"
#include "content/ordering.h"
#include "geometry/dpi_scale.h"
#include "platform/base/clock.h"
#include "platform/base/deferred.h"
#include "platform/base/text.h"
#include "platform/windowing/window.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <thread>
#include <utility>

namespace fs = std::filesystem;
using CustomMenu::CustomBar;

namespace
{

constexpr LPCWSTR kRegistryRoot = TEXT("Software\\Quillfen");
constexpr std::chrono::milliseconds kTick{10};

RECT OnScreen(HWND window, RECT rect)
{
    POINT corners[2] = {{rect.left, rect.top}, {rect.right, rect.bottom}};
    MapWindowPoints(window, nullptr, corners, 2);
    return {corners[0].x, corners[0].y, corners[1].x, corners[1].y};
}

/// What lies in the folders has lain there for a while. Of a folder that was changed just before it is read nobody can
/// tell by its time whether it has changed since, so its watch tells of a change when it starts: a refresh that would
/// come at any moment of the story.
void LetFoldersAge(const fs::path& top)
{
    const auto then = fs::file_time_type::clock::now() - std::chrono::hours(1);
    std::error_code ignored;
    fs::last_write_time(top, then, ignored);
    for (auto place = fs::recursive_directory_iterator(top, fs::directory_options::skip_permission_denied, ignored);
         place != fs::recursive_directory_iterator(); place.increment(ignored))
        if (place->is_directory(ignored) && !place->is_symlink(ignored))
            fs::last_write_time(place->path(), then, ignored);
}

std::vector<std::string>& AskedBoxes()
{
    static std::vector<std::string> texts;
    return texts;
}

} // namespace

// The linker sends every call of MessageBoxW here first (see CMakeLists.txt): a box paints its text, and no call reads
// it back.
STAGED_CALL(int, MessageBox, "11MessageBoxWP6HWND__PKDsS2_j", HWND owner, LPCWSTR text, LPCWSTR caption, UINT type)
{
    AskedBoxes().push_back(Narrow(text));
    return RealMessageBox(owner, text, caption, type);
}

MessageCounter::MessageCounter(HWND window, UINT message) : m_window(window), m_message(message)
{
    SetWindowSubclass(window, Procedure, reinterpret_cast<UINT_PTR>(this), reinterpret_cast<DWORD_PTR>(this));
}

MessageCounter::~MessageCounter()
{
    if (IsWindow(m_window))
        RemoveWindowSubclass(m_window, Procedure, reinterpret_cast<UINT_PTR>(this));
}

LRESULT CALLBACK MessageCounter::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                           DWORD_PTR self)
{
    auto& counter = *reinterpret_cast<MessageCounter*>(self);
    counter.m_count += message == counter.m_message;
    return DefSubclassProc(window, message, wParam, lParam);
}

POINT CentreOf(const RECT& rect)
{
    return {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
}

std::string Narrow(const WString& text)
{
    return platform::Utf8FromUtf16(text);
}

WString Widen(const std::string& text)
{
    return platform::Utf16FromUtf8(text);
}

std::vector<std::uint8_t> Order(const Labels& names)
{
    MenuItems items(names.size());
    for (std::size_t i = 0; i < names.size(); ++i)
        items[i].key = names[i] == "|" ? SeparatorKey : ItemKey(Widen(names[i]));
    return EncodeOrder(items);
}

Desk::Desk(const std::string& monitors, int dpi)
{
    SetUp(monitors, dpi);
    RegDeleteTreeW(HKEY_CURRENT_USER, kRegistryRoot);
}

Desk::Desk(WithStoreAsItIs)
{
    SetUp("1920x1080+0+0", 96);
}

void Desk::SetUp(const std::string& monitors, int dpi)
{
    platform::UseManualClock();
    platform::headless::Reset();
    EXPECT_TRUE(platform::headless::SetMonitors(monitors, static_cast<UINT>(dpi)));
    platform::headless::MoveMouse(1, 1);
    g_dpi = DpiScale::FromDpi(GetDpi());
    fs::remove_all(Folder());
    fs::create_directories(Folder());
    AskedBoxes().clear();
    AnswerBoxes();
}

Desk::~Desk()
{
    End();
    EXPECT_TRUE(m_boxesExpected || BoxTexts().empty()) << "an unexpected box: " << BoxTexts().front();
    platform::headless::Reset();
}

void Desk::End()
{
    if (!std::exchange(m_started, false))
        return;
    // The mouse leaves first: windowing remembers where it last was over one of its windows.
    MoveTo({1, 1});
    if (IsOpen())
        CustomMenu::CloseAllLevels();
    Settle();
    EndLauncher(m_root);
    EXPECT_EQ(Levels(), 0) << "every level is gone with its window";
}

fs::path Desk::Folder() const
{
    return fs::path(std::getenv("XDG_DATA_HOME")) / "OrbLauncher";
}

void Desk::MakeFolder(const std::string& path)
{
    fs::create_directories(Folder() / path);
}

void Desk::MakeFile(const std::string& path, const std::string& content)
{
    fs::create_directories((Folder() / path).parent_path());
    std::ofstream(Folder() / path) << content;
}

void Desk::MakeShortcut(const std::string& path, const std::string& name, const std::string& exec)
{
    MakeFile(path, "[Desktop Entry]\nType=Application\nName=" + name + "\nExec=" + exec + "\n");
}

void Desk::StoreOrder(const WString& layoutKey, const std::vector<std::uint8_t>& bytes, DWORD type)
{
    const UniqueRegistryKey key = OpenOrCreateUserKey(layoutKey);
    ASSERT_TRUE(key);
    ASSERT_EQ(RegSetValueExW(key.Get(), TEXT("m_layout"), 0, type, bytes.data(), static_cast<DWORD>(bytes.size())),
              ERROR_SUCCESS);
}

std::vector<std::uint8_t> Desk::StoredBytes(const WString& layoutKey, LPCWSTR value)
{
    return ReadValue(OpenUserKey(layoutKey), value);
}

DWORD Desk::StoredType(const WString& layoutKey, LPCWSTR value)
{
    DWORD type = REG_NONE;
    EXPECT_EQ(RegQueryValueExW(OpenUserKey(layoutKey).Get(), value, nullptr, &type, nullptr, nullptr), ERROR_SUCCESS);
    return type;
}

void Desk::StoreOptions(std::uint32_t options)
{
    const UniqueRegistryKey key = OpenOrCreateUserKey(TEXT("Software\\Quillfen\\OrbLauncher\\Layout"));
    ASSERT_TRUE(key);
    RegSetValueExW(key.Get(), TEXT("options"), 0, REG_DWORD, reinterpret_cast<const BYTE*>(&options), sizeof(options));
}

void Desk::Launch(const std::string& commandLine)
{
    LetFoldersAge(Folder());
    m_root = StartLauncher(GetModuleHandleW(nullptr), Widen(commandLine));
    m_started = true;
    Settle();
}

void Desk::MoveTo(POINT point)
{
    platform::headless::MoveMouse(point.x, point.y);
    Settle();
}

void Desk::RestOn(const std::string& item, int level)
{
    // In two moves, as a hand does: a single one could repeat the last position of an earlier menu.
    const POINT centre = CentreOf(ItemBounds(item, level));
    MoveTo({centre.x - 7, centre.y - 3});
    MoveTo(centre);
}

void Desk::Click(const std::string& item, int level)
{
    RestOn(item, level);
    PressMouse();
    ReleaseMouse();
}

void Desk::PressMouse(platform::screen::Button button)
{
    platform::headless::PressButton(button);
    Settle();
}

void Desk::ReleaseMouse(platform::screen::Button button)
{
    platform::headless::ReleaseButton(button);
    Settle();
}

void Desk::Press(unsigned virtualKey)
{
    Hold(virtualKey);
    LetGo(virtualKey);
}

void Desk::Hold(unsigned virtualKey)
{
    platform::headless::PressKey(static_cast<BYTE>(virtualKey));
    Settle();
}

void Desk::LetGo(unsigned virtualKey)
{
    platform::headless::ReleaseKey(static_cast<BYTE>(virtualKey));
    Settle();
}

void Desk::PressWith(unsigned held, std::initializer_list<unsigned> virtualKeys)
{
    Hold(held);
    for (const unsigned key : virtualKeys)
        Press(key);
    LetGo(held);
}

void Desk::Wheel(int delta)
{
    platform::headless::TurnWheel(delta);
    Settle();
}

void Desk::Advance(std::chrono::milliseconds time)
{
    for (; time.count() > 0; time -= kTick)
    {
        platform::AdvanceManualClock(static_cast<std::uint64_t>(std::min(time, kTick).count()));
        Settle();
    }
}

void Desk::SwitchToOtherProgram()
{
    platform::headless::ActivateOtherApplication();
    Settle();
}

void Desk::Settle()
{
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
    {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

void Desk::Idle()
{
    do
    {
        Settle();
        platform::PresentAll();
    } while (platform::RunOneDeferred());
}

bool Desk::WaitFor(const std::function<bool()>& condition, int seconds)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
    while (!condition())
    {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        Idle();
        std::this_thread::yield();
    }
    return true;
}

void Desk::AnswerBoxes()
{
    platform::headless::SetIdleHandler(
        [this]
        {
            const auto windows = platform::headless::Windows();
            const bool box = std::any_of(
                windows.begin(), windows.end(),
                [](const auto& window)
                { return window.visible && window.kind == platform::screen::WindowKind::Managed; });
            if (!box)
                return false;
            ++m_boxes;
            platform::headless::PressKey(VK_RETURN);
            platform::headless::ReleaseKey(VK_RETURN);
            return true;
        });
}

void Desk::SendNotice(int level)
{
    PostMessageW(Level(level).m_toolbar, WM_APP_SHELLNOTIFY, 0, 0);
}

void Desk::Refresh(int level)
{
    SendNotice(level);
    Settle();
}

bool Desk::IsOpen() const
{
    return m_root != nullptr && IsWindow(m_root);
}

int Desk::Levels() const
{
    return static_cast<int>(g_launcher.m_levels.size());
}

const Labels& Desk::BoxTexts() const
{
    return AskedBoxes();
}

std::uint32_t Desk::PixelAt(POINT point)
{
    Idle();
    return platform::headless::PixelAt(point.x, point.y);
}

CustomBar& Desk::Level(int level) const
{
    const int index = level < 0 ? Levels() - 1 : level;
    return *g_launcher.m_levels.at(static_cast<std::size_t>(index));
}

Labels Desk::Items(int level) const
{
    std::vector<std::string> labels;
    for (const MenuItem& item : Level(level).m_items)
        labels.push_back(item.Is(MIF_SEPARATOR) ? "|" : Narrow(item.name.Get()));
    return labels;
}

std::string Desk::Hot(int level) const
{
    const int hot = Level(level).HotButton();
    return hot < 0 ? std::string() : Items(level).at(static_cast<std::size_t>(hot));
}

RECT Desk::Bounds(int level) const
{
    RECT bounds{};
    GetWindowRect(Level(level).m_hWnd, &bounds);
    return bounds;
}

int Desk::IndexOf(const std::string& item, int level) const
{
    const std::vector<std::string> labels = Items(level);
    const auto found = std::find(labels.begin(), labels.end(), item);
    EXPECT_NE(found, labels.end()) << "no item " << item;
    return static_cast<int>(found - labels.begin());
}

RECT Desk::ItemBounds(const std::string& item, int level) const
{
    const CustomBar& bar = Level(level);
    return OnScreen(bar.m_toolbar, bar.ButtonRect(IndexOf(item, level)));
}
