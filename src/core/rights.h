#pragma once
// What each role may do: every test of the program asks here.
// Roles: 1 "Uživatel", 2 "Administrátor", 3 "Lékárna", 4 "Tvůrce objednávek",
// 5 "Správce objednávek", 6 "Super uživatel"; 0 for a row saved from an unknown list position.

#include <QString>

bool IsAdministrator(int typ);   // role 2: the grant administration, user editing, deletes

// Toolbar buttons by key ("SPRAVA GR", "SKLAD", "FIRMY", "TISKY", "OBJEDN", "SPRAVA PR").
bool ToolbarButtonVisible(const QString &key, int typ);

// Drop-down items refused silently for the order manager (role 5).
bool DropDownRefused(const QString &key, int typ);

// Screens: commands switched off for everyone but the administrator.
bool CanRecalculateGrants(int typ);     // frmGranty cmdActual, cmdRefresh
bool CanImportMovements(int typ);       // frmImportPohyb cmdOpenFile, cmdError
bool CanEditAccountList(int typ);       // frmImportBegin grid
bool CanDeleteStredisko(int typ);       // frmStredisko cmdDelete, cmdCompare
bool CanEditGrantPlan(int typ);         // frmGrantPlan cmdKalendar, cmdEdit
bool CanEditAllUsers(int typ);          // frmLoginUser: all rows and columns
