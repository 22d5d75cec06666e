#pragma once
// What every test of the program stands on: private folders, a private database server,
// fresh databases, scripted answers to messages, and saved screenshots.

#include <QString>
#include <QWidget>

#include <gtest/gtest.h>
#include <QStringList>

#include <deque>
#include <ostream>
#include <optional>
#include <vector>

namespace testenv {

// Prepares private folders for the configuration file, scratch files and the settings
// store, and a database server: the one the test run started ($FONDARIX_TEST_SERVER),
// or one of this process's own, stopped at exit. Called once by the test main.
void SetUp();
void TearDown();

// Port of the server in use.
int ServerPort();

// Drops and creates all the program's databases; with demo, loads the demo institute.
// Also resets the session record and the configuration file to a known state.
void FreshDatabases(bool demo = true);

// Logs in the session as the demo user of this role (1..6) without the screen.
void LoginAs(int role);

// Replaces the configuration file's content.
void WriteIni(const QString &content);

// Folder for generated samples a person may want to open: <build>/samples/<name>.
QString SamplesDir(const QString &name);

// A control of a screen by its objectName; a missing one fails the test.
template <typename T>
T *Child(QWidget *screen, const char *name)
{
    T *w = screen->findChild<T *>(QLatin1String(name));
    EXPECT_NE(w, nullptr) << name;
    return w;
}

// Saves a picture of the widget as <build>/screens/<name>.png.
void SaveScreen(QWidget *widget, const QString &name);

// Runs a statement on a database and returns the first column of every row, as text.
QStringList Column(const QString &database, const QString &sql);
// Runs a statement on a database; fails the test when it fails.
void Exec(const QString &database, const QString &sql);

// Runs the batch program of this build with the test's environment and waits for it.
struct CliRun {
    int code;
    QString out;
    QString err;
};
CliRun Cli(const QStringList &args);

// Records every message shown and gives scripted answers; the default answer is OK
// (or, for an input box, Cancel). Installed while it lives.
struct Message {
    QString text;
    int style;
    QString title;
};
class ScriptedMessages {
public:
    ScriptedMessages();
    ~ScriptedMessages();
    std::deque<int> answers;                      // answers to message boxes, in order
    std::deque<std::optional<QString>> inputs;    // answers to input boxes
    std::vector<Message> shown;
    QStringList prompts;                          // input box prompts
    bool saw(const QString &text) const;
    QString lastText() const;
};

// Records the end of the process instead of leaving. Installed while it lives.
class ProcessEndRecorder {
public:
    ProcessEndRecorder();
    ~ProcessEndRecorder();
    bool ended = false;
    int code = 0;
};

} // namespace testenv

// Readable QString values in test failure messages.
void PrintTo(const QString &text, std::ostream *os);
