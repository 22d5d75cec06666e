#include "support/testenv.h"

#include "core/codepage.h"
#include "core/config.h"
#include "core/db.h"
#include "core/msg.h"
#include "core/session.h"
#include "fondarix_paths.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QSettings>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QWidget>

#include <gtest/gtest.h>

#include <memory>

#include <fcntl.h>
#include <sys/file.h>

namespace testenv {
namespace {
std::unique_ptr<QTemporaryDir> g_root;   // folders of this process
QString g_serverDir;
bool g_ownServer = false;
int g_port = 0;

QString sourceDir() { return QStringLiteral(FONDARIX_SOURCE_DIR); }

bool runDbServer(const QStringList &args)
{
    QProcess p;
    p.setProcessChannelMode(QProcess::MergedChannels);
    p.start(sourceDir() + QStringLiteral("/scripts/dbserver"), args);
    if (!p.waitForFinished(120000) || p.exitCode() != 0) {
        fprintf(stderr, "dbserver %s failed: %s\n", qPrintable(args.join(' ')), p.readAll().constData());
        return false;
    }
    return true;
}

QString defaultIni()
{
    return QStringLiteral("[NASTAVENI]\r\nSERVER_IP=127.0.0.1\r\nSERVER_PORT=%1\r\n").arg(g_port);
}
} // namespace

void SetUp()
{
    g_root = std::make_unique<QTemporaryDir>();
    const QString root = g_root->path();
    QDir().mkpath(root + QStringLiteral("/win"));
    QDir().mkpath(root + QStringLiteral("/temp"));
    QDir().mkpath(root + QStringLiteral("/settings"));
    qputenv("FONDARIX_WINDIR", (root + QStringLiteral("/win")).toLocal8Bit());
    qputenv("FONDARIX_TEMP", (root + QStringLiteral("/temp")).toLocal8Bit());
    qputenv("HOME", root.toLocal8Bit());   // desktop folder and the like stay inside
    qputenv("FONDARIX_NO_BROWSER", "1");   // nothing opens the system browser under tests
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, root + QStringLiteral("/settings"));
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, root + QStringLiteral("/settings"));

    g_serverDir = qEnvironmentVariable("FONDARIX_TEST_SERVER");
    bool shared = false;
    if (!g_serverDir.isEmpty()) {
        // Every test drops and creates the same databases, so only one test at a time may use
        // the run's server, whichever CTest run or executable it belongs to (the lock of CTest
        // holds within one run only). The lock goes with the process; the server's stop waits
        // for it. A run that ended meanwhile may have stopped the server: started again here.
        const int fd = ::open(QFile::encodeName(g_serverDir + QStringLiteral("/inuse.lock")).constData(),
                              O_CREAT | O_RDWR | O_CLOEXEC, 0644);
        shared = fd >= 0 && ::flock(fd, LOCK_EX) == 0
                 && runDbServer({QStringLiteral("--dir"), g_serverDir, QStringLiteral("--port"), QStringLiteral("auto"),
                                 QStringLiteral("start")});
    }
    if (!shared) {
        g_serverDir = root + QStringLiteral("/db");
        g_ownServer = runDbServer({QStringLiteral("--dir"), g_serverDir, QStringLiteral("--port"),
                                   QStringLiteral("auto"), QStringLiteral("start")});
    }
    QFile portFile(g_serverDir + QStringLiteral("/port"));
    if (portFile.open(QIODevice::ReadOnly))
        g_port = QString::fromLatin1(portFile.readAll()).trimmed().toInt();
    qputenv("FONDARIX_MYCNF", (g_serverDir + QStringLiteral("/fondarix.cnf")).toLocal8Bit());
    InitSpecialDirs();
    WriteIni(defaultIni());
}

void TearDown()
{
    if (g_ownServer)
        runDbServer({QStringLiteral("--dir"), g_serverDir, QStringLiteral("stop")});
    g_root.reset();
}

int ServerPort() { return g_port; }

void WriteIni(const QString &content)
{
    QFile f(Session().IniPath);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
    f.write(ToCp1250(content));   // the file is Windows-1250, as a workstation has it
}

void FreshDatabases(bool demo)
{
    Session() = SessionRecord();
    InitSpecialDirs();
    WriteIni(defaultIni());
    QSettings(QStringLiteral("Fondarix"), QStringLiteral("Fondarix")).clear();
    QString error;
    const bool ok = CreateDatabases(sourceDir() + QStringLiteral("/db/schema"),
                                    demo ? sourceDir() + QStringLiteral("/db/demo") : QString(), true, &error);
    ASSERT_TRUE(ok) << error.toStdString();
}

void LoginAs(int role)
{
    DbConnection sys(ConnStrSys());
    ASSERT_TRUE(sys.isOpen()) << sys.errorText().toStdString();
    QSqlQuery q = sys.query();
    ASSERT_TRUE(sys.exec(q, QStringLiteral("SELECT u.login, u.prijmeni, u.jmeno, u.filtr_grant, k.mysql_db "
                                           "FROM sys_users u JOIN sys_db_kvl k ON k.code_stredisko = u.code_stredisko "
                                           "WHERE u.typ = ? ORDER BY u._key LIMIT 1"),
                         {role}));
    ASSERT_TRUE(q.next()) << "no demo user of role " << role;
    SessionRecord &s = Session();
    s.UserLogin = FieldText(q, 0);
    s.UserPrijmeni = FieldText(q, 1);
    s.UserJmeno = FieldText(q, 2);
    s.UserFiltrGrant = FieldText(q, 3);
    s.MysqlDb = FieldText(q, 4);
    s.UserTyp = short(role);
    s.UserTypOrig = short(role);
}

QString SamplesDir(const QString &name)
{
    const QString dir = QStringLiteral(FONDARIX_SCREENS_DIR "/../samples/") + name;
    QDir().mkpath(dir);
    return QDir::cleanPath(dir);
}

void SaveScreen(QWidget *widget, const QString &name)
{
    QDir().mkpath(QStringLiteral(FONDARIX_SCREENS_DIR));
    if (!widget->isVisible())
        widget->show();
    widget->grab().save(QStringLiteral(FONDARIX_SCREENS_DIR "/") + name + QStringLiteral(".png"));
}

QStringList Column(const QString &database, const QString &sql)
{
    DbConnection conn(ConnStrFor(database));
    QStringList values;
    QSqlQuery q = conn.query();
    if (!conn.exec(q, sql)) {
        ADD_FAILURE() << sql.toStdString() << ": " << conn.errorText().toStdString();
        return values;
    }
    while (q.next())
        values << (q.value(0).isNull() ? QStringLiteral("<NULL>") : q.value(0).toString());
    return values;
}

void Exec(const QString &database, const QString &sql)
{
    DbConnection conn(ConnStrFor(database));
    EXPECT_TRUE(conn.exec(sql)) << sql.toStdString() << ": " << conn.errorText().toStdString();
}

// --- scripted messages ----------------------------------------------------------------

namespace {
MessageSink g_sink;
ScriptedMessages *g_current = nullptr;
} // namespace

ScriptedMessages::ScriptedMessages()
{
    g_current = this;
    g_sink.message = [](const QString &text, int style, const QString &title) {
        g_current->shown.push_back({text, style, title});
        if (g_current->answers.empty())
            return int(AnswerOk);
        const int a = g_current->answers.front();
        g_current->answers.pop_front();
        return a;
    };
    g_sink.input = [](const QString &prompt, const QString &, const QString &) -> std::optional<QString> {
        g_current->prompts << prompt;
        if (g_current->inputs.empty())
            return std::nullopt;
        auto a = g_current->inputs.front();
        g_current->inputs.pop_front();
        return a;
    };
    SetMessageSink(&g_sink);
}

ScriptedMessages::~ScriptedMessages()
{
    SetMessageSink(nullptr);
    g_current = nullptr;
}

bool ScriptedMessages::saw(const QString &text) const
{
    for (const Message &m : shown)
        if (m.text == text)
            return true;
    return false;
}

QString ScriptedMessages::lastText() const { return shown.empty() ? QString() : shown.back().text; }

ProcessEndRecorder::ProcessEndRecorder()
{
    SetEndProcessHandler([this](int c) {
        ended = true;
        code = c;
    });
}

ProcessEndRecorder::~ProcessEndRecorder() { SetEndProcessHandler({}); }

CliRun Cli(const QStringList &args)
{
    QProcess p;
    p.start(QStringLiteral(FONDARIX_BINARY_DIR "/src/app/fondarix-cli"), args);
    p.waitForFinished(60000);
    return {p.exitCode(), QString::fromUtf8(p.readAllStandardOutput()), QString::fromUtf8(p.readAllStandardError())};
}

} // namespace testenv

void PrintTo(const QString &text, std::ostream *os) { *os << '"' << text.toStdString() << '"'; }
