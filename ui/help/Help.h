// Help topics: from the help site, else from the compiled help files on this machine.
#pragma once

#include "ui/rules/HelpTopic.h"

#include <windows.h>
#include <ocidl.h>

// Results of showing help.
inline constexpr int kHelpShown = 0;
inline constexpr int kHelpNotFound = -1;    // no help file, or the shell refused the address
inline constexpr int kHelpNameTooLong = -2; // more than 260 characters
inline constexpr int kHelpNoNameOrPath = -3;

// Opens the topic's page on the help site.
int OpenOnlineHelp(const char* name, bool transform);

// Shows a topic: online, else from a help file in the folders of the registered help path or beside this module. Tells
// the user which files were looked for in vain. `name` may be null.
int ShowHelpTopic(const char* name, unsigned number);

// Shows a topic and tells the user, in a box over `owner`, when that failed.
void ShowPageHelp(HWND owner, const char* name, unsigned number = kUserInterfaceTopic);

// Fills the help entries of a page's information: the topic's file name in task memory (260 characters) and its number.
// Without a name, with one of more than 260 characters, or without memory the entries are empty.
void SetPageHelpInfo(PROPPAGEINFO* info, const char* name);
