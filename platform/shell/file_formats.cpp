// Writing and reading lists of files and of web addresses.
#include "platform/shell/file_formats.h"

#include "platform/base/text.h"
#include "platform/files/names.h"
#include "platform/services/address_service.h"
#include "platform/services/desktop_module.h"

#include <algorithm>
#include <cstring>
#include <strings.h>

namespace platform
{

namespace
{

const AddressService* Addresses()
{
    return static_cast<const AddressService*>(DesktopModuleSymbol("orb_address_service"));
}

/// The addresses of files, the text before each and the text after it.
std::string AddressLines(const AddressService& service, const std::vector<std::string>& paths, std::string_view before,
                         std::string_view after)
{
    struct Lines
    {
        std::string text;
        std::string_view before, after;
    } lines{{}, before, after};
    const auto add = [](void* context, const char* address)
    {
        auto& to = *static_cast<Lines*>(context);
        to.text.append(to.before).append(address).append(to.after);
    };
    for (const std::string& path : paths)
        service.addressOf(path.c_str(), &lines, add);
    return lines.text;
}

std::string PathLines(const std::vector<std::string>& paths)
{
    std::string text;
    for (const std::string& path : paths)
    {
        text += text.empty() ? "" : "\n";
        text += path;
    }
    return text;
}

/// Two ways of writing a path are one file, and the last name is the file's.
std::string PlainPath(std::string_view path)
{
    std::string plain;
    for (const std::string& name : SplitPath(path))
        plain.append("/").append(name);
    return plain.empty() ? "/" : plain;
}

/// Takes the first line off; without the blanks around it.
std::string_view TakeLine(std::string_view& text)
{
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = Trimmed(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
    return line;
}

/// Schemes whose addresses are worth keeping: a program opens them again. Scripts, and what only the program that it
/// came from knows (data, blob, about), are not.
constexpr std::string_view kSchemes[] = {"http", "https", "ftp",  "ftps",   "mailto", "tel",
                                         "irc",  "ircs",  "xmpp", "magnet", "webcal", "gemini"};

bool IsWebAddress(std::string_view text)
{
    constexpr std::size_t kLongest = 16 * 1024;
    const std::size_t colon = text.find(':');
    if (colon == text.npos || colon + 1 == text.size() || text.size() > kLongest)
        return false;
    const auto isBlank = [](char byte) { return static_cast<unsigned char>(byte) <= ' ' || byte == '\x7F'; };
    const auto isScheme = [&](std::string_view scheme)
    { return scheme.size() == colon && strncasecmp(scheme.data(), text.data(), colon) == 0; };
    return std::ranges::any_of(kSchemes, isScheme) && std::ranges::none_of(text, isBlank);
}

} // namespace

std::vector<ClipboardForm> FormsOfFiles(const CopiedFiles& files)
{
    const AddressService* service = Addresses();
    if (service == nullptr)
        return {};
    const std::string addresses = AddressLines(*service, files.paths, "", "\r\n");
    if (addresses.empty())
        return {};
    const std::string paths = PathLines(files.paths);
    std::vector<ClipboardForm> forms;
    for (const std::string_view target : kFileForms)
        forms.push_back({std::string(target), target == kUriList ? addresses : paths});
    forms.front().content = (files.cut ? "cut" : "copy") + AddressLines(*service, files.paths, "\n", "");
    return forms;
}

std::vector<std::string> PathsInUriList(const std::string& list)
{
    std::vector<std::string> paths;
    const AddressService* service = Addresses();
    if (service == nullptr)
        return paths;
    const auto add = [](void* context, const char* path)
    { static_cast<std::vector<std::string>*>(context)->push_back(PlainPath(path)); };
    service->pathsIn(list.c_str(), &paths, add);
    return paths;
}

std::vector<WebAddress> WebAddressesInUriList(std::string_view list)
{
    std::vector<WebAddress> addresses;
    while (!list.empty())
        if (const std::string_view line = TakeLine(list); IsWebAddress(line))
            addresses.push_back({std::string(line), ""});
    return addresses;
}

std::optional<CopiedFiles> ReadCopiedFiles(const std::string& content)
{
    const std::size_t lineEnd = std::min(content.find('\n'), content.size());
    const std::string_view verb = std::string_view(content).substr(0, lineEnd);
    if (verb != "cut" && verb != "copy")
        return std::nullopt;
    return CopiedFiles{PathsInUriList(content.substr(lineEnd)), verb == "cut"};
}

std::vector<WebAddress> ReadTitledAddresses(std::string_view lines)
{
    std::vector<WebAddress> addresses;
    while (!lines.empty())
    {
        const std::string_view url = TakeLine(lines);
        if (!IsWebAddress(url))
            continue;
        const std::string_view rest = lines;
        std::string_view title = TakeLine(lines);
        if (title != url && IsWebAddress(title))
        {
            lines = rest; // the next address: this one has no title
            title = {};
        }
        addresses.push_back({std::string(url), std::string(title != url ? title : "")});
    }
    return addresses;
}

std::string Utf8OfMozillaUrl(std::string_view content)
{
    if (content.size() < 2 || content.find('\0') == content.npos)
        return std::string(content);
    std::u16string text(content.size() / sizeof(char16_t), u'\0');
    std::memcpy(text.data(), content.data(), text.size() * sizeof(char16_t));
    constexpr char16_t kByteOrderMark = 0xFEFF;
    std::u16string_view view = text;
    if (view.front() == kByteOrderMark)
        view.remove_prefix(1);
    return Utf8FromUtf16(view.substr(0, view.find(u'\0')));
}

} // namespace platform
