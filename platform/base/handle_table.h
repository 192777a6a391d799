// Handles: small numbers that name the layer's objects.
//
// A handle's value is 0x100 to 0xFFFFF: above the system-colour pseudo brushes, below every X resource id, so that a
// window handle that is not in the table can be taken for another client's X window. A value is not used again at once
// after its object has gone. The table belongs to the user-interface thread and lives for the whole process, from the
// first static initialiser to the last exit handler.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace platform
{

enum class HandleKind : std::uint8_t
{
    Window,
    DeviceContext,
    Bitmap,
    Font,
    Brush,
    Pen,
    Region,
    Icon,
    Cursor,
    Menu,
    ImageList,
    RegistryKey,
    Count,
};

/// Base of everything that a handle names.
class HandleObject
{
public:
    explicit HandleObject(HandleKind kind) : m_kind(kind) {}
    virtual ~HandleObject() = default;
    HandleObject(const HandleObject&) = delete;
    HandleObject& operator=(const HandleObject&) = delete;
    HandleKind Kind() const { return m_kind; }

    /// Stock and cached objects set this: they are not counted as live and cannot be closed.
    bool permanent = false;

private:
    HandleKind m_kind;
};

/// Takes ownership; returns the new handle's value, 0 when the table is full.
std::uintptr_t InsertHandle(std::unique_ptr<HandleObject> object);
/// The object of a handle, null when the value names none.
HandleObject* FindHandle(std::uintptr_t value);
/// Removes a handle and gives its object back; null when the value names none or a permanent object.
std::unique_ptr<HandleObject> TakeHandle(std::uintptr_t value);
/// Number of open handles of one kind, permanent ones left out.
std::size_t LiveHandles(HandleKind kind);

/// The object of a handle when it is a T (T::handleKind says which kind that is), else null.
template <typename T, typename H>
T* FindObject(H handle)
{
    HandleObject* object = FindHandle(reinterpret_cast<std::uintptr_t>(handle));
    return object != nullptr && object->Kind() == T::handleKind ? static_cast<T*>(object) : nullptr;
}

} // namespace platform
