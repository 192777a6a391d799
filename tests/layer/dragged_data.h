// What another program drags: content in any formats, well formed or not.
#pragma once

#include "windows.h"

#include "platform/ole/com_object.h"

#include "ole2.h"

#include <cstring>
#include <map>
#include <string>

namespace shell_test
{

class DraggedData final : public platform::ComObject<IDataObject, IID_IDataObject>
{
public:
    using Forms = std::map<std::string, std::string>;
    explicit DraggedData(Forms forms) : m_forms(std::move(forms)) {}

    HRESULT STDMETHODCALLTYPE GetData(FORMATETC* format, STGMEDIUM* medium) override
    {
        const std::string* content = Find(*format);
        if (content == nullptr)
            return DV_E_FORMATETC;
        if (!gives)
            return E_FAIL;
        const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, content->size());
        std::memcpy(GlobalLock(memory), content->data(), content->size());
        GlobalUnlock(memory);
        *medium = {TYMED_HGLOBAL, memory, nullptr};
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE QueryGetData(FORMATETC* format) override
    {
        return Find(*format) != nullptr ? S_OK : DV_E_FORMATETC;
    }
    HRESULT STDMETHODCALLTYPE SetData(FORMATETC*, STGMEDIUM*, BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE EnumFormatEtc(DWORD, IEnumFORMATETC**) override { return E_NOTIMPL; }

    bool gives = true; ///< else it only says that it has

private:
    const std::string* Find(const FORMATETC& format) const
    {
        WCHAR name[128] = {};
        GetClipboardFormatNameW(format.cfFormat, name, 128);
        const std::u16string_view wide = name;
        const auto found = m_forms.find(std::string(wide.begin(), wide.end()));
        return found != m_forms.end() ? &found->second : nullptr;
    }

    Forms m_forms;
};

} // namespace shell_test
