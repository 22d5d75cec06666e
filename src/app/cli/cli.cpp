#include "app/cli/cli.h"

#include "core/db.h"
#include "core/session.h"

#include <QSqlQuery>

#include <cstdio>
#include <unistd.h>

namespace {
std::vector<CliVerb> &registry()
{
    static std::vector<CliVerb> verbs;
    return verbs;
}

bool progressOpen = false;

void print(std::FILE *stream, const QString &text)
{
    std::fputs(text.toLocal8Bit().constData(), stream);
    std::fputc('\n', stream);
}
} // namespace

CliRegistration::CliRegistration(CliVerb verb)
{
    registry().push_back(std::move(verb));
}

const std::vector<CliVerb> &CliVerbs()
{
    return registry();
}

CliArgs::CliArgs(const CliVerb &verb, const QStringList &words)
{
    const QStringList valueOptions = verb.valueOptions + QStringList{QStringLiteral("--login")};
    for (int i = 0; i < words.size(); ++i) {
        const QString &word = words[i];
        if (!word.startsWith(QLatin1String("--")) || word == QLatin1String("--")) {
            m_positional << word;
            continue;
        }
        const int eq = word.indexOf(QLatin1Char('='));
        const QString name = eq < 0 ? word : word.left(eq);
        if (verb.flags.contains(name) && eq < 0) {
            m_flags << name;
        } else if (valueOptions.contains(name)) {
            if (eq >= 0) {
                m_values << word.mid(eq + 1);
            } else if (i + 1 < words.size()) {
                m_values << words[++i];
            } else {
                m_error = QStringLiteral("volba %1 potřebuje hodnotu").arg(name);
                return;
            }
            m_names << name;
        } else {
            m_error = QStringLiteral("neznámá volba %1").arg(word);
            return;
        }
    }
    if (m_positional.size() < verb.minPositional)
        m_error = QStringLiteral("chybí argument");
    else if (m_positional.size() > verb.maxPositional)
        m_error = QStringLiteral("nadbytečný argument %1").arg(m_positional.value(verb.maxPositional));
}

bool CliArgs::has(const QString &name) const
{
    return m_names.contains(name);
}

QString CliArgs::value(const QString &name, const QString &defaultValue) const
{
    const int at = m_names.lastIndexOf(name);
    return at < 0 ? defaultValue : m_values[at];
}

bool CliOpenSession(const CliArgs &args)
{
    SessionRecord &s = Session();
    DbConnection sys(ConnStrSys());
    if (!sys.isOpen()) {
        CliFail(QStringLiteral("Nelze se připojit k databázovému serveru: %1").arg(sys.errorText()));
        return false;
    }
    const QString login = args.value(QStringLiteral("--login"));
    QString centre;
    if (!login.isEmpty()) {
        QSqlQuery user = sys.query();
        if (!sys.exec(user, QStringLiteral("SELECT * FROM sys_users WHERE login=? "), {login}) || !user.next()) {
            CliFail(QStringLiteral("Uživatel \"%1\" neexistuje.").arg(login));
            return false;
        }
        s.UserPrijmeni = FieldText(user, QStringLiteral("prijmeni"));
        s.UserJmeno = FieldText(user, QStringLiteral("jmeno"));
        s.UserTyp = short(user.value(QStringLiteral("typ")).toInt());
        s.UserLogin = user.value(QStringLiteral("login")).toString();
        s.UserFiltrGrant = user.value(QStringLiteral("filtr_grant")).toString();
        centre = user.value(QStringLiteral("code_stredisko")).toString();
    } else {
        s.UserTyp = 2;
        s.UserLogin = QStringLiteral("fondarix-cli");
        s.UserFiltrGrant.clear();
    }
    s.UserTypOrig = s.UserTyp;
    QSqlQuery kvl = sys.query();
    const bool found = centre.isEmpty()
        ? sys.exec(kvl, QStringLiteral("SELECT * FROM sys_db_kvl ORDER BY code_stredisko")) && kvl.next()
        : sys.exec(kvl, QStringLiteral("SELECT * FROM sys_db_kvl WHERE code_stredisko=? "), {centre}) && kvl.next();
    if (!found) {
        CliFail(QStringLiteral("Středisko uživatele nebylo nalezeno v sys_db_kvl."));
        return false;
    }
    s.MysqlDb = kvl.value(QStringLiteral("mysql_db")).toString();
    s.IpServer = kvl.value(QStringLiteral("ip_server")).toString();
    s.IpPc = kvl.value(QStringLiteral("ip_pc")).toString();
    return true;
}

namespace {
bool openAfterSession(const CliArgs &args, QString (*connStr)(), const QString &which,
                      std::unique_ptr<DbConnection> *conn)
{
    if (!CliOpenSession(args))
        return false;
    *conn = std::make_unique<DbConnection>(connStr());
    if ((*conn)->isOpen())
        return true;
    CliFail(QStringLiteral("Nelze se připojit k databázi %1: %2").arg(which, (*conn)->errorText()));
    return false;
}
} // namespace

bool CliOpenCentre(const CliArgs &args, std::unique_ptr<DbConnection> *conn)
{
    return openAfterSession(args, ConnStrCentre, QStringLiteral("střediska"), conn);
}

bool CliOpenGranty(const CliArgs &args, std::unique_ptr<DbConnection> *conn)
{
    return openAfterSession(args, ConnStrGranty, QStringLiteral("GRANTů"), conn);
}

void CliProgress(const QString &text)
{
    if (isatty(fileno(stderr))) {
        std::fprintf(stderr, "\r%s\033[K", text.toLocal8Bit().constData());
        progressOpen = true;
    } else {
        print(stderr, text);
    }
    std::fflush(stderr);
}

void CliProgressDone()
{
    if (progressOpen)
        std::fputc('\n', stderr);
    progressOpen = false;
}

void CliSummary(const QString &text)
{
    CliProgressDone();
    print(stdout, text);
    std::fflush(stdout);
}

int CliFail(const QString &text)
{
    CliProgressDone();
    print(stderr, text);
    return CliFailed;
}
