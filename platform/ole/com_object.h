// Reference counting and interface lookup of the layer's COM objects.
#pragma once

#include "unknwn.h"

#include <atomic>
#include <utility>

namespace platform
{

/// Number of COM objects of the layer's that somebody still references, for tests.
std::atomic<long>& LiveShellObjects();

/// An interface with its identifier.
template <typename Interface, const IID& interfaceId>
struct ComInterface
{
    using Type = Interface;
    static constexpr const IID& kId = interfaceId;
};

/// Implements IUnknown for an object of these interfaces; the first is the object's identity. Made with one reference;
/// deletes itself with the last.
template <typename First, typename... More>
class ComObjectOf : public First::Type, public More::Type...
{
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override
    {
        if (object == nullptr)
            return E_POINTER;
        *object = nullptr;
        if (iid == First::kId || iid == IID_IUnknown)
            *object = static_cast<typename First::Type*>(this);
        ((*object = *object == nullptr && iid == More::kId ? static_cast<typename More::Type*>(this) : *object), ...);
        if (*object == nullptr)
            return E_NOINTERFACE;
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
            --LiveShellObjects();
        }
        return left;
    }

    ComObjectOf(const ComObjectOf&) = delete;
    ComObjectOf& operator=(const ComObjectOf&) = delete;

protected:
    ComObjectOf() { ++LiveShellObjects(); }
    virtual ~ComObjectOf() = default;

private:
    std::atomic<ULONG> m_references{1};
};

/// An object of one interface.
template <typename Interface, const IID& interfaceId>
using ComObject = ComObjectOf<ComInterface<Interface, interfaceId>>;

/// One reference to an object, which it takes on being made from a pointer and gives back at its end.
template <typename T>
class ComReference
{
public:
    ComReference() = default;
    explicit ComReference(T* object) : m_object(object)
    {
        if (m_object != nullptr)
            m_object->AddRef();
    }
    ComReference(const ComReference& other) : ComReference(other.m_object) {}
    ComReference(ComReference&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
    ~ComReference() { Reset(); }
    ComReference& operator=(ComReference other) noexcept
    {
        std::swap(m_object, other.m_object);
        return *this;
    }
    /// Takes over a reference that the caller has.
    static ComReference Adopt(T* object)
    {
        ComReference reference;
        reference.m_object = object;
        return reference;
    }

    T* Get() const { return m_object; }
    T* operator->() const { return m_object; }
    explicit operator bool() const { return m_object != nullptr; }
    void Reset()
    {
        if (T* old = std::exchange(m_object, nullptr))
            old->Release();
    }

private:
    T* m_object = nullptr;
};

} // namespace platform
