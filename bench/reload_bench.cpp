// Reloading and ordering a level, beside a bare scan of the same folder (its names and their status) as the floor.
//
// Run it with a scratch home: tools/scratch-home build/bench/reload_bench
#include "app/launcher_state.h"
#include "app/startup.h"
#include "content/item_key.h"
#include "content/ordering.h"
#include "menu/custom_bar.h"
#include "platform/base/deferred.h"
#include "platform/base/text.h"
#include "tests/headless/headless.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <string>
#include <sys/stat.h>

namespace fs = std::filesystem;

namespace
{

fs::path FolderOf(std::int64_t count)
{
    return fs::path(std::getenv("XDG_DATA_HOME")) / ("bench-" + std::to_string(count));
}

/// A folder of that many desktop entries, made once.
fs::path MakeFolder(std::int64_t count)
{
    const fs::path folder = FolderOf(count);
    if (fs::exists(folder))
        return folder;
    fs::create_directories(folder);
    for (std::int64_t i = 0; i < count; ++i)
    {
        std::ofstream(folder / ("program-" + std::to_string(i) + ".desktop"))
            << "[Desktop Entry]\nType=Application\nName=Program number " << i << "\nExec=true\n";
    }
    return folder;
}

CustomMenu::CustomBar* MakeLevel(const fs::path& folder, std::int64_t count)
{
    if (!g_launcher.m_largeImages)
        InitLauncherState();
    ItemList list;
    SHParseDisplayName(platform::ShellPathFromPosix(folder.native()).c_str(), nullptr, list.Receive(), 0, nullptr);
    const WString key = platform::Utf16FromUtf8("Software\\Bench\\Layout" + std::to_string(count));
    auto* const level = new CustomMenu::CustomBar(nullptr, -1, {list.Get(), nullptr}, key, false);
    level->ReloadItems();
    while (platform::RunOneDeferred())
    {
    }
    return level;
}

void ReloadLevel(benchmark::State& state)
{
    CustomMenu::CustomBar* const level = MakeLevel(MakeFolder(state.range(0)), state.range(0));
    for (auto _ : state)
        level->ReloadItems();
    if (level->ItemCount() != state.range(0))
        state.SkipWithError("the level does not show the whole folder");
    state.SetItemsProcessed(state.iterations() * state.range(0));
    level->Release();
}
BENCHMARK(ReloadLevel)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

void BareScan(benchmark::State& state)
{
    const fs::path folder = MakeFolder(state.range(0));
    for (auto _ : state)
    {
        DIR* const directory = opendir(folder.c_str());
        while (const dirent* const entry = readdir(directory))
        {
            struct stat status;
            benchmark::DoNotOptimize(fstatat(dirfd(directory), entry->d_name, &status, AT_SYMLINK_NOFOLLOW));
        }
        closedir(directory);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BareScan)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

void MergeStoredOrder(benchmark::State& state)
{
    MenuItems items;
    StoredOrder stored;
    for (std::int64_t i = 0; i < state.range(0); ++i)
    {
        MenuItem item;
        const WString name = platform::Utf16FromUtf8("Program number " + std::to_string(i));
        item.name = ShellText(name.c_str());
        item.key = ItemKey(name);
        stored.insert(stored.begin() + static_cast<std::ptrdiff_t>(stored.size() / 2), item.key);
        items.push_back(std::move(item));
    }
    for (auto _ : state)
    {
        std::reverse(items.begin(), items.end()); // items in their order already need no sorting
        MergeOrder(items, stored);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(MergeStoredOrder)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
