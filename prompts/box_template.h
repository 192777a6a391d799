// The dialog template of a message box in one block of memory (DLGTEMPLATE with its DLGITEMTEMPLATEs).
#pragma once

#include "prompts/box_layout.h"

/// Bytes that the template takes.
std::size_t BoxTemplateSize(const BoxLayout& layout, WStringView caption);
/// `block` is that large, zeroed and aligned to four bytes.
void WriteBoxTemplate(void* block, const BoxLayout& layout, WStringView caption);
