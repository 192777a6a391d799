// Linked into every test program of the layer: at the end of the process nothing must be left open.
#include "platform/base/handle_table.h"

#include <gtest/gtest.h>

namespace
{

constexpr const char* kKindNames[] = {"windows", "device contexts", "bitmaps", "fonts",       "brushes",      "pens",
                                      "icons",   "cursors",         "menus",   "image lists", "registry keys"};
static_assert(std::size(kKindNames) == static_cast<std::size_t>(platform::HandleKind::Count));

class NoHandlesLeft : public testing::Environment
{
public:
    void TearDown() override
    {
        for (std::size_t kind = 0; kind < std::size(kKindNames); ++kind)
        {
            EXPECT_EQ(platform::LiveHandles(static_cast<platform::HandleKind>(kind)), 0u)
                << kKindNames[kind] << " left open";
        }
    }
};

// gtest deletes it.
[[maybe_unused]] testing::Environment* const g_check = testing::AddGlobalTestEnvironment(new NoHandlesLeft);

} // namespace
