// The settings that the desktop's settings manager publishes. Format: XSETTINGS 0.5.
#include "platform/base/byte_reader.h"
#include "platform/screen/x11/connection.h"

namespace platform::x11
{
namespace
{

using Settings = std::map<std::string, std::string, std::less<>>;

/// Numbers and text of the property, in the byte order of whoever wrote it.
class Reader : public ByteReader
{
public:
    using ByteReader::ByteReader;

    void SetByteOrder(bool swap) { m_swap = swap; }
    std::uint8_t Byte() { return Value<std::uint8_t>(); }
    std::uint16_t Half() { return m_swap ? __builtin_bswap16(Value<std::uint16_t>()) : Value<std::uint16_t>(); }
    std::uint32_t Word() { return m_swap ? __builtin_bswap32(Value<std::uint32_t>()) : Value<std::uint32_t>(); }
    std::string_view Padded(std::size_t size)
    {
        const auto text = Bytes(size);
        Bytes((4 - size % 4) % 4);
        return text;
    }

private:
    bool m_swap = false;
};

void ReadSetting(Reader& reader, Settings& settings)
{
    enum : std::uint8_t
    {
        Integer = 0,
        String = 1,
        Color = 2,
    };
    const std::uint8_t type = reader.Byte();
    reader.Byte();
    const std::uint16_t nameSize = reader.Half();
    const std::string name(reader.Padded(nameSize));
    reader.Word(); // serial of the last change
    std::string value;
    if (type == Integer)
    {
        value = std::to_string(static_cast<std::int32_t>(reader.Word()));
    }
    else if (type == String)
    {
        const std::uint32_t size = reader.Word();
        value = reader.Padded(size);
    }
    else
    {
        reader.Bytes(8);
    }
    if (!reader.Failed() && type != Color)
        settings.insert_or_assign(name, value);
}

Settings Parse(std::string_view data)
{
    Settings settings;
    Reader reader(data);
    constexpr std::uint8_t kMostSignificantFirst = 1;
    const bool bigEndian = reader.Byte() == kMostSignificantFirst;
    reader.SetByteOrder(bigEndian != (__BYTE_ORDER__ == __ORDER_BIG_ENDIAN__));
    reader.Bytes(3);
    reader.Word(); // serial
    const std::uint32_t count = reader.Word();
    for (std::uint32_t i = 0; i < count && !reader.Failed(); ++i)
        ReadSetting(reader, settings);
    return settings;
}

Settings Read()
{
    Connection& connection = TheConnection();
    if (!connection.IsOpen())
        return {};
    connection.SendSecondBatch();
    const auto owner = Collect(xcb_get_selection_owner_reply, connection.settingsOwner);
    if (owner == nullptr || owner->owner == XCB_NONE)
        return {};
    const xcb_atom_t property = connection[Atom::XSettingsSettings];
    const auto reply =
        Collect(xcb_get_property_reply, xcb_get_property(Xcb(), 0, owner->owner, property, property, 0, 1 << 16));
    if (reply == nullptr || reply->format != 8)
        return {};
    return Parse({static_cast<const char*>(xcb_get_property_value(reply.get())),
                  static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))});
}

} // namespace
} // namespace platform::x11

const std::map<std::string, std::string, std::less<>>& platform::screen::PublishedSettings()
{
    static const x11::Settings& settings = *new x11::Settings(x11::Read());
    return settings;
}
