#include "core/login.h"

#include "core/config.h"
#include "core/db.h"
#include "core/msg.h"
#include "core/session.h"

#include <QDate>
#include <QGuiApplication>
#include <QScreen>
#include <QSysInfo>
#include <QTime>

namespace {
// Widths of the columns written at each login (the server refuses longer text).
constexpr int ScreenWidth = 20;
constexpr int OsWidth = 120;

QString withoutLineBreaks(QString text)
{
    text.remove(QLatin1Char('\n'));
    text.remove(QLatin1Char('\r'));
    return text;
}

// "2024-3-5 9:07:41": date numbers without leading zeros, then the time.
QString lastLoginText()
{
    const QDate today = QDate::currentDate();
    return QStringLiteral("%1-%2-%3 %4")
        .arg(today.year())
        .arg(today.month())
        .arg(today.day())
        .arg(QTime::currentTime().toString(QStringLiteral("H:mm:ss")));
}

LoginResult failed()
{
    Session().UserTyp = -1;
    FatalConnectionError();
    return LoginResult::Failed;
}
} // namespace

LoginResult CheckLogin(const QString &loginText, const QString &passwordText)
{
    const QString login = withoutLineBreaks(loginText);
    const QString password = withoutLineBreaks(passwordText);
    SessionRecord &s = Session();
    s.UserTyp = -1;

    DbConnection sys(ConnStrSys());
    if (!sys.isOpen())
        return failed();
    QSqlQuery user = sys.query();
    if (!sys.exec(user, QStringLiteral("SELECT * FROM sys_users WHERE login=? AND password=? "), {login, password}))
        return failed();
    if (!user.next())
        return LoginResult::Refused;

    s.UserPrijmeni = FieldText(user, QStringLiteral("prijmeni"));
    s.UserJmeno = FieldText(user, QStringLiteral("jmeno"));
    s.UserTyp = short(user.value(QStringLiteral("typ")).toInt());
    s.UserTypOrig = s.UserTyp;
    s.UserLogin = user.value(QStringLiteral("login")).toString();
    s.UserFiltrGrant = user.value(QStringLiteral("filtr_grant")).toString();
    const QString centre = user.value(QStringLiteral("code_stredisko")).toString();
    const QVariant key = user.value(QStringLiteral("_key"));

    if (!sys.exec(QStringLiteral("UPDATE sys_users SET screen=?, os=?, version=?, last_login=?  WHERE _key=?"),
                  {GetScreenSize().left(ScreenWidth), GetMyWindowsVersion().left(OsWidth), ProgramVersion(),
                   lastLoginText(), key}))
        return failed();

    QSqlQuery kvl = sys.query();
    if (!sys.exec(kvl, QStringLiteral("SELECT * FROM sys_db_kvl WHERE code_stredisko=? "), {centre}) || !kvl.next())
        return failed();   // a user without a centre cannot work anywhere
    s.MysqlDb = kvl.value(QStringLiteral("mysql_db")).toString();
    s.IpServer = kvl.value(QStringLiteral("ip_server")).toString();
    s.IpPc = kvl.value(QStringLiteral("ip_pc")).toString();
    return LoginResult::Succeeded;
}

QString GetMyWindowsVersion()
{
    const QString name = QSysInfo::prettyProductName().trimmed();
    const QString kernel = QSysInfo::kernelVersion().trimmed();
    if (name.isEmpty() || name == QLatin1String("Unknown"))
        return kernel.isEmpty() ? QStringLiteral("Linux") : QStringLiteral("Linux ") + kernel;
    return kernel.isEmpty() ? name : name + QLatin1Char(' ') + kernel;
}

QString GetScreenSize()
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    const QSize size = screen ? screen->size() : QSize(0, 0);
    return QStringLiteral("%1x%2").arg(size.width()).arg(size.height());
}

bool CheckResolution800()
{
    Session().ScreenSize = GetScreenSize();
    return Session().ScreenSize == QLatin1String("800x600");
}
