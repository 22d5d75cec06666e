#pragma once
// The session record: who is working, on which data, with which local folders.
// One instance lives for the whole process; the login fills it, the main window's
// activation adds the institution's data.

#include <QString>

struct SessionRecord {
    QString IniPath;       // full path of the local configuration file
    QString TempDir;       // scratch folder for reports, zips, logos
    QString WinDir;        // folder that holds the configuration file
    QString DirExe;        // folder of the executable

    QString UserPrijmeni;
    QString UserJmeno;
    short UserTyp = -1;    // role 1..6; -1 means nobody is logged in
    short UserTypOrig = -1;
    QString UserLogin;
    QString UserFiltrGrant;
    QString LoginText;
    QString ScreenSize;

    QString MysqlDb;       // the user's centre database
    QString IpServer;
    QString IpPc;
    QString DbUser;        // never assigned: the account comes from the option file
    QString DbPassword;

    QString LastToolbarKey;
    bool ToolbarMenuUsed = false;

    QString InstFirma, InstAdresa, InstPSC, InstMesto, InstICO, InstDIC;
    QString InstUcet, InstBanka, InstUcet2, InstNewdateUcet;
};

// The one session of the process.
SessionRecord &Session();

QString GetFiltrGrant();
QString GetIpServer();
QString GetMysqlDb();

// "major.minor.revision" of this build.
QString ProgramVersion();
