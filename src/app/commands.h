#pragma once
// The main window's commands as data: the menu tree, the toolbar and the toolbar's
// drop-down items, each naming the menu command it runs. The window is built from
// these tables and every click ends in RunCommand of the named command.

#include <QString>

#include <optional>
#include <vector>

struct MenuEntry {
    const char *name;      // objectName, and the command a click runs
    const char *caption;   // empty for a separator
    int level;             // 0 on the menu bar, 1 inside a menu, 2 inside a submenu
    bool heading;          // opens the items of the next level below it
};
const std::vector<MenuEntry> &MainMenu();

struct ToolbarEntry {
    const char *key;       // empty for a separator
    const char *tip;
    const char *command;   // the menu command a click runs; empty: no action
};
// The 24 positions, in order.
const std::vector<ToolbarEntry> &ToolbarPositions();

struct DropDownEntry {
    const char *key;
    const char *caption;
    const char *command;   // empty: the item does nothing
    const char *button;    // toolbar key the item hangs under
};
const std::vector<DropDownEntry> &DropDownItems();

// The command of a drop-down item: empty text for an item that does nothing,
// nullopt for a key no item has.
std::optional<QString> DropDownCommand(const QString &key);
// The command of a toolbar key; empty text for keys without an action.
QString ToolbarCommand(const QString &key);

// Commands that only the main window itself carries out.
inline constexpr const char *CommandAbout = "cmdAbout";
inline constexpr const char *CommandExit = "mnuKonecItem";
