// Icon handles, and icons out of the program's resources.
#include "platform/drawing/dib_file.h"
#include "platform/drawing/icon.h"
#include "platform/drawing/icon_directory.h"
#include "platform/drawing/image_scaling.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <tuple>

namespace platform
{
namespace
{

class IconObject : public HandleObject
{
public:
    static constexpr HandleKind kHandleKind = HandleKind::Icon;
    explicit IconObject(std::shared_ptr<IconSource> s) : HandleObject(kHandleKind), source(std::move(s)) {}
    std::shared_ptr<IconSource> source;
};

/// Scaled where the resource has no picture of the size; a damaged one is an empty one.
IconImage ReadScaled(Bytes bytes, int width, int height)
{
    IconImage image = ReadIconImage(bytes).value_or(IconImage{});
    const bool fits = image.width == width && image.height == height;
    return fits || image.pixels.empty() ? std::move(image) : ScaleImage(image, width, height);
}

/// A picture out of resources, decoded when it is first drawn.
class ResourceIcon : public IconSource
{
public:
    ResourceIcon(Bytes bytes, int width, int height) : m_bytes(bytes), m_width(width), m_height(height) {}
    const IconImage& Image() override
    {
        if (!m_image)
            m_image = ReadScaled(m_bytes, m_width, m_height);
        return *m_image;
    }

private:
    Bytes m_bytes;
    int m_width;
    int m_height;
    std::optional<IconImage> m_image;
};

/// The data of the picture that suits the size best, empty when there is none.
Bytes BestIconPicture(HINSTANCE instance, LPCWSTR name, int width, int height)
{
    const int id = BestIconId(ResourceBytesOf(instance, name, RT_GROUP_ICON), width, height);
    return id != 0 ? ResourceBytesOf(instance, MAKEINTRESOURCEW(id), RT_ICON) : Bytes();
}

HMODULE SystemModule()
{
    return GetModuleHandleW(TEXT("USER32"));
}

} // namespace

HICON CreateIconFromSource(std::shared_ptr<IconSource> source)
{
    return OpenHandle<HICON>("CreateIconFromSource", std::make_unique<IconObject>(std::move(source)));
}

std::shared_ptr<IconSource> IconSourceOf(HICON icon)
{
    const IconObject* object = FindObject<IconObject>(icon);
    return object != nullptr ? object->source : nullptr;
}

Bytes ResourceBytesOf(HINSTANCE instance, LPCWSTR name, LPCWSTR type)
{
    const HRSRC resource = FindResourceW(instance, name, type);
    const HGLOBAL data = resource != nullptr ? LoadResource(instance, resource) : nullptr;
    return data != nullptr
               ? Bytes(static_cast<const unsigned char*>(LockResource(data)), SizeofResource(instance, resource))
               : Bytes();
}

HICON LoadResourceIcon(HINSTANCE instance, LPCWSTR name, int width, int height)
{
    const Bytes picture = BestIconPicture(instance != nullptr ? instance : SystemModule(), name, width, height);
    return !picture.empty() ? CreateIconFromSource(std::make_shared<ResourceIcon>(picture, width, height))
                            : Fail(ERROR_RESOURCE_NAME_NOT_FOUND, static_cast<HICON>(nullptr));
}

HICON LoadSharedIcon(HINSTANCE instance, LPCWSTR name, int width, int height)
{
    using Key = std::tuple<const unsigned char*, int, int>;
    static auto& loaded = *new std::map<Key, HICON>;
    const Bytes picture = BestIconPicture(instance != nullptr ? instance : SystemModule(), name, width, height);
    HICON& icon = loaded[Key(picture.data(), width, height)];
    if (icon == nullptr)
    {
        icon = LoadResourceIcon(instance, name, width, height);
        if (IconObject* object = FindObject<IconObject>(icon))
            object->permanent = true;
    }
    return icon;
}

IconImage SystemPicture(LPCWSTR name, int size)
{
    return ReadScaled(BestIconPicture(SystemModule(), name, size, size), size, size);
}

} // namespace platform

HICON LoadIconW(HINSTANCE instance, LPCWSTR name)
{
    // SM_CXICON at 100 %: the size that LoadIconW has always meant.
    constexpr int kSize = 32;
    return platform::LoadSharedIcon(instance, name, kSize, kSize);
}

BOOL GetIconInfo(HICON icon, PICONINFO info)
{
    using namespace platform;
    const std::shared_ptr<IconSource> source = IconSourceOf(icon);
    if (source == nullptr || info == nullptr)
        return Fail(source == nullptr ? ERROR_INVALID_HANDLE : ERROR_INVALID_PARAMETER, FALSE);
    const IconImage& image = source->Image();
    auto color = MakeBitmap(image.width, image.height, 32, false);
    auto mask = MakeBitmap(image.width, image.height, 1, false);
    if (color == nullptr || mask == nullptr)
        return Fail(ERROR_NOT_ENOUGH_MEMORY, FALSE);
    std::memcpy(color->Bits(), image.pixels.data(), image.pixels.size() * sizeof(image.pixels[0]));
    const HBITMAP colors = OpenHandle<HBITMAP>("GetIconInfo", std::move(color));
    const HBITMAP transparent = colors != nullptr ? OpenHandle<HBITMAP>("GetIconInfo", std::move(mask)) : nullptr;
    if (transparent == nullptr)
    {
        DeleteObject(colors);
        return FALSE;
    }
    *info = {TRUE, static_cast<DWORD>(image.width / 2), static_cast<DWORD>(image.height / 2), transparent, colors};
    return TRUE;
}

BOOL DrawIcon(HDC dc, int x, int y, HICON icon)
{
    using namespace platform;
    const std::shared_ptr<IconSource> source = IconSourceOf(icon);
    if (source == nullptr || FaultPoint("DrawIcon"))
        return Fail(ERROR_INVALID_HANDLE, FALSE);
    return DrawIconImage(dc, x, y, source->Image());
}

BOOL DestroyIcon(HICON icon)
{
    const auto* object = platform::FindObject<platform::IconObject>(icon);
    if (object == nullptr)
        return platform::Fail(ERROR_INVALID_HANDLE, FALSE);
    // A shared one is nobody's: "destroying" it has no effect.
    return object->permanent || platform::TakeHandle(reinterpret_cast<std::uintptr_t>(icon)) != nullptr;
}
