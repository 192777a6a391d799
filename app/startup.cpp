// Start-up and teardown, step by step.
#include "app/startup.h"

#include "app/bitmap_loader.h"
#include "app/command_line.h"
#include "app/launcher_state.h"
#include "app/options.h"
#include "geometry/dpi_scale.h"
#include "menu/custom_bar.h"
#include "resources/resource.h"
#include "support/item_list.h"

using CustomMenu::CustomBar;

namespace
{

constexpr int kTitlePoints = 20;
constexpr int kPointsPerInch = 72;

ItemList ParseFolder(const WString& path)
{
    ItemList list;
    if (FAILED(SHParseDisplayName(path.c_str(), nullptr, list.Receive(), 0, nullptr)))
        return {};
    return list;
}

POINT AnchorOf(const AnchorRequest& request, POINT cursor)
{
    RECT window{};
    switch (request.kind)
    {
    case AnchorRequest::Kind::Absolute:
        return AbsoluteAnchor(request);
    case AnchorRequest::Kind::Window:
        return GetWindowRect(reinterpret_cast<HWND>(static_cast<UINT_PTR>(request.window)), &window)
                   ? WindowAnchor(request, window)
                   : cursor;
    default:
        return cursor;
    }
}

/// In pixels. CreateFontW takes a positive height for that of the whole cell, a negative one for the letters'.
int TitleCellHeight()
{
    return MulDiv(g_dpi.percent, 96, 100) * g_launcher.m_fontSize / kPointsPerInch;
}

void QuerySystemParameters()
{
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &g_launcher.m_workArea, 0);
    SystemParametersInfoW(SPI_GETMENUSHOWDELAY, 0, &g_launcher.m_menuShowDelay, 0);
    g_launcher.m_shellIdListFormat = static_cast<WORD>(RegisterClipboardFormatW(TEXT("Shell IDList Array")));
}

/// Where the root level goes.
struct RootPlace
{
    POINT anchor;
    int align;
};

/// The cursor's position where the line names no point.
RootPlace ReadCommandLine(WStringView line)
{
    POINT cursor{};
    GetCursorPos(&cursor);
    const AnchorRequest request = ParseCommandLine(line);
    return {AnchorOf(request, cursor), request.align};
}

void FindLauncherFolder()
{
    ShellString appData;
    SHGetKnownFolderPath(FOLDERID_RoamingAppData, 0, nullptr, appData.Receive());
    WString& path = g_launcher.m_folderPath;
    path = (appData ? appData.Get() : WString()) + TEXT("\\OrbLauncher");
    // Without the known folder this is a path at the top of a drive, where nothing of ours may be made; the shell does
    // not take it. An empty path it would: for My Computer.
    if (appData && !CreateDirectoryW(path.c_str(), nullptr) && GetLastError() != ERROR_ALREADY_EXISTS)
        ShowOpenError(path);
    if (!ParseFolder(path))
        ShowOpenError(path);
}

void LoadAppearance()
{
    const WString skin = ResourceName(BITMAP_BANNER_SKIN);
    g_launcher.m_bannerSkin = LoadBitmapImage(skin);
    if (g_launcher.m_bannerSkin)
        g_launcher.m_bannerSkinHeight = BitmapSize(g_launcher.m_bannerSkin.Get()).cy;
    else
        ShowOpenError(skin);
    g_launcher.m_fontSize = kTitlePoints;
    g_launcher.m_fontFace = TEXT("Segoe UI");
    g_launcher.m_font.Reset(CreateFontW(TitleCellHeight(), 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                                        OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY, DEFAULT_PITCH,
                                        g_launcher.m_fontFace.c_str()));
    g_launcher.m_title = TEXT("Orb Launcher");
    g_launcher.m_titleColor = 0x00FFFFFF;
}

/// Creates, shows and brings to the foreground the root level; null when it cannot be created.
HWND CreateRootLevel()
{
    QuerySystemParameters();
    g_launcher.m_renamePosition = {0, 0};
    g_launcher.g_operationBar = nullptr;
    LoadOptions();
    SetSeparatorStyle(g_launcher.m_options);
    const ItemList folder = ParseFolder(g_launcher.m_folderPath);
    if (!folder)
        return nullptr;
    auto* const root = new CustomBar(nullptr, -1, {folder.Get(), nullptr}, g_launcher.m_layoutRoot, false);
    root->ReloadItems();
    const POINT& anchor = g_launcher.m_anchor;
    const RECT place{anchor.x, anchor.y, anchor.x, anchor.y};
    if (!root->Create(g_launcher.m_rootParent, &place, g_launcher.m_levelStyle, g_launcher.m_levelExStyle))
        return nullptr;
    const HWND window = root->m_hWnd;
    root->SetHotItem(-1);
    ShowWindow(window, SW_SHOW);
    CustomMenu::FocusDeepestLevel();
    SetForegroundWindow(window);
    return window;
}

void ReleaseResources()
{
    g_launcher.m_bannerSkin.Reset();
    g_launcher.m_separatorImage.Reset();
    g_launcher.m_largeImages.Reset();
    g_launcher.m_smallImages.Reset();
    g_launcher.m_font.Reset();
}

} // namespace

HWND StartLauncher(HINSTANCE instance, WStringView commandLine)
{
    g_instance = instance;
    const RootPlace place = ReadCommandLine(commandLine);
    InitLauncherState();
    g_launcher.m_anchor = place.anchor;
    g_launcher.m_align = place.align;
    g_launcher.m_rootParent = nullptr;
    FindLauncherFolder();
    g_launcher.m_layoutRoot = TEXT("Software\\Quillfen\\OrbLauncher\\Layout");
    g_launcher.m_largeIcons = LARGE_ICONS_SUB_LEVELS | LARGE_ICONS_ROOT;
    LoadAppearance();
    OleInitialize(nullptr);
    return CreateRootLevel();
}

void PumpMessagesWhileOpen(HWND root)
{
    MSG message;
    while (IsWindow(root) && GetMessageW(&message, nullptr, 0, 0) > 0)
    {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

void EndLauncher(HWND root)
{
    // The root may have been closed alone; what still shows would get messages after the state is gone.
    CustomMenu::DestroyAllLevels();
    OleUninitialize();
    if (root == nullptr)
        ShowOpenError(TEXT("menu window"));
    ReleaseResources();
}
