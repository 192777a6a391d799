// The file that keeps fontconfig's answers across runs.
//
// It is text, one record a line, fields separated by tabs:
//
//     orb-launcher fonts 1
//     environment  <values of the variables that steer fontconfig>
//     source       <modification time>  <path of a configuration file or font folder>
//     font         <face> <pixel size> <weight> <italic> <face index> <modification time>:<size>  <path of the file>
//
// A change of the environment or of any source makes all of it void; a change of a font file, that font. The file can
// be lost or damaged at any time: what cannot be read is asked again.
#pragma once

#include "platform/drawing/font_files.h"

#include <string_view>
#include <vector>

namespace platform
{

struct CachedFont
{
    FontRequest request;
    FontFile file;
    std::string stamp; ///< StampOf the file when the answer was given
};

struct FontCache
{
    std::vector<std::string> sources;
    std::vector<CachedFont> fonts;
};

/// What fontconfig's answer depends on besides files, in one line.
std::string FontEnvironment();
/// Modification time and size of a file, "-" when it is missing.
std::string StampOf(const std::string& path);

std::string WriteFontCache(const FontCache& cache, const std::string& environment);
/// The cache, empty when it is damaged or void.
FontCache ReadFontCache(std::string_view text, const std::string& environment);

} // namespace platform
