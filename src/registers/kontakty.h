#pragma once
// The mail contacts of a user (sys_kontakty). Passwords are kept through ScrambleText and
// shown in the open only on the screen.

#include <QString>
#include <QVector>

class DbConnection;

struct Kontakt {
    int id = 0;
    QString email, heslo, param1, param2;
};

// The user's contacts; a password holding "~" is turned back, any other shown as stored.
QVector<Kontakt> LoadKontakty(DbConnection &sys, const QString &login);
// Stores every contact again, its password scrambled (a blank one stays blank), all or none.
bool SaveKontakty(DbConnection &sys, const QVector<Kontakt> &kontakty, QString *error);
// A new contact of the user with blank fields; returns its id (0 on failure).
int AddKontakt(DbConnection &sys, const QString &login, const QString &email, QString *error);
bool DeleteKontakt(DbConnection &sys, int id, QString *error);
