#pragma once
// The program speaks Czech whatever the workstation's language: the Czech locale for dates,
// numbers and the calendar (the week starts on Monday), and Qt's own Czech texts for the
// standard buttons, the file and print dialogs and the context menus. Both executables and
// the tests call it right after making the application object, so tests see what users see.

// False when Qt's Czech translation is not installed (the standard texts then stay English).
bool UseCzech();
