// Owner of one reference to a COM interface.
#pragma once

#include <unknwn.h>

#include <type_traits>
#include <utility>

/// Holds one reference, released at the end. Move-only; a second reference is taken with AddRef by whoever wants one.
template <typename T>
class ComPtr
{
public:
    ComPtr() = default;
    ~ComPtr() { Reset(); }
    ComPtr(ComPtr&& other) noexcept : m_object(other.Detach()) {}
    ComPtr& operator=(ComPtr&& other) noexcept
    {
        if (this != &other)
        {
            Reset();
            m_object = other.Detach();
        }
        return *this;
    }

    T* Get() const { return m_object; }
    T* operator->() const { return m_object; }
    explicit operator bool() const { return m_object != nullptr; }
    T* Detach() { return std::exchange(m_object, nullptr); }
    void Reset()
    {
        if (T* old = Detach())
            old->Release();
    }
    /// For out-parameters: releases what is held and gives the place to write the new reference to.
    T** Receive()
    {
        Reset();
        return &m_object;
    }
    void** ReceiveVoid() { return reinterpret_cast<void**>(Receive()); }

private:
    T* m_object = nullptr;
};

static_assert(!std::is_copy_constructible_v<ComPtr<IUnknown>>);
