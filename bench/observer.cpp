// Programs on a display, and what they paint.
#include "bench/observer.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <poll.h>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/damage.h>
#include <xcb/xtest.h>

namespace bench
{
namespace
{

std::vector<std::string> Split(const std::string& text, char separator)
{
    std::vector<std::string> parts;
    std::stringstream stream(text);
    for (std::string part; std::getline(stream, part, separator);)
        parts.push_back(part);
    return parts;
}

void ReadEnvironment(Row& row, const std::string& field)
{
    if (field == "-")
        return;
    for (const std::string& assignment : Split(field, ';'))
        if (assignment.rfind("BEFORE=", 0) == 0)
            row.removeBefore = assignment.substr(7);
        else
            row.environment.push_back(assignment);
}

[[noreturn]] void Exec(const Row& row)
{
    const int input = open(row.input.c_str(), O_RDONLY);
    const int output = open("/dev/null", O_WRONLY);
    dup2(input, 0);
    dup2(output, 1);
    if (std::getenv("BENCH_VERBOSE") == nullptr)
        dup2(output, 2);
    for (const std::string& assignment : row.environment)
        putenv(const_cast<char*>(assignment.c_str()));
    std::vector<char*> arguments;
    for (const std::string& argument : row.command)
        arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    execvp(arguments[0], arguments.data());
    _exit(127);
}

} // namespace

double MillisecondsSince(Clock::time_point start)
{
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

std::vector<Row> ReadRows(const char* path)
{
    std::vector<Row> rows;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);)
    {
        const std::vector<std::string> fields = Split(line, '\t');
        if (fields.size() < 4)
            continue;
        Row row;
        row.name = fields[0];
        row.input = fields[1] == "-" ? "/dev/null" : fields[1];
        ReadEnvironment(row, fields[2]);
        row.command.assign(fields.begin() + 3, fields.end());
        rows.push_back(std::move(row));
    }
    return rows;
}

pid_t Start(const Row& row)
{
    const pid_t process = fork();
    if (process == 0)
        Exec(row);
    return process;
}

void Stop(pid_t process)
{
    kill(process, SIGKILL);
    waitpid(process, nullptr, 0);
}

double Quantile(std::vector<double> values, double q)
{
    if (values.empty())
        return -1;
    std::sort(values.begin(), values.end());
    return values[static_cast<std::size_t>(q * static_cast<double>(values.size() - 1) + 0.5)];
}

xcb_atom_t AtomNamed(xcb_connection_t* connection, const std::string& name)
{
    const auto cookie = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.c_str());
    auto* const reply = xcb_intern_atom_reply(connection, cookie, nullptr);
    const xcb_atom_t atom = reply != nullptr ? reply->atom : xcb_atom_t{};
    std::free(reply);
    return atom;
}

Observer::Observer() : m_connection(xcb_connect(nullptr, nullptr))
{
    if (xcb_connection_has_error(m_connection))
        std::exit(1);
    const auto* const extension = xcb_get_extension_data(m_connection, &xcb_damage_id);
    m_damageEvent = static_cast<std::uint8_t>(extension->first_event + XCB_DAMAGE_NOTIFY);
    std::free(xcb_damage_query_version_reply(m_connection, xcb_damage_query_version(m_connection, 1, 1), nullptr));
    m_root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
    xcb_damage_create(m_connection, xcb_generate_id(m_connection), m_root, XCB_DAMAGE_REPORT_LEVEL_RAW_RECTANGLES);
    Settle();
}

Observer::~Observer()
{
    xcb_disconnect(m_connection);
}

void Observer::Settle()
{
    xcb_flush(m_connection);
    while (WaitForPaint(kQuietMs))
    {
    }
}

void Observer::AwaitPaint()
{
    WaitForPaint(kGiveUpMs);
}

PaintTimes Observer::Watch(Clock::time_point start, Columns where)
{
    PaintTimes times;
    while (MillisecondsSince(start) < kGiveUpMs)
    {
        const std::optional<xcb_rectangle_t> painted = WaitForPaint(times.first < 0 ? kGiveUpMs : kQuietMs);
        if (!painted)
            break;
        if (painted->x < where.from || painted->x >= where.to)
            continue;
        times.last = MillisecondsSince(start);
        times.first = times.first < 0 ? times.last : times.first;
        times.area += painted->width * painted->height;
    }
    return times;
}

void Observer::FakeInput(std::uint8_t type, std::uint8_t detail, int x, int y)
{
    xcb_test_fake_input(m_connection, type, detail, XCB_CURRENT_TIME, m_root, static_cast<std::int16_t>(x),
                        static_cast<std::int16_t>(y), 0);
    xcb_flush(m_connection);
}

void Observer::MovePointer(int x, int y)
{
    FakeInput(XCB_MOTION_NOTIFY, 0, x, y);
}

void Observer::Press(std::uint8_t button)
{
    FakeInput(XCB_BUTTON_PRESS, button);
}

void Observer::Release(std::uint8_t button)
{
    FakeInput(XCB_BUTTON_RELEASE, button);
}

void Observer::Click(std::uint8_t button)
{
    Press(button);
    Release(button);
}

void Observer::PressEscape()
{
    constexpr std::uint8_t kEscape = 9; // as every X server numbers it that takes its numbers from the kernel
    FakeInput(XCB_KEY_PRESS, kEscape);
    FakeInput(XCB_KEY_RELEASE, kEscape);
}

void Observer::PublishSetting(const std::string& name, std::int32_t value)
{
    // XSETTINGS 0.5, the least significant byte first: serial, one setting; integer, its name, serial, value.
    std::string data(12, '\0');
    data[8] = 1;
    data += {0, 0, static_cast<char>(name.size()), 0};
    data += name + std::string((4 - name.size() % 4) % 4 + 4, '\0');
    for (int shift = 0; shift < 32; shift += 8)
        data += static_cast<char>(value >> shift);
    const xcb_window_t owner = xcb_generate_id(m_connection);
    const xcb_atom_t property = AtomNamed(m_connection, "_XSETTINGS_SETTINGS");
    xcb_create_window(m_connection, 0, owner, m_root, 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT,
                      0, nullptr);
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, owner, property, property, 8,
                        static_cast<std::uint32_t>(data.size()), data.data());
    xcb_set_selection_owner(m_connection, owner, AtomNamed(m_connection, "_XSETTINGS_S0"), XCB_CURRENT_TIME);
    xcb_flush(m_connection);
}

std::vector<ShownWindow> Observer::ShownWindows()
{
    std::vector<ShownWindow> shown;
    auto* const tree = xcb_query_tree_reply(m_connection, xcb_query_tree(m_connection, m_root), nullptr);
    for (int i = 0; tree != nullptr && i < xcb_query_tree_children_length(tree); ++i)
    {
        const xcb_window_t window = xcb_query_tree_children(tree)[i];
        const auto attributesCookie = xcb_get_window_attributes(m_connection, window);
        const auto geometryCookie = xcb_get_geometry(m_connection, window);
        auto* const attributes = xcb_get_window_attributes_reply(m_connection, attributesCookie, nullptr);
        auto* const geometry = xcb_get_geometry_reply(m_connection, geometryCookie, nullptr);
        const bool shows = attributes != nullptr && geometry != nullptr &&
                           attributes->map_state == XCB_MAP_STATE_VIEWABLE &&
                           attributes->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT;
        if (shows)
            shown.push_back({window, {geometry->x, geometry->y, geometry->width, geometry->height}});
        std::free(attributes);
        std::free(geometry);
    }
    std::free(tree);
    return shown;
}

std::optional<xcb_rectangle_t> Observer::WaitForPaint(int timeoutMs)
{
    const auto deadline = Clock::now() + std::chrono::milliseconds(timeoutMs);
    for (;;)
    {
        while (xcb_generic_event_t* const event = xcb_poll_for_event(m_connection))
        {
            std::optional<xcb_rectangle_t> painted;
            if ((event->response_type & 0x7F) == m_damageEvent)
                painted = reinterpret_cast<const xcb_damage_notify_event_t*>(event)->area;
            std::free(event);
            if (painted)
                return painted;
        }
        const int left = static_cast<int>(-MillisecondsSince(deadline));
        if (left <= 0)
            return std::nullopt;
        pollfd descriptor{xcb_get_file_descriptor(m_connection), POLLIN, 0};
        poll(&descriptor, 1, left);
    }
}

} // namespace bench
