// What the leak sanitizer must not count: fontconfig keeps its patterns by offsets, which it cannot follow, and GIO's
// copy of xdgmime loses track of lists that it makes once per process.
extern "C" const char* __lsan_default_suppressions();
const char* __lsan_default_suppressions()
{
    return "leak:libfontconfig\nleak:libgio-2.0\n";
}
