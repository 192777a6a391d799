// Reading, writing and applying the options word.
#include "app/options.h"

#include "app/bitmap_loader.h"
#include "app/launcher_state.h"
#include "content/layout_store.h"

#include <algorithm>

namespace
{

constexpr LPCWSTR kOptionsValue = TEXT("options");

/// The trailing separator names the same key.
WString OptionsKeyPath()
{
    return g_launcher.m_layoutRoot + TEXT("\\");
}

} // namespace

void LoadOptions()
{
    if (g_launcher.m_layoutRoot.empty())
        return;
    // Only the first bytes count, should the value have another size.
    const std::vector<std::uint8_t> data = ReadValue(OpenUserKey(OptionsKeyPath()), kOptionsValue);
    std::copy_n(data.begin(), std::min(data.size(), sizeof(g_launcher.m_options)),
                reinterpret_cast<std::uint8_t*>(&g_launcher.m_options));
}

void SaveOptions()
{
    if (g_launcher.m_layoutRoot.empty())
        return;
    const UniqueRegistryKey key = OpenOrCreateUserKey(OptionsKeyPath());
    if (!key)
        return;
    const std::uint32_t options = g_launcher.m_options;
    RegSetValueExW(key.Get(), kOptionsValue, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&options), sizeof(options));
}

bool SetSeparatorStyle(std::uint32_t bits)
{
    g_launcher.m_options &= ~static_cast<std::uint32_t>(OPTION_SEPARATOR_STYLE);
    g_launcher.m_separatorImage.Reset();
    g_launcher.m_separatorImage = LoadBitmapImage(ResourceName(SeparatorBitmap(bits)));
    if (!g_launcher.m_separatorImage)
        return false;
    const SIZE size = BitmapSize(g_launcher.m_separatorImage.Get());
    g_launcher.m_separatorWidth = size.cx;
    g_launcher.m_separatorHeight = size.cy;
    g_launcher.m_options |= bits;
    return true;
}
