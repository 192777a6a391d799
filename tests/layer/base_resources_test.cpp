// The compiled-resource reader on good and on damaged input.
#include "platform/base/resource_file.h"

#include <gtest/gtest.h>
#include <random>

using namespace platform;

namespace
{

/// Writes entries as a resource compiler does.
class ResBuilder
{
public:
    ResBuilder() { Add(0, 0, {}); }

    void Add(std::uint16_t type, std::uint16_t name, const std::vector<std::uint16_t>& data)
    {
        Begin(data.size() * 2, 32);
        Number(type);
        Number(name);
        End(data);
    }

    void AddNamed(std::uint16_t type, std::u16string_view name, const std::vector<std::uint16_t>& data)
    {
        const std::size_t ids = 4 + (name.size() + 1) * 2;
        Begin(data.size() * 2, 8 + (ids + 3) / 4 * 4 + 16);
        Number(type);
        for (const char16_t unit : name)
            Put16(unit);
        Put16(0);
        End(data);
    }

    std::vector<unsigned char> bytes;

private:
    void Begin(std::size_t dataSize, std::size_t headerSize)
    {
        Put32(dataSize);
        Put32(headerSize);
    }
    void End(const std::vector<std::uint16_t>& data)
    {
        Align();
        bytes.resize(bytes.size() + 16);
        for (const std::uint16_t unit : data)
            Put16(unit);
        Align();
    }
    void Number(std::uint16_t value)
    {
        Put16(0xFFFF);
        Put16(value);
    }
    void Put16(unsigned value)
    {
        bytes.push_back(static_cast<unsigned char>(value));
        bytes.push_back(static_cast<unsigned char>(value >> 8));
    }
    void Put32(std::size_t value)
    {
        Put16(value & 0xFFFF);
        Put16(static_cast<unsigned>(value >> 16));
    }
    void Align() { bytes.resize((bytes.size() + 3) / 4 * 4); }
};

std::vector<ResourceEntry> ReadAll(ResourceBytes file)
{
    std::vector<ResourceEntry> entries;
    std::size_t offset = 0;
    while (auto entry = NextResource(file, offset))
        entries.push_back(std::move(*entry));
    return entries;
}

ResBuilder Sample()
{
    ResBuilder builder;
    builder.Add(10, 7, {1, 2, 3});
    builder.AddNamed(10, u"odd", {4});
    builder.Add(6, 8, {0, 2, 'h', 'i', 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 'z'});
    return builder;
}

} // namespace

TEST(ResourceFile, ListsEntriesWithNumbersAndNames)
{
    const ResBuilder sample = Sample();
    const auto entries = ReadAll(sample.bytes);
    ASSERT_EQ(entries.size(), 4u);
    EXPECT_EQ(entries[1].type.number, 10);
    EXPECT_EQ(entries[1].name.number, 7);
    EXPECT_EQ(entries[1].data.size(), 6u);
    EXPECT_EQ(entries[2].name.text, u"ODD") << "names are upper-cased";
    EXPECT_EQ(StringInBlock(entries[3].data, 113), u"hi");
    EXPECT_EQ(StringInBlock(entries[3].data, 112), u"");
    EXPECT_EQ(StringInBlock(entries[3].data, 127), u"z");
}

TEST(ResourceFile, ReadsIdentifiers)
{
    EXPECT_EQ(ResourceIdFromText(u"#111"), (ResourceId{111, {}}));
    EXPECT_EQ(ResourceIdFromText(u"skin"), (ResourceId{0, u"SKIN"}));
    EXPECT_EQ(ResourceIdFromText(u"#1x"), (ResourceId{0, u"#1X"}));
    EXPECT_EQ(ResourceIdFromText(u"#99999999999"), (ResourceId{0, u"#99999999999"}));
}

// Whatever the file holds, the reader stays inside it and comes to an end (the sanitizers watch).
TEST(ResourceFile, SurvivesTruncationAndDamage)
{
    const std::vector<unsigned char> good = Sample().bytes;
    constexpr std::size_t kPadding = 2;
    for (std::size_t size = 0; size < good.size() - kPadding; ++size)
    {
        const std::vector<unsigned char> cut(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_LT(ReadAll(cut).size(), 4u) << "cut to " << size;
    }
    std::mt19937 random(2);
    for (int round = 0; round < 5000; ++round)
    {
        std::vector<unsigned char> damaged = good;
        for (int hit = 0; hit < 3; ++hit)
            damaged[random() % damaged.size()] = static_cast<unsigned char>(random() % 3 != 0 ? random() : 0xFF);
        for (const ResourceEntry& entry : ReadAll(damaged))
            StringInBlock(entry.data, static_cast<unsigned>(random()));
    }
}
