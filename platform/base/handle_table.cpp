// The table that gives objects their handle values.
#include "platform/base/handle_table.h"

#include <deque>
#include <vector>

namespace platform
{

constinit HandleSlots g_handleSlots;

namespace
{

constexpr std::uintptr_t kFirst = HandleSlots::kFirst;
constexpr std::size_t kCapacity = 0x100000 - kFirst;
// A freed value rests until this many others have been freed after it, so that a stale handle is noticed rather than
// taken for a newer object.
constexpr std::size_t kResting = 64;

struct Table
{
    std::vector<std::unique_ptr<HandleObject>> slots;
    std::deque<std::size_t> freed;

    std::size_t TakeSlot();
};

// Never destroyed: exit handlers of the program still close handles.
Table& TheTable()
{
    static Table& table = *new Table;
    return table;
}

std::size_t Table::TakeSlot()
{
    if (freed.size() > kResting || (slots.size() == kCapacity && !freed.empty()))
    {
        const std::size_t slot = freed.front();
        freed.pop_front();
        return slot;
    }
    if (slots.size() == kCapacity)
        return kCapacity;
    slots.emplace_back();
    g_handleSlots = {slots.data(), slots.size()};
    return slots.size() - 1;
}

} // namespace

std::uintptr_t InsertHandle(std::unique_ptr<HandleObject> object)
{
    Table& table = TheTable();
    const std::size_t slot = table.TakeSlot();
    if (slot == kCapacity)
        return 0;
    table.slots[slot] = std::move(object);
    return slot + kFirst;
}

std::unique_ptr<HandleObject> TakeHandle(std::uintptr_t value)
{
    const HandleObject* object = FindHandle(value);
    if (object == nullptr || object->permanent)
        return nullptr;
    Table& table = TheTable();
    const std::size_t slot = value - kFirst;
    table.freed.push_back(slot);
    return std::move(table.slots[slot]);
}

std::size_t LiveHandles(HandleKind kind)
{
    std::size_t count = 0;
    for (const auto& object : TheTable().slots)
        count += object != nullptr && object->Kind() == kind && !object->permanent;
    return count;
}

} // namespace platform
