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
/// Where the table is: every message and every drawing call looks a handle up, so the look-up is in the header.
struct HandleSlots
{
    static constexpr std::uintptr_t kFirst = 0x100; ///< the value of the first slot's handle
    const std::unique_ptr<HandleObject>* objects = nullptr;
    std::size_t count = 0;
};
extern constinit HandleSlots g_handleSlots;

/// The object of a handle, null when the value names none.
inline HandleObject* FindHandle(std::uintptr_t value)
{
    const std::uintptr_t slot = value - HandleSlots::kFirst;
    return slot < g_handleSlots.count ? g_handleSlots.objects[slot].get() : nullptr;
}
/// Removes a handle and gives its object back; null when the value names none or a permanent object.
std::unique_ptr<HandleObject> TakeHandle(std::uintptr_t value);
/// Number of open handles of one kind, permanent ones left out.
std::size_t LiveHandles(HandleKind kind);

/// The object of a handle when it is a T (T::kHandleKind says which kind that is), else null.
template <typename T, typename H>
T* FindObject(H handle)
{
    HandleObject* object = FindHandle(reinterpret_cast<std::uintptr_t>(handle));
    return object != nullptr && object->Kind() == T::kHandleKind ? static_cast<T*>(object) : nullptr;
}

} // namespace platform
