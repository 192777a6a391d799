// Names: which may be given, and those of a level's folders.
#include "commands/file_name.h"
#include "commands/folder_names.h"

#include <gtest/gtest.h>

using namespace CustomMenu;
using Names = std::vector<WString>;

namespace
{

TEST(FileName, IsRefusedForItsLengthItsCharactersAndAFullStopAtTheEnd)
{
    EXPECT_FALSE(IsValidFileName(TEXT("")));
    EXPECT_TRUE(IsValidFileName(WString(255, TEXT('x'))));
    EXPECT_FALSE(IsValidFileName(WString(256, TEXT('x'))));
    for (const WCHAR forbidden : WString(TEXT("\\/:><?*|\"")))
        for (std::size_t place = 0; place < 3; ++place)
        {
            WString name = TEXT("abc");
            name[place] = forbidden;
            EXPECT_FALSE(IsValidFileName(name)) << static_cast<int>(forbidden);
        }
    for (LPCWSTR name : {TEXT("a."), TEXT("."), TEXT("..")})
        EXPECT_FALSE(IsValidFileName(name));
}

TEST(FileName, IsOtherwiseTheFileSystemsToRefuse)
{
    for (LPCWSTR name : {TEXT(" "), TEXT("a "), TEXT(".a"), TEXT("CON"), TEXT("a\nb"), TEXT("a. "), TEXT("'a'")})
        EXPECT_TRUE(IsValidFileName(name));
    const WCHAR loneSurrogate[] = {0xD800, 0};
    EXPECT_TRUE(IsValidFileName(loneSurrogate));
}

TEST(FolderNames, OfOneFolderAreListedAsTheyAre)
{
    const FolderListing folder{{TEXT("b"), true}, {TEXT("a:"), true}, {TEXT(""), true}, {TEXT("a"), false}};
    EXPECT_EQ(MergeFolderNames({folder}), (Names{TEXT("b"), TEXT("a:"), TEXT("a")}));
    EXPECT_EQ(MergeFolderNames({FolderListing{}}), Names{});
}

TEST(FolderNames, OfTwoFoldersNameASharedSubFolderOnceAndFilesAsOftenAsTheyAre)
{
    const FolderListing own{{TEXT("Games"), true}, {TEXT("Office"), true}, {TEXT("readme"), false}, {TEXT("x"), false}};
    const FolderListing common{
        {TEXT("Games"), true}, {TEXT("games"), true}, {TEXT("readme"), false}, {TEXT("x"), true}, {TEXT(""), true}};
    EXPECT_EQ(MergeFolderNames({own, common}), (Names{TEXT("Games"), TEXT("Office"), TEXT("readme"), TEXT("x"),
                                                      TEXT("games"), TEXT("readme"), TEXT("x")}))
        << "a file is no folder of the same name, and letter case counts";
}

TEST(FolderNames, WithinOneOfTwoFoldersNeverShadowEachOther)
{
    const FolderListing twice{{TEXT("a"), true}, {TEXT("a"), true}};
    EXPECT_EQ(MergeFolderNames({twice, {}}), (Names{TEXT("a"), TEXT("a")}));
}

TEST(FolderNames, OfTwoFoldersLoseAColonAtTheEndOnceAFolderIsAmongThem)
{
    const FolderListing files{{TEXT("a:"), false}};
    EXPECT_EQ(MergeFolderNames({files, {{TEXT("b"), false}}}), (Names{TEXT("a:"), TEXT("b")}));
    EXPECT_EQ(MergeFolderNames({files, {{TEXT("B"), true}}}), (Names{TEXT("a"), TEXT("B")}));
}

} // namespace
