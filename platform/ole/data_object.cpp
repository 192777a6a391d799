// The data object whose formats are bytes, and IEnumFORMATETC.
#include "platform/ole/data_object.h"

#include "platform/base/fault_points.h"

#include <algorithm>
#include <cstring>

namespace platform
{
namespace
{

class FormatEnumerator final : public ComObject<IEnumFORMATETC, IID_IEnumFORMATETC>
{
public:
    explicit FormatEnumerator(std::vector<CLIPFORMAT> formats, std::size_t next = 0)
        : m_formats(std::move(formats)), m_next(next)
    {
    }

    HRESULT STDMETHODCALLTYPE Next(ULONG count, FORMATETC* formats, ULONG* fetched) override
    {
        if (formats == nullptr || (fetched == nullptr && count != 1))
            return E_INVALIDARG;
        const auto given = static_cast<ULONG>(std::min<std::size_t>(count, m_formats.size() - m_next));
        for (ULONG i = 0; i < given; ++i)
            formats[i] = MemoryFormat(m_formats[m_next++]);
        if (fetched != nullptr)
            *fetched = given;
        return given == count ? S_OK : S_FALSE;
    }

    HRESULT STDMETHODCALLTYPE Skip(ULONG count) override
    {
        const std::size_t left = m_formats.size() - m_next;
        m_next += std::min<std::size_t>(count, left);
        return count <= left ? S_OK : S_FALSE;
    }

    HRESULT STDMETHODCALLTYPE Reset() override
    {
        m_next = 0;
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE Clone(IEnumFORMATETC** clone) override
    {
        if (clone == nullptr)
            return E_INVALIDARG;
        *clone = new FormatEnumerator(m_formats, m_next);
        return S_OK;
    }

private:
    std::vector<CLIPFORMAT> m_formats;
    std::size_t m_next;
};

/// What of a request is not about which format it is.
HRESULT CheckMedium(const FORMATETC& format)
{
    if (format.dwAspect != DVASPECT_CONTENT || format.lindex != -1 || format.ptd != nullptr)
        return DV_E_FORMATETC;
    return (format.tymed & TYMED_HGLOBAL) != 0 ? S_OK : DV_E_TYMED;
}

} // namespace

HGLOBAL GlobalFromBytes(std::string_view bytes)
{
    const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, bytes.size());
    void* const place = memory != nullptr ? GlobalLock(memory) : nullptr;
    if (place == nullptr)
    {
        GlobalFree(memory);
        return nullptr;
    }
    if (!bytes.empty())
        std::memcpy(place, bytes.data(), bytes.size());
    GlobalUnlock(memory);
    return memory;
}

std::optional<std::string> DataAs(IDataObject& data, CLIPFORMAT format)
{
    FORMATETC wanted = MemoryFormat(format);
    STGMEDIUM medium{};
    if (FAILED(data.GetData(&wanted, &medium)))
        return std::nullopt;
    std::optional<std::string> bytes;
    if (medium.tymed == TYMED_HGLOBAL)
    {
        if (const void* place = GlobalLock(medium.hGlobal))
        {
            bytes.emplace(static_cast<const char*>(place), GlobalSize(medium.hGlobal));
            GlobalUnlock(medium.hGlobal);
        }
    }
    ReleaseStgMedium(&medium);
    return bytes;
}

FORMATETC MemoryFormat(CLIPFORMAT format)
{
    return {format, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};
}

IEnumFORMATETC* MakeFormatEnumerator(std::vector<CLIPFORMAT> formats)
{
    return new FormatEnumerator(std::move(formats));
}

MemoryDataObject::Content* MemoryDataObject::Find(CLIPFORMAT format)
{
    const auto found = std::ranges::find(m_contents, format, &Content::format);
    return found != m_contents.end() ? &*found : nullptr;
}

MemoryDataObject::Content& MemoryDataObject::Entry(CLIPFORMAT format)
{
    Content* found = Find(format);
    return found != nullptr ? *found : m_contents.emplace_back(Content{format, nullptr, std::nullopt});
}

void MemoryDataObject::Offer(CLIPFORMAT format, std::string bytes)
{
    Content& entry = Entry(format);
    entry.make = nullptr;
    entry.bytes = std::move(bytes);
}

void MemoryDataObject::OfferLazily(CLIPFORMAT format, Make make)
{
    Content& entry = Entry(format);
    entry.make = std::move(make);
    entry.bytes.reset();
}

HRESULT MemoryDataObject::QueryGetData(FORMATETC* format)
{
    if (format == nullptr)
        return E_INVALIDARG;
    if (const HRESULT checked = CheckMedium(*format); FAILED(checked))
        return checked;
    return Find(format->cfFormat) != nullptr ? S_OK : DV_E_FORMATETC;
}

HRESULT MemoryDataObject::GetData(FORMATETC* format, STGMEDIUM* medium)
{
    if (medium == nullptr)
        return E_INVALIDARG;
    *medium = {};
    if (const HRESULT found = QueryGetData(format); FAILED(found))
        return found;
    if (FaultPoint("IDataObject::GetData"))
        return E_OUTOFMEMORY;
    if (const Make make = std::exchange(Find(format->cfFormat)->make, nullptr))
    {
        std::optional<std::string> made = make(); // may ask for other formats, or set them
        Entry(format->cfFormat).bytes = std::move(made);
    }
    const std::optional<std::string>& bytes = Entry(format->cfFormat).bytes;
    if (!bytes)
        return E_FAIL;
    medium->hGlobal = GlobalFromBytes(*bytes);
    medium->tymed = medium->hGlobal != nullptr ? TYMED_HGLOBAL : 0;
    return medium->hGlobal != nullptr ? S_OK : E_OUTOFMEMORY;
}

HRESULT MemoryDataObject::SetData(FORMATETC* format, STGMEDIUM* medium, BOOL release)
{
    if (format == nullptr || medium == nullptr)
        return E_INVALIDARG;
    if (const HRESULT checked = CheckMedium(*format); FAILED(checked))
        return checked;
    if (medium->tymed != TYMED_HGLOBAL)
        return DV_E_TYMED;
    const void* place = FaultPoint("IDataObject::SetData") ? nullptr : GlobalLock(medium->hGlobal);
    if (place == nullptr)
        return E_OUTOFMEMORY;
    Offer(format->cfFormat, std::string(static_cast<const char*>(place), GlobalSize(medium->hGlobal)));
    GlobalUnlock(medium->hGlobal);
    if (release)
        ReleaseStgMedium(medium);
    return S_OK;
}

HRESULT MemoryDataObject::EnumFormatEtc(DWORD direction, IEnumFORMATETC** formats)
{
    if (formats == nullptr)
        return E_INVALIDARG;
    *formats = nullptr;
    if (direction != DATADIR_GET)
        return E_NOTIMPL;
    if (FaultPoint("IDataObject::EnumFormatEtc"))
        return E_OUTOFMEMORY;
    std::vector<CLIPFORMAT> all;
    for (const Content& content : m_contents)
        all.push_back(content.format);
    *formats = MakeFormatEnumerator(std::move(all));
    return S_OK;
}

HRESULT MemoryDataObject::SetAsyncMode(BOOL async)
{
    m_async = async;
    return S_OK;
}

HRESULT MemoryDataObject::GetAsyncMode(BOOL* async)
{
    if (async == nullptr)
        return E_INVALIDARG;
    *async = m_async;
    return S_OK;
}

} // namespace platform

void ReleaseStgMedium(STGMEDIUM* medium)
{
    if (medium == nullptr)
        return;
    if (medium->pUnkForRelease != nullptr)
        medium->pUnkForRelease->Release(); // which is who frees the memory
    else if (medium->tymed == TYMED_HGLOBAL)
        GlobalFree(medium->hGlobal);
    *medium = {};
}
