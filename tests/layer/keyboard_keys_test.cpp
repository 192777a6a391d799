// Virtual keys and text of keys in several layouts, by their places on the keyboard (evdev's code + 8).
#include "platform/base/unique_fd.h"
#include "platform/keyboard/key_translator.h"

#include "windows.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <unistd.h>

namespace
{

using platform::KeyMeaning;

constexpr std::uint16_t kShiftDown = 0x01;
constexpr std::uint16_t kNumLockOn = 0x10;
constexpr std::uint16_t kAltGrDown = 0x80;
constexpr std::uint16_t kSecondLayout = 1U << 13;
constexpr xkb_keycode_t kQ = 24, kE = 26, kA = 38, kS = 39, kL = 46, kApostrophe = 48, kX = 53, kC = 54, kP = 33;
constexpr xkb_keycode_t kOne = 10, kSpaceBar = 65, kRightAlt = 108;

class Keys : public testing::Test
{
protected:
    void SetLayout(const char* layout, const char* variant = "", const char* options = "")
    {
        const xkb_rule_names names{"evdev", "pc105", layout, variant, options};
        m_translator.SetLayout(
            platform::XkbKeymap(xkb_keymap_new_from_names(m_context.get(), &names, XKB_KEYMAP_COMPILE_NO_FLAGS)));
    }
    KeyMeaning Press(xkb_keycode_t key, std::uint16_t state = 0) { return m_translator.Translate(key, state, true); }
    std::u16string Text(xkb_keycode_t key, std::uint16_t state = 0) { return Press(key, state).text; }

    platform::XkbContext m_context{xkb_context_new(XKB_CONTEXT_NO_FLAGS)};
    platform::KeyTranslator m_translator{m_context.get(), "en_US.UTF-8"};
};

} // namespace

TEST_F(Keys, AreNamedByWhatTheyTypeOrByTheirPlace)
{
    struct Case
    {
        const char* layout;
        xkb_keycode_t key;
        std::uint16_t state;
        BYTE name;
        const char16_t* text;
    };
    constexpr BYTE kF2 = 0x71, kF10 = 0x79;
    for (const Case& expected :
         {Case{"us", kQ, 0, 'Q', u"q"}, Case{"us", kQ, kShiftDown, 'Q', u"Q"}, Case{"de", 29, 0, 'Z', u"z"},
          Case{"fr", kQ, 0, 'A', u"a"}, Case{"fr", kOne, 0, '1', u"&"}, Case{"fr", kOne, kShiftDown, '1', u"1"},
          Case{"ru", kS, 0, 'S', u"ы"}, Case{"us,ru", kC, 0, 'C', u"c"}, Case{"us,ru", kC, kSecondLayout, 'C', u"с"},
          Case{"ru,us", kQ, 0, 'Q', u"й"}, Case{"de", kE, kAltGrDown, 'E', u"€"}, Case{"us", 68, 0, kF2, u""},
          Case{"us", 76, 0, kF10, u""}, Case{"us", 36, 0, VK_RETURN, u""}, Case{"us", 9, 0, VK_ESCAPE, u""},
          Case{"us", 22, 0, VK_BACK, u""}})
    {
        SetLayout(expected.layout);
        const KeyMeaning meaning = Press(expected.key, expected.state);
        EXPECT_EQ(meaning.virtualKey, expected.name) << expected.layout << ' ' << expected.key;
        EXPECT_EQ(std::u16string(meaning.text), expected.text) << expected.layout << ' ' << expected.key;
    }
}

TEST_F(Keys, OfTheNumberPadDifferFromThoseBesideIt)
{
    SetLayout("us");
    struct Case
    {
        xkb_keycode_t key;
        std::uint16_t state;
        BYTE name;
        bool extended;
        const char16_t* text;
    };
    constexpr BYTE kNumpad4 = 0x64, kDivide = 0x6F, kDecimal = 0x6E;
    for (const Case& expected :
         {Case{113, 0, VK_LEFT, true, u""}, Case{83, 0, VK_LEFT, false, u""},
          Case{83, kNumLockOn, kNumpad4, false, u"4"}, Case{104, 0, VK_RETURN, true, u""},
          Case{36, 0, VK_RETURN, false, u""}, Case{115, 0, VK_END, true, u""}, Case{87, 0, VK_END, false, u""},
          Case{119, 0, VK_DELETE, true, u""}, Case{91, 0, VK_DELETE, false, u""},
          Case{91, kNumLockOn, kDecimal, false, u"."}, Case{106, 0, kDivide, true, u"/"}})
    {
        const KeyMeaning meaning = Press(expected.key, expected.state);
        EXPECT_EQ(meaning.virtualKey, expected.name) << expected.key;
        EXPECT_EQ(meaning.extended, expected.extended) << expected.key;
        EXPECT_EQ(std::u16string(meaning.text), expected.text) << expected.key;
    }
}

TEST_F(Keys, DeadKeysTypeWithTheNextKey)
{
    SetLayout("us", "intl");
    EXPECT_EQ(Text(kApostrophe), u"") << "nothing by itself";
    EXPECT_EQ(m_translator.Translate(kApostrophe, 0, false).text[0], 0) << "its release is no part of the sequence";
    const KeyMeaning composed = Press(kE);
    EXPECT_EQ(std::u16string(composed.text), u"é");
    EXPECT_EQ(composed.virtualKey, 'E');
    EXPECT_EQ(Text(kE), u"e") << "the sequence is over";

    Press(kApostrophe);
    EXPECT_EQ(Text(50), u"") << "Shift is no part of a sequence";
    EXPECT_EQ(Text(kA, kShiftDown), u"Á");

    Press(kApostrophe);
    EXPECT_EQ(Text(kQ), u"") << "there is no such letter";
    EXPECT_EQ(Text(kQ), u"q");

    Press(kApostrophe);
    EXPECT_EQ(Text(kSpaceBar), u"'");
}

TEST_F(Keys, TheComposeKeyBeginsSequences)
{
    SetLayout("us", "", "compose:ralt");
    for (const xkb_keycode_t key : {kRightAlt, kApostrophe})
        EXPECT_EQ(Text(key), u"");
    EXPECT_EQ(Text(kE), u"é");
    EXPECT_EQ(Text(kRightAlt), u"");
    for (const xkb_keycode_t key : {kL, kL, kA})
        EXPECT_EQ(Text(key, kShiftDown), u"");
    EXPECT_EQ(Text(kP, kShiftDown), u"\U0001F596") << "a surrogate pair";
}

TEST_F(Keys, ALongTextIsNotCutWithinACharacter)
{
    char path[] = "/tmp/orb-compose-XXXXXX";
    const platform::UniqueFd file(mkstemp(path));
    platform::WriteAll(file.Get(), "<x> : \"fourteen units\U0001F596\"\n");
    setenv("XCOMPOSEFILE", path, 1);
    platform::KeyTranslator own(m_context.get(), "en_US.UTF-8");
    unsetenv("XCOMPOSEFILE");
    unlink(path);
    const xkb_rule_names names{"evdev", "pc105", "us", "", ""};
    own.SetLayout(platform::XkbKeymap(xkb_keymap_new_from_names(m_context.get(), &names, XKB_KEYMAP_COMPILE_NO_FLAGS)));
    EXPECT_EQ(std::u16string(own.Translate(kX, 0, true).text), u"fourteen units");
}

TEST_F(Keys, WithoutALayoutOrSequencesNothingBreaks)
{
    EXPECT_EQ(Press(kQ).virtualKey, 0);
    xkb_context_set_log_level(m_context.get(), XKB_LOG_LEVEL_CRITICAL);
    platform::KeyTranslator plain(m_context.get(), "no such locale");
    const xkb_rule_names names{"evdev", "pc105", "us", "intl", ""};
    plain.SetLayout(
        platform::XkbKeymap(xkb_keymap_new_from_names(m_context.get(), &names, XKB_KEYMAP_COMPILE_NO_FLAGS)));
    EXPECT_EQ(std::u16string(plain.Translate(kX, 0, true).text), u"x");
    EXPECT_EQ(plain.Translate(255, 0, true).virtualKey, 0) << "no such key";
}
