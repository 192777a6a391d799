// Reference counting and interface lookup of the layer's COM objects.
#pragma once

#include "unknwn.h"

#include <atomic>

namespace platform
{

/// Implements IUnknown for an object of one interface. Made with one reference; deletes itself with the last.
template <typename Interface, const IID& interfaceId>
class ComObject : public Interface
{
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override
    {
        if (object == nullptr)
            return E_POINTER;
        if (!(iid == interfaceId) && !(iid == IID_IUnknown))
        {
            *object = nullptr;
            return E_NOINTERFACE;
        }
        *object = static_cast<Interface*>(this);
        AddRef();
        return S_OK;
    }

    ULONG STDMETHODCALLTYPE AddRef() override { return ++m_references; }

    ULONG STDMETHODCALLTYPE Release() override
    {
        const ULONG left = --m_references;
        if (left == 0)
        {
            delete this;
            --LiveObjects();
        }
        return left;
    }

    ComObject(const ComObject&) = delete;
    ComObject& operator=(const ComObject&) = delete;

protected:
    ComObject() { ++LiveObjects(); }
    virtual ~ComObject() = default;

private:
    static std::atomic<long>& LiveObjects();

    std::atomic<ULONG> m_references{1};
};

/// Number of shell objects that somebody still references, for tests.
std::atomic<long>& LiveShellObjects();

template <typename Interface, const IID& interfaceId>
std::atomic<long>& ComObject<Interface, interfaceId>::LiveObjects()
{
    return LiveShellObjects();
}

} // namespace platform
