#pragma once
// Routing from a command of the main window (named by its menu item, e.g. "mnuStredisko")
// to the screen it opens. Each subsystem registers the commands whose screens it has;
// a command nobody registered does nothing.

#include <QString>
#include <QStringList>

#include <functional>

class QWidget;

using CommandHandler = std::function<void(QWidget *mainWindow)>;

void RegisterCommand(const QString &command, CommandHandler handler);
bool CommandAvailable(const QString &command);
// Runs the command's handler; false when no screen is registered for it.
bool RunCommand(const QString &command, QWidget *mainWindow);
QStringList RegisteredCommands();
