#pragma once
// The frame of fondarix-cli: verbs, their options, the session they run in, and the
// three channels (progress to stderr, summary to stdout, exit code).
//
// A verb lives in a file of its own in this folder and registers itself with a static
// CliRegistration; the files are compiled into the executable itself, so the linker keeps
// every registration. Exit codes: 0 success, 1 refusal or failure, 2 wrong usage.

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <vector>

constexpr int CliOk = 0;
constexpr int CliFailed = 1;
constexpr int CliUsage = 2;

class CliArgs;

struct CliVerb {
    QString name;        // one or two words: "build-tree", "report groups"
    QString usage;       // what follows the name: "FILE [--filter F]"
    QString summary;     // one line for --help, in Czech as every text of ours
    QStringList valueOptions;   // options that take a value: "--from"
    QStringList flags;          // options without a value: "--force"
    int minPositional = 0;
    int maxPositional = 0;
    std::function<int(const CliArgs &args)> run;
};

// Registers a verb at static initialisation: `static CliRegistration reg({...});`
struct CliRegistration {
    explicit CliRegistration(CliVerb verb);
};
const std::vector<CliVerb> &CliVerbs();

// The words after the verb, split into positionals and options. "--opt VALUE" and
// "--opt=VALUE" both work; "--login L" is known to every verb.
class CliArgs {
public:
    CliArgs(const CliVerb &verb, const QStringList &words);
    bool ok() const { return m_error.isEmpty(); }
    QString error() const { return m_error; }
    const QStringList &positional() const { return m_positional; }
    QString at(int index) const { return m_positional.value(index); }
    bool flag(const QString &name) const { return m_flags.contains(name); }
    bool has(const QString &name) const;
    QString value(const QString &name, const QString &defaultValue = QString()) const;

private:
    QStringList m_positional;
    QStringList m_flags;
    QStringList m_names, m_values;
    QString m_error;
};

// Opens the session a verb runs in: with a login, that user's role, centre and grant
// filter (no password: whoever runs the command holds the database account anyway);
// without one, an administrator of the first centre with no grant filter. Prints the
// reason and returns false when the server or the user cannot be had.
bool CliOpenSession(const CliArgs &args);

class DbConnection;
// The session as above and a connection to its centre's database, or to the grant
// database; false, with the reason printed, when either cannot be had.
bool CliOpenCentre(const CliArgs &args, std::unique_ptr<DbConnection> *conn);
bool CliOpenGranty(const CliArgs &args, std::unique_ptr<DbConnection> *conn);

// A progress line on stderr ("\r"-rewritten on a terminal, one line per call otherwise).
void CliProgress(const QString &text);
// Ends a progress line begun with CliProgress.
void CliProgressDone();
// A line of the summary, on stdout.
void CliSummary(const QString &text);
// A refusal or failure, on stderr; returns CliFailed.
int CliFail(const QString &text);

// The folder of the schema and demo files: beside the executable when installed, else in
// the sources.
QString CliDataDir();

// Every existing database of the program (fondarix_sys, fondarix_granty, the centres of
// sys_db_kvl) brought up to db/schema, and every centre's warehouses to their indexes, with a
// progress line per database. *summary gets "database: change" lines; false with the reason
// on the first failure.
bool UpgradeDatabases(const QString &verb, QStringList *summary, QString *error);
