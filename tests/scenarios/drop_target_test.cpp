// Drags over a level and drops on it, as OLE reports them: effects, insertion mark, opening on rest, where what comes
// goes, and what is refused.
#include "tests/scenarios/desk.h"
#include "tests/scenarios/staged_drop.h"

#include "app/launcher_state.h"
#include "dragdrop/drag_rules.h"

#include <gtest/gtest.h>

#include <optional>

using namespace std::chrono_literals;
using namespace CustomMenu;
using Calls = std::vector<StagedCall>;

namespace
{

constexpr DWORD kCopy = DROPEFFECT_COPY;
constexpr DWORD kMove = DROPEFFECT_MOVE;
constexpr DWORD kLink = DROPEFFECT_LINK;

enum Half
{
    Upper,
    Lower,
};

class Dragging : public testing::Test
{
protected:
    Dragging()
    {
        for (const char* name : {"A", "B", "C", "D", "E", "Games/chess", "Music/song"})
            m_desk.MakeFile(name);
        m_desk.Launch("100,700,0");
    }

    CustomBar& Root() { return m_desk.Level(0); }
    void GiveFolder(CustomBar& level, StagedDropFolder& folder)
    {
        folder.AddRef();
        *level.m_folder.Receive() = &folder;
    }
    POINTL On(const std::string& item, Half half, int level = 0)
    {
        const RECT rect = m_desk.ItemBounds(item, level);
        return {rect.left + 20, half == Upper ? rect.top + 2 : rect.bottom - 2};
    }
    /// Each call comes with a message of its own time.
    void TakeMessage(int level = 0)
    {
        PostMessageW(m_desk.Level(level).m_hWnd, WM_NULL, 0, 0);
        m_desk.Settle();
    }
    DWORD Enter(POINTL point, DWORD offered = kAllEffects, DWORD keys = MK_LBUTTON, int level = 0)
    {
        TakeMessage(level);
        EXPECT_EQ(m_desk.Level(level).DragEnter(&m_data, keys, point, &offered), S_OK);
        return offered;
    }
    DWORD Over(POINTL point, DWORD offered = kAllEffects, DWORD keys = MK_LBUTTON, int level = 0)
    {
        TakeMessage(level);
        EXPECT_EQ(m_desk.Level(level).DragOver(keys, point, &offered), S_OK);
        return offered;
    }
    DWORD Drop(POINTL point, DWORD offered = kAllEffects, DWORD keys = 0, int level = 0)
    {
        TakeMessage(level);
        EXPECT_EQ(m_desk.Level(level).Drop(&m_data, keys, point, &offered), S_OK);
        return offered;
    }
    DWORD DragAndDrop(POINTL point, DWORD keys = MK_LBUTTON, int level = 0)
    {
        Enter(point, kAllEffects, keys, level);
        Over(point, kAllEffects, keys, level);
        return Drop(point, kAllEffects, keys & ~static_cast<DWORD>(MK_LBUTTON | MK_RBUTTON), level);
    }
    /// The item beside which the mark shows, with "<" before it or ">" after it; empty for no mark.
    std::string Mark(int level = 0)
    {
        TBINSERTMARK mark{};
        m_desk.Level(level).SendToolbar(TB_GETINSERTMARK, 0, reinterpret_cast<LPARAM>(&mark));
        if (mark.iButton < 0)
            return {};
        const std::string item = m_desk.Items(level).at(static_cast<std::size_t>(mark.iButton));
        return mark.dwFlags == TBIMHT_AFTER ? item + ">" : "<" + item;
    }
    void OpenGames()
    {
        m_desk.RestOn("Games", 0);
        m_desk.Advance(500ms);
        ASSERT_EQ(m_desk.Levels(), 2);
    }
    /// As if the level itself dragged its item.
    void DragItem(CustomBar& level, int index)
    {
        g_launcher.g_operationBar = &level;
        level.m_dragIndex = index;
    }

    Desk m_desk;
    StagedData m_data;
};

// --- over a level

TEST_F(Dragging, AnsweredByWhatTheKeysLeaveOfTheOffer)
{
    const POINTL point = On("B", Upper);
    struct Row
    {
        DWORD keys;
        DWORD outside;
        DWORD own;
    };
    for (const auto& [keys, outside, own] : {Row{0, kLink, kAllEffects},
                                             {MK_CONTROL, kCopy, kCopy},
                                             {MK_SHIFT, kMove, kMove},
                                             {MK_CONTROL | MK_SHIFT, kLink, kLink}})
    {
        g_launcher.g_operationBar = nullptr;
        EXPECT_EQ(Enter(point, kAllEffects, keys), outside);
        EXPECT_EQ(Over(point, kAllEffects, keys), outside);
        g_launcher.g_operationBar = &Root();
        EXPECT_EQ(Over(point, kAllEffects, keys), own);
        g_launcher.g_operationBar = nullptr;
        Root().DragLeave();
    }
    EXPECT_EQ(Enter(point, kCopy | kLink, MK_SHIFT), 0u);
    Root().DragLeave();
}

TEST_F(Dragging, LevelIsNoLongerAboveAllOtherWindows)
{
    ASSERT_NE(GetWindowLongPtrW(Root().m_hWnd, GWL_EXSTYLE) & WS_EX_TOPMOST, 0);
    Enter(On("B", Upper));
    EXPECT_EQ(GetWindowLongPtrW(Root().m_hWnd, GWL_EXSTYLE) & WS_EX_TOPMOST, 0);
    Root().DragLeave();
}

TEST_F(Dragging, MarkFollowsThePointAndGoesWithTheDrag)
{
    Enter(On("B", Upper));
    EXPECT_EQ(Mark(), "") << "not before the first DragOver";
    Over(On("B", Upper));
    EXPECT_EQ(Mark(), "<B");
    Over(On("B", Lower));
    EXPECT_EQ(Mark(), "B>");
    const RECT bounds = m_desk.Bounds(0);
    Over({bounds.right + 50, bounds.top});
    EXPECT_EQ(Mark(), "");
    EXPECT_EQ(Root().m_dropHoverIndex, -1);
    Over(On("D", Lower));
    Enter(On("D", Lower));
    EXPECT_EQ(m_data.references, 2) << "a second enter holds the data once";
    Over(On("D", Lower));
    Root().DragLeave();
    EXPECT_EQ(Mark(), "");
    EXPECT_EQ(Root().m_insertMarkToolbar, nullptr);
    EXPECT_EQ(m_data.references, 1);
}

TEST_F(Dragging, WhatIsNoShellItemsIsRefusedButMovesTheMarkAndOpensFolders)
{
    m_data.isShellItems = false;
    const POINTL games = On("Games", Lower);
    EXPECT_EQ(Enter(games), kLink) << "entering asks nothing";
    EXPECT_EQ(m_data.asked.cfFormat, 0);
    EXPECT_EQ(Over(games), 0u);
    EXPECT_EQ(m_data.asked.dwAspect, static_cast<DWORD>(DVASPECT_CONTENT));
    EXPECT_EQ(m_data.asked.lindex, -1);
    EXPECT_EQ(m_data.asked.tymed, static_cast<DWORD>(TYMED_HGLOBAL));
    EXPECT_EQ(Mark(), "Games>");
    m_desk.Advance(500ms);
    EXPECT_EQ(Over(games), 0u);
    EXPECT_EQ(m_desk.Levels(), 2);
    Root().DragLeave();
}

TEST_F(Dragging, RestingOpensAFolderAfterMoreThanTheDelayAndOnce)
{
    const auto delay = std::chrono::milliseconds(g_launcher.m_menuShowDelay);
    const POINTL games = On("Games", Upper);
    Enter(games);
    Over(games);
    Root().DragLeave();
    m_desk.Advance(delay * 3);
    Enter(games);
    Over(games);
    EXPECT_EQ(m_desk.Levels(), 1) << "another drag is another wait";
    m_desk.Advance(delay);
    Over(games);
    EXPECT_EQ(m_desk.Levels(), 1) << "not after exactly the delay";
    Over(On("E", Upper));
    Over(games);
    m_desk.Advance(delay);
    Over(games);
    EXPECT_EQ(m_desk.Levels(), 1) << "coming back starts the wait again";
    m_desk.Advance(1ms);
    Over(On("Games", Lower));
    ASSERT_EQ(m_desk.Levels(), 2);
    const CustomBar* const opened = &m_desk.Level(1);
    EXPECT_EQ(m_desk.Items(), Labels{"chess"});
    EXPECT_EQ(m_desk.Hot(1), "") << "as the mouse opens it";
    m_desk.Advance(delay * 3);
    Over(games);
    EXPECT_EQ(&m_desk.Level(1), opened) << "once only";
    Over(On("B", Upper));
    m_desk.Advance(delay * 3);
    Over(On("B", Upper));
    EXPECT_EQ(m_desk.Levels(), 2) << "a plain item opens and closes nothing";
    Root().DragLeave();
}

TEST_F(Dragging, SecondEnterIsAnotherDrag)
{
    StagedDropFolder folder;
    GiveFolder(Root(), folder);
    StagedData text;
    text.isShellItems = false;
    const POINTL point = On("B", Lower);
    Enter(point);
    Over(point);
    DWORD effect = kAllEffects;
    Root().DragEnter(&text, MK_LBUTTON, point, &effect);
    EXPECT_EQ(m_data.references, 1);
    effect = kAllEffects;
    Root().Drop(&text, 0, point, &effect);
    EXPECT_TRUE(folder.target.calls.empty()) << "it has not been over an item";
    EXPECT_EQ(text.references, 1);
    Root().m_folder.Reset();
}

/// Writes down what the shell's drag picture is told.
class StagedHelper final : public StagedObject<IDropTargetHelper, IID_IDropTargetHelper>
{
public:
    HRESULT STDMETHODCALLTYPE DragEnter(HWND window, IDataObject*, POINT*, DWORD effect) override
    {
        over = window;
        return Note("enter ", effect);
    }
    HRESULT STDMETHODCALLTYPE DragLeave() override { return Note("leave ", 0); }
    HRESULT STDMETHODCALLTYPE DragOver(POINT*, DWORD effect) override { return Note("over ", effect); }
    HRESULT STDMETHODCALLTYPE Drop(IDataObject*, POINT*, DWORD effect) override { return Note("drop ", effect); }
    HRESULT STDMETHODCALLTYPE Show(BOOL) override { return S_OK; }

    Labels told;
    HWND over = nullptr;

private:
    HRESULT Note(const char* call, DWORD effect)
    {
        told.push_back(call + std::to_string(effect));
        return S_OK;
    }
};

TEST_F(Dragging, PictureIsToldOfEveryCallAndItsEffect)
{
    StagedHelper helper;
    helper.AddRef();
    *Root().m_dropHelper.Receive() = &helper;
    m_data.isShellItems = false;
    Enter(On("B", Upper), kCopy | kMove);
    Over(On("B", Upper), kCopy | kMove);
    Root().DragLeave();
    m_data.isShellItems = true;
    DragAndDrop(On("B", Upper));
    EXPECT_EQ(helper.over, Root().m_hWnd);
    EXPECT_EQ(helper.told, (Labels{"enter 1", "over 0", "leave 0", "enter 4", "over 4", "drop 4"}));
    Root().m_dropHelper.Reset();
}

// --- dropped into the level's folder

class DroppingFromOutside : public Dragging
{
protected:
    DroppingFromOutside()
    {
        GiveFolder(Root(), m_folder);
        m_folder.target.onDrop = [this] { m_desk.MakeFile("New"); };
    }
    ~DroppingFromOutside() override { Root().m_folder.Reset(); }

    StagedDropFolder m_folder;
};

TEST_F(DroppingFromOutside, FolderTakesItWithTheMenuDisabledAndItGoesWhereTheMarkWas)
{
    OpenGames();
    const auto make = m_folder.target.onDrop;
    m_folder.target.onDrop = [&]
    {
        make();
        EXPECT_FALSE(IsWindowEnabled(m_desk.Level(0).m_hWnd));
        EXPECT_FALSE(IsWindowEnabled(m_desk.Level(1).m_hWnd));
        EXPECT_EQ(g_launcher.g_operationBar, &Root());
        EXPECT_EQ(Mark(), "");
        EXPECT_EQ(Root().m_dropData.Get(), nullptr);
    };
    m_folder.target.answer = kCopy;
    EXPECT_EQ(DragAndDrop(On("B", Lower), MK_LBUTTON | MK_CONTROL), kCopy);
    EXPECT_EQ(m_folder.owner, Root().m_hWnd);
    EXPECT_EQ(m_folder.target.calls, (Calls{{"DragEnter", 0, kCopy}, {"DragOver", 0, kCopy}, {"Drop", 0, kCopy}}));
    EXPECT_EQ(m_data.asyncModes, std::vector<BOOL>{FALSE});
    EXPECT_EQ(m_desk.StoredBytes(kRootLayout), Order({"A", "B", "New", "C", "D", "E", "Games", "Music"}));
    EXPECT_EQ(Root().m_refreshIndex, 2);
    EXPECT_FALSE(Root().m_refreshPending) << "the folder's notice brings the refresh";
    EXPECT_EQ(m_desk.Levels(), 1) << "deeper levels are closed";
    EXPECT_TRUE(IsWindowEnabled(Root().m_hWnd));
    EXPECT_EQ(GetActiveWindow(), Root().m_hWnd);
    EXPECT_EQ(g_launcher.g_operationBar, nullptr);
    m_desk.Refresh(0);
    EXPECT_EQ(m_desk.Items(), (Labels{"A", "B", "New", "C", "D", "E", "Games", "Music"}));
}

TEST_F(DroppingFromOutside, WhatTheFolderLeavesOfTheEffectIsWhatItDropsWith)
{
    m_folder.target.answer = kMove;
    EXPECT_EQ(DragAndDrop(On("B", Lower)), kMove);
    EXPECT_EQ(m_folder.target.calls, (Calls{{"DragEnter", 0, kLink}, {"DragOver", 0, kLink}, {"Drop", 0, kMove}}));
}

TEST_F(DroppingFromOutside, RightButtonOffersEverythingAndHasTheFolderAsk)
{
    m_folder.target.answer = kMove;
    DragAndDrop(On("A", Lower), MK_RBUTTON | MK_SHIFT);
    EXPECT_EQ(m_folder.target.calls, (Calls{{"DragEnter", 14, 7}, {"DragOver", 14, 7}, {"Drop", 14, 7}}))
        << "not narrowed by keys nor by the folder's DragOver";
    EXPECT_EQ(m_desk.StoredBytes(kRootLayout), Order({"A", "New", "B", "C", "D", "E", "Games", "Music"}));
}

TEST_F(DroppingFromOutside, SeveralFilesTheFirstByNameGetsThePlace)
{
    m_folder.target.onDrop = [this]
    {
        m_desk.MakeFile("Y");
        m_desk.MakeFile("X");
    };
    DragAndDrop(On("A", Upper));
    EXPECT_EQ(m_desk.StoredBytes(kRootLayout), Order({"X", "A", "B", "C", "D", "E", "Games", "Music"}));
}

TEST_F(DroppingFromOutside, NothingNewChangesNothing)
{
    m_folder.target.onDrop = nullptr;
    const std::vector<std::uint8_t> before = m_desk.StoredBytes(kRootLayout);
    DragAndDrop(On("A", Upper));
    EXPECT_EQ(m_desk.StoredBytes(kRootLayout), before);
    EXPECT_EQ(m_desk.Items(), (Labels{"A", "B", "C", "D", "E", "Games", "Music"}));
}

TEST_F(DroppingFromOutside, NothingIsTakenWhereThereIsNothingToTakeIt)
{
    const POINTL point = On("B", Upper);
    Enter(point);
    EXPECT_EQ(Drop(point), 0u) << "no mark";
    const RECT bounds = m_desk.Bounds(0);
    EXPECT_EQ(DragAndDrop({bounds.right + 50, bounds.top}), 0u) << "no item under it";
    m_folder.hasTarget = false;
    EXPECT_EQ(DragAndDrop(point), 0u);
    EXPECT_EQ(m_folder.target.calls, Calls{});
    m_folder.hasTarget = true;
    m_folder.target.refuses = true;
    EXPECT_EQ(DragAndDrop(point), 0u);
    EXPECT_EQ(m_folder.target.calls, (Calls{{"DragEnter", 0, kLink}}));
    Root().m_folder.Reset();
    Enter(point);
    EXPECT_EQ(Over(point), 0u) << "a level without a folder refuses";
    EXPECT_EQ(Drop(point), 0u);
    EXPECT_EQ(Mark(), "");
    EXPECT_TRUE(IsWindowEnabled(Root().m_hWnd));
    EXPECT_EQ(m_desk.Items().size(), 7u);
    GiveFolder(Root(), m_folder);
}

TEST_F(DroppingFromOutside, NoticeWithinTheDropStillLeavesEveryItemUsable)
{
    // The level had loaded the newcomer at its end; the record put in its place stood for no file.
    m_folder.target.onDrop = [this]
    {
        m_desk.MakeFile("New");
        m_desk.Refresh(0);
    };
    DragAndDrop(On("B", Lower));
    m_desk.Settle();
    EXPECT_EQ(m_desk.Items(), (Labels{"A", "B", "New", "C", "D", "E", "Games", "Music"}));
    EXPECT_TRUE(Root().m_items[2].pidl);
}

TEST_F(DroppingFromOutside, ItemsThatGoWithinTheDropMoveThePlace)
{
    m_folder.target.onDrop = [this]
    {
        m_desk.MakeFile("New");
        std::filesystem::remove(m_desk.Folder() / "A");
        m_desk.Refresh(0);
    };
    DragAndDrop(On("D", Upper));
    m_desk.Settle();
    EXPECT_EQ(m_desk.Items(), (Labels{"B", "C", "New", "D", "E", "Games", "Music"}));
}

TEST_F(DroppingFromOutside, LevelThatClosesWithinTheDropIsGoneAfterIt)
{
    OpenGames();
    CustomBar& child = m_desk.Level(1);
    GiveFolder(child, m_folder);
    m_folder.target.onDrop = [&] { DestroyWindow(child.m_hWnd); };
    DragAndDrop(On("chess", Upper, 1), MK_LBUTTON, 1);
    EXPECT_EQ(m_desk.Levels(), 1);
    EXPECT_TRUE(IsWindowEnabled(Root().m_hWnd));
    EXPECT_EQ(g_launcher.g_operationBar, nullptr);
}

TEST_F(Dragging, IntoAnEmptyFolderGoesToItsBeginningOnEitherHalf)
{
    m_desk.MakeFolder("Void");
    m_desk.Refresh(0);
    for (const Half half : {Upper, Lower})
    {
        Root().OnItemCommand(ItemCommandMode::OpenSubmenu, m_desk.IndexOf("Void", 0));
        ASSERT_EQ(m_desk.Items(1), Labels{"(Empty)"});
        StagedDropFolder folder;
        GiveFolder(m_desk.Level(1), folder);
        folder.target.onDrop = [this] { m_desk.MakeFile("Void/New"); };
        DragAndDrop(On("(Empty)", half, 1), MK_LBUTTON, 1);
        EXPECT_EQ(m_desk.Level(1).m_refreshIndex, 0);
        m_desk.Refresh(1);
        EXPECT_EQ(m_desk.Items(1), Labels{"New"});
        DestroyWindow(m_desk.Level(1).m_hWnd);
        std::filesystem::remove(m_desk.Folder() / "Void/New");
    }
}

// --- what the launcher drags itself

TEST_F(Dragging, WithinTheLevelOnlyMovesTheItem)
{
    OpenGames();
    m_desk.MoveTo({1, 1});
    StagedDropFolder folder;
    GiveFolder(Root(), folder);
    DragItem(Root(), 1);
    DragAndDrop(On("D", Lower), MK_RBUTTON);
    g_launcher.g_operationBar = nullptr;
    EXPECT_EQ(folder.target.calls, Calls{}) << "nor by the right button";
    EXPECT_EQ(m_desk.StoredBytes(kRootLayout), Order({"A", "C", "D", "B", "E", "Games", "Music"}));
    EXPECT_EQ(m_desk.Levels(), 1);
    EXPECT_TRUE(Root().m_refreshPending);
    m_desk.Settle();
    EXPECT_EQ(m_desk.Items(), (Labels{"A", "C", "D", "B", "E", "Games", "Music"}));
    EXPECT_EQ(m_desk.Hot(), "B");
    EXPECT_EQ(folder.references, 0);
}

TEST_F(Dragging, OntoItselfLeavesTheOrderAndRebuilds)
{
    DragItem(Root(), 2);
    DragAndDrop(On("C", Lower));
    g_launcher.g_operationBar = nullptr;
    EXPECT_TRUE(Root().m_refreshPending);
    EXPECT_EQ(Root().m_refreshIndex, 2);
    m_desk.Settle();
    EXPECT_EQ(m_desk.Items(), (Labels{"A", "B", "C", "D", "E", "Games", "Music"}));
}

TEST_F(Dragging, AnItemThatIsNoLongerThereIsNotMoved)
{
    for (const int index : {-1, 7})
    {
        DragItem(Root(), index);
        DragAndDrop(On("A", Upper));
        g_launcher.g_operationBar = nullptr;
        EXPECT_FALSE(Root().m_refreshPending);
    }
    // The item that had come to its index was moved in its stead.
    DragItem(Root(), 1);
    std::filesystem::remove(m_desk.Folder() / "B");
    m_desk.Refresh(0);
    DragAndDrop(On("A", Upper));
    g_launcher.g_operationBar = nullptr;
    m_desk.Settle();
    EXPECT_EQ(m_desk.Items(), (Labels{"A", "C", "D", "E", "Games", "Music"}));
}

TEST_F(Dragging, ToAnotherLevelIsItsFoldersWork)
{
    OpenGames();
    for (const DWORD button : {MK_LBUTTON, MK_RBUTTON})
    {
        StagedDropFolder folder;
        GiveFolder(m_desk.Level(1), folder);
        folder.target.answer = kMove;
        folder.target.onDrop = [this]
        { EXPECT_EQ(g_launcher.g_operationBar, &Root()) << "as the drag's source has it"; };
        DragItem(Root(), 1);
        DragAndDrop(On("chess", Lower, 1), button, 1);
        EXPECT_EQ(g_launcher.g_operationBar, &Root());
        g_launcher.g_operationBar = nullptr;
        const DWORD keys = button == MK_RBUTTON ? 10 : 0;
        const DWORD dropped = button == MK_RBUTTON ? kAllEffects : kMove;
        EXPECT_EQ(folder.target.calls,
                  (Calls{{"DragEnter", keys, kAllEffects}, {"DragOver", keys, kAllEffects}, {"Drop", keys, dropped}}));
        m_desk.Level(1).m_folder.Reset();
    }
}

} // namespace
