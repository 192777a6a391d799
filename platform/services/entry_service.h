// What desktop entries hold beside a name and an icon, and renaming them. By GKeyFile and GIO.
#pragma once

#include <cstddef>

namespace platform
{

/// UTF-8, valid until the receiver returns.
struct ChoiceFacts
{
    const char* id;
    const char* text;
    const char* icons; ///< as in FileFacts
};
using ChoiceReceiver = void (*)(void* context, const ChoiceFacts& choice);

enum class EntryRename
{
    Done,
    NoEntry, ///< the file is no desktop entry
    Failed,
};

/// May be called on any thread.
struct EntryService
{
    /// The actions of the desktop entry at `path`, or that a link there leads to.
    void (*actions)(const char* path, ChoiceReceiver receive, void* context);
    /// The programs recommended for what is at `path`, the default first; `id` is the path of each one's entry.
    void (*programs)(const char* path, ChoiceReceiver receive, void* context);
    /// Changes the name that the desktop entry at `path` shows in the user's language, and has the changed entry at
    /// `newPath`, which may be the same. The file there is replaced in one step and stays as it was after a failure,
    /// whose errno value goes to `error`; a link is replaced by a copy of the entry that it leads to.
    EntryRename (*rename)(const char* path, const char* newPath, const char* name, int* error);
    /// Where the entry at `path` leads: the program that it starts, the file that one of the type Link names, else the
    /// path itself without links. False when it does not fit.
    bool (*target)(const char* path, char* target, std::size_t capacity);
    /// Writes an entry of the type Link for a web address into the folder, under a file name made of the title: the
    /// first one that is free. Its icon is that of the program which opens such addresses. An errno value, or 0.
    int (*makeLink)(const char* folder, const char* url, const char* title);
};

} // namespace platform

extern "C" const platform::EntryService orb_entry_service;
