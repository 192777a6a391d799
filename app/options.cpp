// Reading, writing and applying the options word.
#include "app/options.h"

#include "app/bitmap_loader.h"
#include "app/launcher_state.h"
#include "content/layout_store.h"

#include <algorithm>
#include <cstring>

namespace
{

constexpr LPCWSTR kOptionsValue = TEXT("options");

/// The trailing separator names the same key.
WString OptionsKeyPath()
{
    return g_launcher.m_layoutRoot + TEXT("\\");
}

std::uint32_t FirstDword(const std::vector<std::uint8_t>& data)
{
    std::uint32_t value = 0;
    if (!data.empty())
        std::memcpy(&value, data.data(), std::min(sizeof(value), data.size()));
    return value;
}

} // namespace

void LoadOptions()
{
    if (g_launcher.m_layoutRoot.empty())
        return;
    const UniqueRegistryKey key = OpenUserKey(OptionsKeyPath());
    if (!key)
        return;
    g_launcher.m_options = FirstDword(ReadValue(key.Get(), kOptionsValue));
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
