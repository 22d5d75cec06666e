#pragma once
// Every message box, question and input box of the program goes through here.
// A sink can be installed in place of the real dialogs (the tests script answers with it).

#include <QString>
#include <functional>
#include <optional>

// Style numbers: icon (16 critical, 32 question, 48 warning, 64 information) plus buttons
// (0 OK, 1 OK/Cancel, 3 Yes/No/Cancel, 4 Yes/No).
enum MsgStyleValue : int {
    MsgCritical = 16,
    MsgQuestionOkCancel = 33,
    MsgWarning = 48,
    MsgInformation = 64,
};

// Answers, as the platform numbers them.
enum MsgAnswer : int { AnswerOk = 1, AnswerCancel = 2, AnswerYes = 6, AnswerNo = 7 };

// The box closes itself after this many milliseconds and counts as closed.
constexpr int MsgAutoCloseMs = 5000;

// Application title, used where a box is given an empty title.
QString AppTitle();

// Message box at (x, y) (both 0: centred) that closes itself after five seconds.
// An empty title becomes the application's title, written back to the caller.
int MsgBoxPos(const QString &text, int style, QString &title, int x = 0, int y = 0);

// The same without position and without giving the title back.
int MsgBox(const QString &text, int style = MsgInformation, const QString &title = QString());

// True when a question was answered OK or Yes.
bool Confirmed(int answer);

// Input box; std::nullopt when cancelled.
std::optional<QString> InputBox(const QString &prompt, const QString &title,
                                const QString &defaultText = QString());

// Replacement for the dialogs. The message function returns the answer; the input
// function returns the typed text or nullopt for Cancel.
struct MessageSink {
    std::function<int(const QString &text, int style, const QString &title)> message;
    std::function<std::optional<QString>(const QString &prompt, const QString &title,
                                         const QString &defaultText)> input;
};
void SetMessageSink(const MessageSink *sink);   // nullptr: real dialogs

// Ending the process. Code that calls it returns at once afterwards; a test installs
// a handler that records the end instead of leaving.
void EndProcess(int code = 0);
void SetEndProcessHandler(std::function<void(int)> handler);   // empty: std::exit

// The fatal path of a failed connection: the two texts in one critical box, then the end.
// When the database account cannot be read, a critical box naming the option file comes first.
extern const char *const TextNotConnected;
extern const char *const TextWillEnd;
void FatalConnectionError();
