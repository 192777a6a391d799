// Linked into test programs of the layer: what they store and cache goes to a folder of their own, removed at the end.
#include <array>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>

namespace
{

class ScratchHome : public testing::Environment
{
public:
    // In the constructor, before anything of the layer has looked at the environment.
    ScratchHome()
    {
        std::string path = std::filesystem::temp_directory_path() / "orb-test-home-XXXXXX";
        m_path = mkdtemp(path.data());
        for (const auto& [variable, folder] :
             {std::array{"XDG_CONFIG_HOME", "/config"}, std::array{"XDG_CACHE_HOME", "/cache"},
              std::array{"XDG_DATA_HOME", "/data"}, std::array{"XDG_CONFIG_DIRS", "/machine"}})
            setenv(variable, (m_path + folder).c_str(), 1);
    }
    ~ScratchHome() override { std::filesystem::remove_all(m_path); }

private:
    std::string m_path;
};

// gtest deletes it.
[[maybe_unused]] testing::Environment* const g_home = testing::AddGlobalTestEnvironment(new ScratchHome);

} // namespace
