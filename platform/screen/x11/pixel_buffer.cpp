// Pixels in memory that the X server maps too, so that showing them sends 40 bytes; else in private memory, sent whole.
//
// The segment is a memfd whose descriptor goes along with the attach request (MIT-SHM 1.2): nothing waits for an
// answer. Should the server refuse (a display reached through a relay, say), the error comes later, and everything is
// sent again the plain way. The server may still read while new pixels are drawn; what it then shows too early is shown
// again by the Present that follows the drawing.
#include "platform/screen/x11/pixel_buffer.h"

#include "platform/base/product.h"
#include "platform/base/unique_fd.h"

#include <algorithm>
#include <array>
#include <sys/mman.h>
#include <sys/socket.h>
#include <unistd.h>

namespace platform::x11
{
namespace
{

constinit bool g_sharingRefused = false;

bool CanShare()
{
    static const bool local = []
    {
        sockaddr_storage address{};
        socklen_t size = sizeof(address);
        const int fd = xcb_get_file_descriptor(Xcb());
        return getsockname(fd, reinterpret_cast<sockaddr*>(&address), &size) == 0 && address.ss_family == AF_UNIX &&
               TheConnection().Extension(xcb_shm_id) != nullptr;
    }();
    return local && !g_sharingRefused;
}

/// Private memory for `size` bytes; null when there is none. All of it is about to be drawn: its pages in one go are
/// cheaper than a fault for each.
void* MapPrivate(std::size_t size)
{
    const int flags = MAP_POPULATE | MAP_PRIVATE | MAP_ANONYMOUS;
    void* memory = mmap(nullptr, size, PROT_READ | PROT_WRITE, flags, -1, 0);
    return memory != MAP_FAILED ? memory : nullptr;
}

/// The memfd's pages, which all exist; null when they cannot be mapped. Reading one of them, unlike writing or
/// populating, maps its neighbours with it.
void* MapShared(std::size_t size, int fd)
{
    constexpr std::size_t kNeighbourhood = 64 * 1024; // Linux' default; with less, writing faults for the others
    void* memory = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
    if (memory == MAP_FAILED)
        return nullptr;
    const auto* bytes = static_cast<const volatile char*>(memory);
    for (std::size_t offset = 0; offset < size; offset += kNeighbourhood)
        static_cast<void>(bytes[offset]);
    static_cast<void>(bytes[size - 1]); // neighbourhoods begin at multiples of their size, the memory anywhere
    return memory;
}

/// Makes a new memfd that long by writing it: a page that is written whole is not cleared first, as one is that comes
/// by being touched.
bool Extend(int fd, std::size_t size)
{
    static constexpr std::array<char, 64 * 1024> kZeros{};
    bool whole = true;
    for (std::size_t left = size; whole && left > 0; left -= std::min(left, kZeros.size()))
        whole = WriteAll(fd, {kZeros.data(), std::min(left, kZeros.size())});
    return whole;
}

} // namespace

PixelBuffer::PixelBuffer(int width, int height)
{
    width = std::max(width, 1);
    height = std::max(height, 1);
    m_size = static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * sizeof(std::uint32_t);
    if (!CanShare() || !Share(m_size))
        m_surface.pixels = static_cast<std::uint32_t*>(MapPrivate(m_size));
    if (m_surface.pixels != nullptr)
    {
        m_surface.width = m_surface.stride = width;
        m_surface.height = height;
    }
}

PixelBuffer::~PixelBuffer()
{
    if (m_segment != 0)
        IgnoreErrors(xcb_shm_detach_checked(Xcb(), m_segment));
    if (m_surface.pixels != nullptr)
        munmap(m_surface.pixels, m_size);
}

bool PixelBuffer::Share(std::size_t size)
{
    const int fd = memfd_create(ORB_PRODUCT "-window", MFD_CLOEXEC);
    if (fd < 0)
        return false;
    m_surface.pixels = Extend(fd, size) ? static_cast<std::uint32_t*>(MapShared(size, fd)) : nullptr;
    if (m_surface.pixels == nullptr)
    {
        close(fd);
        return false;
    }
    m_segment = xcb_generate_id(Xcb());
    xcb_shm_attach_fd(Xcb(), m_segment, fd, 1); // libxcb closes the descriptor
    return true;
}

void PixelBuffer::Send(xcb_window_t window, xcb_gcontext_t gc, const RECT& rect)
{
    if (m_surface.pixels == nullptr)
        return;
    if (m_segment == 0 || g_sharingRefused)
    {
        SendPlain(window, gc, rect);
        return;
    }
    const auto u16 = [](int value) { return static_cast<std::uint16_t>(value); };
    const auto i16 = [](int value) { return static_cast<std::int16_t>(value); };
    xcb_shm_put_image(Xcb(), window, gc, u16(m_surface.stride), u16(m_surface.height), u16(rect.left), u16(rect.top),
                      u16(rect.right - rect.left), u16(rect.bottom - rect.top), i16(rect.left), i16(rect.top), 24,
                      XCB_IMAGE_FORMAT_Z_PIXMAP, 0, m_segment, 0);
}

void PixelBuffer::SendPlain(xcb_window_t window, xcb_gcontext_t gc, const RECT& rect)
{
    const auto width = static_cast<std::size_t>(rect.right - rect.left);
    // Leaves room for the request's header.
    const std::size_t capacity = xcb_get_maximum_request_length(Xcb()) * std::size_t{4} - 64;
    const auto rowsAtOnce = static_cast<int>(std::max<std::size_t>(capacity / (width * sizeof(std::uint32_t)), 1));
    std::vector<std::uint32_t> band;
    for (int top = rect.top; top < rect.bottom; top += rowsAtOnce)
    {
        const int rows = std::min<int>(rowsAtOnce, rect.bottom - top);
        band.resize(width * static_cast<std::size_t>(rows));
        for (int row = 0; row < rows; ++row)
        {
            std::copy_n(m_surface.pixels + static_cast<std::ptrdiff_t>(top + row) * m_surface.stride + rect.left, width,
                        band.begin() + static_cast<std::ptrdiff_t>(width) * row);
        }
        xcb_put_image(Xcb(), XCB_IMAGE_FORMAT_Z_PIXMAP, window, gc, static_cast<std::uint16_t>(width),
                      static_cast<std::uint16_t>(rows), static_cast<std::int16_t>(rect.left),
                      static_cast<std::int16_t>(top), 0, 24, static_cast<std::uint32_t>(band.size() * 4),
                      reinterpret_cast<const std::uint8_t*>(band.data()));
    }
}

bool NoteSharingError(const xcb_generic_error_t& error)
{
    const auto* extension = TheConnection().Extension(xcb_shm_id);
    const bool sharing = extension != nullptr && error.major_code == extension->major_opcode;
    return sharing && !std::exchange(g_sharingRefused, true);
}

} // namespace platform::x11
