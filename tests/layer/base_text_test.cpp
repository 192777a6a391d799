// UTF-8, UTF-16 and the shell's view of file names.
#include "platform/base/text.h"

#include <gtest/gtest.h>
#include <random>

using namespace platform;

TEST(Text, DecodesWellFormedUtf8AndReplacesTheRest)
{
    EXPECT_EQ(Utf16FromUtf8("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"), u"aé€😀");
    EXPECT_EQ(Utf16FromUtf8("\xC0\xAF"), u"\uFFFD\uFFFD") << "overlong";
    EXPECT_EQ(Utf16FromUtf8("\xED\xA0\x80"), u"\uFFFD\uFFFD\uFFFD") << "surrogate";
    EXPECT_EQ(Utf16FromUtf8("\xF4\x90\x80\x80"), u"\uFFFD\uFFFD\uFFFD\uFFFD") << "above U+10FFFF";
    EXPECT_EQ(Utf16FromUtf8("\xE2\x82x"), u"\uFFFDx") << "cut short: one replacement for the longest valid beginning";
    EXPECT_EQ(Utf16FromUtf8("\xF0\x9F\x98"), u"\uFFFD") << "cut short at the end";
}

TEST(Text, ReplacesLoneSurrogates)
{
    EXPECT_EQ(Utf8FromUtf16(u"é😀"), "\xC3\xA9\xF0\x9F\x98\x80");
    const char16_t lone[] = {0xD83D, u'a', 0xDE00, 0};
    EXPECT_EQ(Utf8FromUtf16(lone), "\xEF\xBF\xBD"
                                   "a\xEF\xBF\xBD");
}

TEST(ShellPath, TurnsSlashesAroundAndKeepsNames)
{
    EXPECT_EQ(ShellPathFromPosix("/home/me/é:x"), u"\\home\\me\\é:x");
    EXPECT_EQ(PosixFromShellPath(u"\\home\\me\\é:x"), "/home/me/é:x");
    EXPECT_EQ(ShellPathFromPosix("a/b"), u"a\\b");
    EXPECT_EQ(ShellNameFromFileName("a\\b\xFF"), u"a\xF05C"
                                                 u"b\xF0FF");
    EXPECT_EQ(ShellPathFromPosix("/a\\b"), u"\\a\xF05C"
                                           u"b");
}

TEST(ShellPath, EveryNameSurvivesTheRoundTrip)
{
    std::vector<std::string> names = {"\\",           "\xEF\x81\x9C",     "\xEF\x82\x80", "\xEF\x83\xBF", "\xC3",
                                      "\xED\xA0\x80", "\xF0\x9F\x98\x80", "\xF0\x9F\x98", "new\nline",    "tail\xC3/"};
    // Bytes near every border of the mapping, in random company.
    const std::string pieces = "a\\\xC3\xA9\xEF\x81\x9C\x80\xFF\xED\xF0\x9F\x82\x83\xBF";
    std::mt19937 random(1);
    for (int i = 0; i < 20000; ++i)
    {
        std::string name;
        for (unsigned length = random() % 12; length != 0; --length)
            name += pieces[random() % pieces.size()];
        names.push_back(name);
    }
    for (const std::string& name : names)
    {
        ASSERT_EQ(FileNameFromShellName(ShellNameFromFileName(name)), name) << testing::PrintToString(name);
        ASSERT_EQ(PosixFromShellPath(ShellPathFromPosix("/x/" + name)), "/x/" + name) << testing::PrintToString(name);
    }
}

TEST(ShellPath, DifferentNamesStayDifferent)
{
    EXPECT_NE(ShellNameFromFileName("\\"), ShellNameFromFileName("\xEF\x81\x9C"));
    EXPECT_NE(ShellNameFromFileName("\xC3"), ShellNameFromFileName("\xEF\x83\x83"));
}
