// The table of the shell's verbs.
#include "platform/shell/verbs.h"

namespace platform
{

namespace
{

bool Always(const VerbTarget&, unsigned)
{
    return true;
}

constexpr Verb kVerbs[] = {
    {"open", u"&Open", true, Always, OpenItems},
};

} // namespace

std::span<const Verb> ShellVerbs()
{
    return kVerbs;
}

} // namespace platform
