// What is dragged out of a folder: the items' data, their picture, and who says when the drag ends.
#include "tests/headless/headless.h"
#include "tests/layer/dragged_data.h"
#include "tests/layer/file_work_desk.h"
#include "tests/layer/windowing_desk.h"
#include "tests/scenarios/failing.h"

#include "windows.h"

#include "platform/base/fault_points.h"
#include "platform/base/handle_table.h"
#include "platform/ole/data_object.h"
#include "platform/shell/dropped_content.h"
#include "platform/shell/item_array.h"

#include <gtest/gtest.h>

using namespace shell_test;
using namespace platform;
namespace fs = std::filesystem;

namespace
{

using Paths = std::vector<std::string>;

struct ItemDrag : testing::Test
{
    ItemDrag()
    {
        Write(m_folder / "a b.txt", "content");
        Write(m_folder / "\xFF", "not UTF-8");
        fs::create_directory(m_folder / "Folder");
    }
    ~ItemDrag() override { headless::Reset(); }

    /// The data object of items of the folder, as the launcher asks for it; null when it is refused.
    Com<IDataObject> DataOf(const std::vector<const char*>& names) const
    {
        std::vector<List> whole;
        std::vector<LPCITEMIDLIST> items;
        for (const char* name : names)
            items.push_back(ILFindLastID(whole.emplace_back(Parse(m_folder / name)).get()));
        void* data = nullptr;
        Bind(Parse(m_folder).get())
            ->GetUIObjectOf(nullptr, static_cast<UINT>(items.size()), items.data(), IID_IDataObject, nullptr, &data);
        return Taken<IDataObject>(data);
    }
    static std::string Content(IDataObject& data, const char* format)
    {
        return DataAs(data, FormatNamed(format)).value_or("(none)");
    }

    const fs::path m_folder = NewFolder();
};

} // namespace

TEST_F(ItemDrag, IsOfferedInEveryFormat)
{
    const Com<IDataObject> data = DataOf({"a b.txt", "Folder"});
    ASSERT_NE(data, nullptr);
    const std::string folder = m_folder.native();
    EXPECT_EQ(Content(*data, "text/uri-list"), "file://" + folder + "/a%20b.txt\r\nfile://" + folder + "/Folder\r\n");
    EXPECT_EQ(Content(*data, "x-special/gnome-copied-files"),
              "copy\nfile://" + folder + "/a%20b.txt\nfile://" + folder + "/Folder");
    for (const char* text : {"text/plain;charset=utf-8", "UTF8_STRING", "text/plain"})
        EXPECT_EQ(Content(*data, text), folder + "/a b.txt\n" + folder + "/Folder") << text;
    const std::string block = Content(*data, "Shell IDList Array");
    EXPECT_EQ(PathsInItemArray(block), (Paths{folder + "/a b.txt", folder + "/Folder"}));
    EXPECT_EQ(ReadDropped(*data).paths, (Paths{folder + "/a b.txt", folder + "/Folder"}));
    EXPECT_EQ(Content(*data, "Preferred DropEffect"), "(none)");
    FORMATETC format = MemoryFormat(FormatNamed("Shell IDList Array"));
    EXPECT_EQ(data->QueryGetData(&format), S_OK);
    const auto owner = As<IDataObjectAsyncCapability>(*data, IID_IDataObjectAsyncCapability);
    ASSERT_NE(owner, nullptr);
    BOOL mode = TRUE;
    EXPECT_EQ(owner->SetAsyncMode(FALSE), S_OK);
    EXPECT_EQ(owner->GetAsyncMode(&mode), S_OK);
    EXPECT_FALSE(mode);
}

TEST_F(ItemDrag, ANameThatIsNoTextIsCarriedWhole)
{
    const Com<IDataObject> data = DataOf({"\xFF"});
    EXPECT_EQ(Content(*data, "text/uri-list"), "file://" + m_folder.native() + "/%FF\r\n");
    EXPECT_EQ(ReadDropped(*data).paths, Paths{(m_folder / "\xFF").native()});
}

TEST_F(ItemDrag, ABlockIsFollowedOnlyWithinItself)
{
    const std::string whole = Content(*DataOf({"a b.txt", "Folder"}), "Shell IDList Array");
    for (std::size_t size = 0; size < whole.size(); ++size)
        EXPECT_LE(PathsInItemArray(whole.substr(0, size)).size(), 0u) << size;
    for (std::size_t at = 0; at < whole.size(); ++at) // the sanitizers watch
    {
        std::string changed = whole;
        changed[at] = '\x7F';
        static_cast<void>(PathsInItemArray(changed));
    }
    EXPECT_EQ(PathsInItemArray(ItemArrayOfPaths({(m_folder / "Folder").native(), (m_folder / "gone").native()})),
              Paths{(m_folder / "Folder").native()});
    EXPECT_EQ(ItemArrayOfPaths({"/gone"}), "");
}

TEST_F(ItemDrag, AnItemHasAPictureOfTheSizeAskedFor)
{
    const auto bitmaps = LiveHandles(HandleKind::Bitmap);
    void* object = nullptr;
    ASSERT_EQ(SHCreateItemFromIDList(Parse(m_folder / "Folder").get(), IID_IShellItem, &object), S_OK);
    const auto factory = As<IShellItemImageFactory>(*Taken<IShellItem>(object), IID_IShellItemImageFactory);
    ASSERT_NE(factory, nullptr);
    HBITMAP bitmap = nullptr;
    ASSERT_EQ(factory->GetImage({96, 120}, SIIGBF_RESIZETOFIT, &bitmap), S_OK);
    DIBSECTION section{};
    ASSERT_NE(GetObjectW(bitmap, sizeof section, &section), 0);
    EXPECT_EQ(section.dsBm.bmWidth, 96);
    EXPECT_EQ(section.dsBm.bmHeight, 96);
    EXPECT_EQ(section.dsBm.bmBitsPixel, 32);
    const auto* pixels = static_cast<const std::uint32_t*>(section.dsBm.bmBits);
    std::size_t opaque = 0;
    for (int i = 0; i < 96 * 96; ++i)
    {
        const std::uint32_t alpha = pixels[i] >> 24;
        opaque += alpha == 0xFF;
        for (const int shift : {0, 8, 16})
            ASSERT_LE((pixels[i] >> shift) & 0xFF, alpha) << "premultiplied";
    }
    EXPECT_GT(opaque, 96u * 96 / 4);
    EXPECT_EQ(pixels[0] >> 24, 0u) << "the corner of a folder's picture shows what is below";
    EXPECT_TRUE(DeleteObject(bitmap));
    EXPECT_EQ(factory->GetImage({0, 96}, SIIGBF_RESIZETOFIT, &bitmap), E_INVALIDARG);
    EXPECT_EQ(LiveHandles(HandleKind::Bitmap), bitmaps);
}

TEST_F(ItemDrag, CallsThatFailLeaveNothing)
{
    const auto objects = LiveShellObjects().load();
    const List list = Parse(m_folder / "Folder");
    const auto tryAll = [&]
    {
        void* object = nullptr;
        HBITMAP bitmap = nullptr;
        if (FAILED(SHCreateItemFromIDList(list.get(), IID_IShellItemImageFactory, &object)))
            return object == nullptr;
        const auto factory = Taken<IShellItemImageFactory>(object);
        return FAILED(factory->GetImage({96, 96}, SIIGBF_RESIZETOFIT, &bitmap)) && bitmap == nullptr;
    };
    for (const char* call : {"SHCreateItemFromIDList", "IShellItemImageFactory::GetImage", "CreateDIBSection"})
    {
        const Failing refused(call);
        EXPECT_TRUE(tryAll()) << call;
    }
    DWORD effect = 7;
    EXPECT_EQ(SHDoDragDrop(nullptr, nullptr, nullptr, DROPEFFECT_COPY, &effect), E_INVALIDARG);
    void* none = this;
    EXPECT_EQ(SHCreateItemFromIDList(nullptr, IID_IShellItem, &none), E_INVALIDARG);
    EXPECT_EQ(none, nullptr);
    EXPECT_EQ(LiveShellObjects().load(), objects);
}

using ShellSource = Desk;

TEST_F(ShellSource, EscapeOrAnotherButtonEndsItAndTheReleaseOfItsButtonDrops)
{
    using headless::PressButton, headless::ReleaseButton;
    using enum screen::Button;
    const Com<IDataObject> data(new DraggedData(DraggedData::Forms{}));
    ShownPopup(0, 0, 100, 100);
    headless::MoveMouse(10, 10);
    const auto drag = [&](std::vector<screen::Button> pressed, const std::function<void()>& then)
    {
        for (const screen::Button button : pressed)
            PressButton(button);
        Pump();
        int waits = 0;
        headless::SetIdleHandler(
            [&]
            {
                if (++waits == 1)
                    then();
                else if (waits == 50) // nothing has come of it
                    PostQuitMessage(0);
                return true;
            });
        DWORD effect = 99;
        const HRESULT result = SHDoDragDrop(nullptr, data.get(), nullptr, DROPEFFECT_COPY, &effect);
        EXPECT_EQ(effect, DWORD{DROPEFFECT_NONE}) << "nobody takes it";
        EXPECT_LT(waits, 50);
        headless::SetIdleHandler(nullptr);
        for (const screen::Button button : {Left, Right, Middle})
            ReleaseButton(button);
        headless::ReleaseKey(VK_ESCAPE);
        Pump();
        return result;
    };
    for (const screen::Button button : {Left, Right, Middle})
    {
        const screen::Button other = button == Left ? Right : Left;
        EXPECT_EQ(drag(
                      {button}, [&] { ReleaseButton(button); }),
                  DRAGDROP_S_DROP);
        EXPECT_EQ(drag(
                      {button}, [] { headless::PressKey(VK_ESCAPE); }),
                  DRAGDROP_S_CANCEL);
        EXPECT_EQ(drag({button}, [&] { PressButton(other); }), DRAGDROP_S_CANCEL);
        const auto atOnce = [&]
        {
            headless::PressKey(VK_ESCAPE);
            ReleaseButton(button);
        };
        EXPECT_EQ(drag({button}, atOnce), DRAGDROP_S_CANCEL) << "Escape comes first";
        EXPECT_EQ(drag({button, other}, [] {}), DRAGDROP_S_CANCEL) << "both are down already";
        EXPECT_EQ(drag({}, [] {}), DRAGDROP_S_DROP) << "it is up already";
    }
}
