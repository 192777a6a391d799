// A mount that never answers: a FUSE file system that nobody serves. Whoever touches it hangs until it is taken down.
#pragma once

#include <fcntl.h>
#include <filesystem>
#include <string>
#include <sys/mount.h>
#include <unistd.h>
#include <utility>

namespace shell_test
{

class StalledMount
{
public:
    explicit StalledMount(const std::filesystem::path& place)
        : m_place(place), m_device(open("/dev/fuse", O_RDWR | O_CLOEXEC))
    {
        std::filesystem::create_directory(place);
        const std::string options = "fd=" + std::to_string(m_device) + ",rootmode=40000,user_id=0,group_id=0";
        m_mounted = m_device >= 0 && mount("stalled", place.c_str(), "fuse", 0, options.c_str()) == 0;
    }
    ~StalledMount() { TakeDown(); }
    StalledMount(const StalledMount&) = delete;
    StalledMount& operator=(const StalledMount&) = delete;

    bool Mounted() const { return m_mounted; }
    /// Whoever hangs on it gets an error.
    void TakeDown()
    {
        if (m_device >= 0)
            close(std::exchange(m_device, -1));
        if (std::exchange(m_mounted, false))
            umount2(m_place.c_str(), MNT_DETACH);
    }

private:
    std::filesystem::path m_place;
    int m_device;
    bool m_mounted = false;
};

} // namespace shell_test
