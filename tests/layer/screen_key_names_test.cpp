// Virtual keys and characters of keysyms.
#include "platform/screen/x11/key_names.h"

#include <gtest/gtest.h>

namespace
{

using platform::x11::CharacterOf;
using platform::x11::VirtualKeyOf;
using platform::x11::VirtualKeyOfPlace;

TEST(KeyNames, LettersDigitsAndFunctionKeys)
{
    EXPECT_EQ(VirtualKeyOf('s').code, 'S');
    EXPECT_EQ(VirtualKeyOf('S').code, 'S');
    EXPECT_EQ(VirtualKeyOf('7').code, '7');
    EXPECT_EQ(VirtualKeyOf(0xFFBF).code, VK_F2);
    EXPECT_EQ(VirtualKeyOf(0xFFC7).code, VK_F10);
    EXPECT_EQ(VirtualKeyOf(0x6C6).code, 0) << "Cyrillic letters are named by place";
    EXPECT_EQ(VirtualKeyOfPlace(24), 'Q');
    EXPECT_EQ(VirtualKeyOfPlace(58), 'M');
    EXPECT_EQ(VirtualKeyOfPlace(34), 0) << "beyond the row";
}

TEST(KeyNames, NumberPadDiffersFromTheKeysBesideIt)
{
    EXPECT_EQ(VirtualKeyOf(0xFF52).code, VK_UP);
    EXPECT_TRUE(VirtualKeyOf(0xFF52).extended);
    EXPECT_EQ(VirtualKeyOf(0xFF97).code, VK_UP);
    EXPECT_FALSE(VirtualKeyOf(0xFF97).extended);
    EXPECT_EQ(VirtualKeyOf(0xFFB8).code, VK_NUMPAD0 + 8);
    EXPECT_TRUE(VirtualKeyOf(0xFF8D).extended) << "the pad's Enter";
}

TEST(KeyNames, Characters)
{
    EXPECT_EQ(CharacterOf('a'), U'a');
    EXPECT_EQ(CharacterOf(0xE9), U'é');
    EXPECT_EQ(CharacterOf(0x01000451), U'ё');
    EXPECT_EQ(CharacterOf(0x0101F600), U'\U0001F600');
    EXPECT_EQ(CharacterOf(0xFFB4), U'4');
    EXPECT_EQ(CharacterOf(0xFF52), 0U) << "arrows type nothing";
    EXPECT_EQ(CharacterOf(0xFE51), 0U) << "nor do dead keys";
    EXPECT_EQ(CharacterOf(0x6C6), U'ф') << "through xkbcommon";
}

} // namespace
