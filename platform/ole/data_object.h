// Data objects of the layer's own: content in several formats, at hand or made when it is first asked for.
#pragma once

#include "platform/ole/com_object.h"
#include "shlobj.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform
{

/// Global memory with these bytes, the caller's to free; null when there is none to be had.
HGLOBAL GlobalFromBytes(std::string_view bytes);
/// The format's bytes from any data object; nothing when it does not have them in memory.
std::optional<std::string> DataAs(IDataObject& data, CLIPFORMAT format);
/// Content in memory as a whole, which is all that the layer's data objects have.
FORMATETC MemoryFormat(CLIPFORMAT format);
/// An enumerator with one reference, the first format first.
IEnumFORMATETC* MakeFormatEnumerator(std::vector<CLIPFORMAT> formats);

/// Offers what it was given, in that order, and what SetData adds. Nothing is made twice, also when making it failed.
/// The answer to IDataObjectAsyncCapability is a note: everything is done in the call.
class MemoryDataObject final
    : public ComObjectOf<ComInterface<IDataObject, IID_IDataObject>,
                         ComInterface<IDataObjectAsyncCapability, IID_IDataObjectAsyncCapability>>
{
public:
    /// Nothing when the content cannot be had.
    using Make = std::function<std::optional<std::string>()>;

    /// A format that is there already is replaced.
    void Offer(CLIPFORMAT format, std::string bytes);
    void OfferLazily(CLIPFORMAT format, Make make);

    HRESULT STDMETHODCALLTYPE GetData(FORMATETC* format, STGMEDIUM* medium) override;
    HRESULT STDMETHODCALLTYPE QueryGetData(FORMATETC* format) override;
    HRESULT STDMETHODCALLTYPE SetData(FORMATETC* format, STGMEDIUM* medium, BOOL release) override;
    HRESULT STDMETHODCALLTYPE EnumFormatEtc(DWORD direction, IEnumFORMATETC** formats) override;
    HRESULT STDMETHODCALLTYPE SetAsyncMode(BOOL async) override;
    HRESULT STDMETHODCALLTYPE GetAsyncMode(BOOL* async) override;

private:
    struct Content
    {
        CLIPFORMAT format;
        Make make; ///< null once it has been asked
        std::optional<std::string> bytes;
    };

    Content* Find(CLIPFORMAT format);
    Content& Entry(CLIPFORMAT format);

    std::vector<Content> m_contents;
    BOOL m_async = FALSE;
};

} // namespace platform
