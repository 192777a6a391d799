// The cache folder and its files.
#include "platform/base/cache_folder.h"

#include "platform/base/product.h"
#include "platform/base/unique_fd.h"
#include "platform/base/xdg_folders.h"

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace platform
{
namespace
{

std::string MakeCacheFolder()
{
    const std::string folder = CacheHome() + "/" ORB_PRODUCT;
    return MakeFolders(folder) ? folder : std::string();
}

} // namespace

const std::string& CacheFolder()
{
    static const std::string& folder = *new std::string(MakeCacheFolder());
    return folder;
}

bool ReplaceCacheFile(const std::string& path, std::string_view content)
{
    std::string temporary = path + ".XXXXXX";
    UniqueFd file(mkostemp(temporary.data(), O_CLOEXEC));
    if (!file)
        return false;
    const bool written = WriteAll(file.Get(), content);
    if (file.Close() && written && std::rename(temporary.c_str(), path.c_str()) == 0)
        return true;
    unlink(temporary.c_str());
    return false;
}

MappedFile::MappedFile(const std::string& path)
{
    const UniqueFd file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
    struct stat info = {};
    if (!file || fstat(file.Get(), &info) != 0 || !S_ISREG(info.st_mode) || info.st_size <= 0)
        return;
    const auto size = static_cast<std::size_t>(info.st_size);
    void* data = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file.Get(), 0);
    if (data != MAP_FAILED)
    {
        m_data = static_cast<const char*>(data);
        m_size = size;
    }
}

MappedFile::~MappedFile()
{
    if (m_data != nullptr)
        munmap(const_cast<char*>(m_data), m_size);
}

MappedFile::MappedFile(MappedFile&& other) noexcept
    : m_data(std::exchange(other.m_data, nullptr)), m_size(std::exchange(other.m_size, 0))
{
}

MappedFile& MappedFile::operator=(MappedFile&& other) noexcept
{
    std::swap(m_data, other.m_data);
    std::swap(m_size, other.m_size);
    return *this;
}

} // namespace platform
