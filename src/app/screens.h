#pragma once
// Which screen each command of the main window opens: the one table of the program.
// A command of an area whose screens do not exist yet is simply not listed, and
// a click on it does nothing.

#include <QString>

void RegisterScreens();

// The help page shipped with the program.
QString HelpFilePath();
