#include "core/routing.h"

#include <QHash>

namespace {
QHash<QString, CommandHandler> &handlers()
{
    static QHash<QString, CommandHandler> table;
    return table;
}
} // namespace

void RegisterCommand(const QString &command, CommandHandler handler) { handlers().insert(command, std::move(handler)); }

bool CommandAvailable(const QString &command) { return handlers().contains(command); }

bool RunCommand(const QString &command, QWidget *mainWindow)
{
    const auto it = handlers().constFind(command);
    if (it == handlers().constEnd())
        return false;
    (*it)(mainWindow);
    return true;
}

QStringList RegisteredCommands() { return handlers().keys(); }
