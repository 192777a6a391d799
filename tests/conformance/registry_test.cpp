// The registry calls: keys, values, sizes, types, errors.
#include <windows.h>

#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace
{

constexpr const WCHAR* kRoot = TEXT("Software\\OrbLauncherConformance");

class Registry : public testing::Test
{
protected:
    Registry() { RegDeleteTreeW(HKEY_CURRENT_USER, kRoot); }
    ~Registry() override { RegDeleteTreeW(HKEY_CURRENT_USER, kRoot); }
};

/// A key opened or created for the length of a test.
class Key
{
public:
    explicit Key(const WCHAR* path, HKEY under = HKEY_CURRENT_USER, REGSAM access = KEY_READ | KEY_WRITE)
    {
        status =
            RegCreateKeyExW(under, path, 0, nullptr, REG_OPTION_NON_VOLATILE, access, nullptr, &handle, &disposition);
    }
    ~Key()
    {
        if (status == ERROR_SUCCESS)
            RegCloseKey(handle);
    }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;

    LSTATUS Set(const WCHAR* name, DWORD type, const std::vector<BYTE>& data) const
    {
        return RegSetValueExW(handle, name, 0, type, data.data(), static_cast<DWORD>(data.size()));
    }

    HKEY handle = nullptr;
    DWORD disposition = 0;
    LSTATUS status;
};

LSTATUS OpenStatus(const WCHAR* path, HKEY under = HKEY_CURRENT_USER)
{
    HKEY key = nullptr;
    const LSTATUS status = RegOpenKeyExW(under, path, 0, KEY_READ, &key);
    if (status == ERROR_SUCCESS)
        RegCloseKey(key);
    return status;
}

struct Answer
{
    LSTATUS status;
    DWORD type;
    std::vector<BYTE> data;
};

Answer Query(HKEY key, const WCHAR* name, DWORD capacity = 100)
{
    Answer answer{0, 12345, std::vector<BYTE>(capacity)};
    DWORD size = capacity;
    answer.status = RegQueryValueExW(key, name, nullptr, &answer.type, answer.data.data(), &size);
    answer.data.resize(answer.status == ERROR_SUCCESS ? size : 0);
    return answer;
}

} // namespace

TEST_F(Registry, KeysAreCreatedWithAllAboveThem)
{
    EXPECT_EQ(OpenStatus(kRoot), ERROR_FILE_NOT_FOUND);
    const Key deep(TEXT("Software\\OrbLauncherConformance\\Layout\\Games"));
    ASSERT_EQ(deep.status, ERROR_SUCCESS);
    EXPECT_EQ(deep.disposition, 1u) << "REG_CREATED_NEW_KEY";
    EXPECT_EQ(OpenStatus(TEXT("Software\\OrbLauncherConformance\\Layout")), ERROR_SUCCESS);
    EXPECT_EQ(Key(TEXT("Software\\OrbLauncherConformance\\Layout")).disposition, 2u) << "REG_OPENED_EXISTING_KEY";
    EXPECT_EQ(OpenStatus(TEXT("Software\\OrbLauncherConformance\\Lay")), ERROR_FILE_NOT_FOUND);
}

TEST_F(Registry, NamesCompareWithoutLetterCase)
{
    const Key key(TEXT("Software\\OrbLauncherConformance\\Gr\x00FC\x00DF"
                       "e"));
    EXPECT_EQ(OpenStatus(TEXT("SOFTWARE\\ORBLAUNCHERCONFORMANCE\\GR\x00DC\x00DF"
                              "E")),
              ERROR_SUCCESS);
    EXPECT_EQ(key.Set(TEXT("Options"), REG_DWORD, {1, 2, 3, 4}), ERROR_SUCCESS);
    EXPECT_EQ(Query(key.handle, TEXT("oPTIONS")).status, ERROR_SUCCESS);
    EXPECT_EQ(key.Set(TEXT("OPTIONS"), REG_DWORD, {5, 6, 7, 8}), ERROR_SUCCESS);
    EXPECT_EQ(Query(key.handle, TEXT("Options")).data, (std::vector<BYTE>{5, 6, 7, 8})) << "one value, not two";
}

TEST_F(Registry, SubKeysAreRelativeAndATrailingSeparatorIsIgnored)
{
    const Key root(kRoot);
    const Key child(TEXT("Layout"), root.handle);
    EXPECT_EQ(OpenStatus(TEXT("Software\\OrbLauncherConformance\\Layout\\")), ERROR_SUCCESS);
    EXPECT_EQ(OpenStatus(TEXT("Layout"), root.handle), ERROR_SUCCESS);
    EXPECT_EQ(OpenStatus(nullptr, child.handle), ERROR_SUCCESS) << "the key itself again";
    EXPECT_EQ(OpenStatus(TEXT(""), child.handle), ERROR_SUCCESS);
}

TEST_F(Registry, ValuesKeepTheirTypeAndBytes)
{
    const Key key(kRoot);
    EXPECT_EQ(key.Set(TEXT("binary"), REG_BINARY, {0, 255, 0, 7}), ERROR_SUCCESS);
    EXPECT_EQ(key.Set(TEXT("none"), REG_NONE, {}), ERROR_SUCCESS);
    EXPECT_EQ(key.Set(TEXT("odd number"), REG_DWORD, {1, 2, 3}), ERROR_SUCCESS) << "nobody checks the length";
    EXPECT_EQ(key.Set(nullptr, REG_BINARY, {9}), ERROR_SUCCESS) << "the default value";

    EXPECT_EQ(Query(key.handle, TEXT("binary")).type, static_cast<DWORD>(REG_BINARY));
    EXPECT_EQ(Query(key.handle, TEXT("binary")).data, (std::vector<BYTE>{0, 255, 0, 7}));
    EXPECT_EQ(Query(key.handle, TEXT("none")).type, static_cast<DWORD>(REG_NONE));
    EXPECT_EQ(Query(key.handle, TEXT("none")).status, ERROR_SUCCESS);
    EXPECT_TRUE(Query(key.handle, TEXT("none")).data.empty());
    EXPECT_EQ(Query(key.handle, TEXT("odd number")).data.size(), 3u);
    EXPECT_EQ(Query(key.handle, TEXT("")).data, std::vector<BYTE>{9});
    EXPECT_EQ(Query(key.handle, TEXT("missing")).status, ERROR_FILE_NOT_FOUND);
}

TEST_F(Registry, LargeValuesComeBackWhole)
{
    const Key key(kRoot);
    std::vector<BYTE> large(1 << 20);
    for (std::size_t i = 0; i < large.size(); ++i)
        large[i] = static_cast<BYTE>(i * 7 + i / 256);
    ASSERT_EQ(key.Set(TEXT("large"), REG_BINARY, large), ERROR_SUCCESS);
    EXPECT_TRUE(Query(key.handle, TEXT("large"), 1 << 20).data == large);
}

TEST_F(Registry, SizesAreTold)
{
    const Key key(kRoot);
    key.Set(TEXT("v"), REG_BINARY, {1, 2, 3, 4, 5});
    DWORD type = 0;
    DWORD size = 77;
    EXPECT_EQ(RegQueryValueExW(key.handle, TEXT("v"), nullptr, &type, nullptr, &size), ERROR_SUCCESS);
    EXPECT_EQ(size, 5u);
    EXPECT_EQ(type, static_cast<DWORD>(REG_BINARY));

    BYTE buffer[5] = {42, 42, 42, 42, 42};
    size = 4;
    EXPECT_EQ(RegQueryValueExW(key.handle, TEXT("v"), nullptr, &type, buffer, &size), ERROR_MORE_DATA);
    EXPECT_EQ(size, 5u);
    size = 5;
    EXPECT_EQ(RegQueryValueExW(key.handle, TEXT("v"), nullptr, nullptr, buffer, &size), ERROR_SUCCESS);
    EXPECT_EQ(buffer[4], 5);
    EXPECT_EQ(RegQueryValueExW(key.handle, TEXT("v"), nullptr, nullptr, nullptr, nullptr), ERROR_SUCCESS);
    EXPECT_EQ(RegQueryValueExW(key.handle, TEXT("v"), nullptr, nullptr, buffer, nullptr), ERROR_INVALID_PARAMETER);
}

TEST_F(Registry, RightsAreThoseAskedFor)
{
    const Key key(kRoot);
    HKEY reading = nullptr;
    ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, kRoot, 0, KEY_READ, &reading), ERROR_SUCCESS);
    const BYTE byte = 1;
    EXPECT_EQ(RegSetValueExW(reading, TEXT("v"), 0, REG_BINARY, &byte, 1), ERROR_ACCESS_DENIED);
    RegCloseKey(reading);
    HKEY writing = nullptr;
    ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, kRoot, 0, KEY_SET_VALUE, &writing), ERROR_SUCCESS);
    EXPECT_EQ(RegSetValueExW(writing, TEXT("v"), 0, REG_BINARY, &byte, 1), ERROR_SUCCESS);
    EXPECT_EQ(Query(writing, TEXT("v")).status, ERROR_ACCESS_DENIED);
    RegCloseKey(writing);
}

TEST_F(Registry, DeletingTakesValuesAndWholeTrees)
{
    const Key root(kRoot);
    root.Set(TEXT("v"), REG_BINARY, {1});
    EXPECT_EQ(RegDeleteValueW(root.handle, TEXT("V")), ERROR_SUCCESS);
    EXPECT_EQ(RegDeleteValueW(root.handle, TEXT("v")), ERROR_FILE_NOT_FOUND);

    const WCHAR* const neighbour = TEXT("Software\\OrbLauncherConformance\\Layout2");
    const Key child(TEXT("Software\\OrbLauncherConformance\\Layout\\a\\b"));
    const Key other(neighbour);
    other.Set(TEXT("v"), REG_BINARY, {2});
    EXPECT_EQ(RegDeleteTreeW(root.handle, TEXT("Layout")), ERROR_SUCCESS);
    EXPECT_EQ(OpenStatus(TEXT("Software\\OrbLauncherConformance\\Layout")), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(OpenStatus(neighbour), ERROR_SUCCESS) << "a longer name is no sub-key";
    EXPECT_EQ(Query(other.handle, TEXT("v")).status, ERROR_SUCCESS);
    EXPECT_EQ(RegDeleteTreeW(root.handle, TEXT("Layout")), ERROR_FILE_NOT_FOUND);
}

TEST_F(Registry, BadHandlesAreRefused)
{
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyExW(nullptr, kRoot, 0, KEY_READ, &key), ERROR_INVALID_HANDLE);
    EXPECT_EQ(RegCloseKey(nullptr), ERROR_INVALID_HANDLE);
    EXPECT_EQ(Query(nullptr, TEXT("v")).status, ERROR_INVALID_HANDLE);
    EXPECT_EQ(RegCloseKey(HKEY_CURRENT_USER), ERROR_SUCCESS);
}
