#pragma once
// Checking a login against sys_users and filling the session record, and the facts
// about this workstation that each login writes into the user's row.

#include <QString>

// Checks the pair and, on success, fills the session's user and centre fields.
// Line breaks are taken out of both texts first, so a pasted password works.
// A wrong pair is Refused with UserTyp -1. Any fault of the server or of the user's
// data (no centre row) shows the fatal connection message, ends the process and
// answers Failed.
enum class LoginResult { Succeeded, Refused, Failed };
LoginResult CheckLogin(const QString &login, const QString &password);

// Name and version of the operating system, for sys_users.os.
QString GetMyWindowsVersion();

// Screen width and height joined by "x", e.g. "1024x768".
QString GetScreenSize();
// Stores the size in the session; true when the screen is exactly 800x600.
bool CheckResolution800();
