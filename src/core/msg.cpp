#include "core/msg.h"

#include "core/db.h"

#include <QApplication>
#include <QGuiApplication>
#include <QInputDialog>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTimer>

#include <cstdlib>

const char *const TextNotConnected =
    "Vaše PC není připojený k MySQL databáze nebo není funkční Apache WEB server, "
    "obraťte se prosim na Administrátora sítě.";
const char *const TextWillEnd = "Nyní program bude ukončen.";

namespace {
const MessageSink *g_sink = nullptr;
std::function<void(int)> g_endHandler;

QMessageBox::Icon iconOf(int style)
{
    switch (style & 0x70) {
    case 16: return QMessageBox::Critical;
    case 32: return QMessageBox::Question;
    case 48: return QMessageBox::Warning;
    case 64: return QMessageBox::Information;
    default: return QMessageBox::NoIcon;
    }
}

int realMessage(const QString &text, int style, const QString &title, int x, int y)
{
    QMessageBox box(iconOf(style), title, text, QMessageBox::NoButton, QApplication::activeWindow());
    const int buttons = style & 7;
    // What a box that closes itself answers.
    int closedAnswer = AnswerOk;
    switch (buttons) {
    case 1:
        box.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
        closedAnswer = AnswerCancel;
        break;
    case 3:
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
        closedAnswer = AnswerCancel;
        break;
    case 4:
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
        closedAnswer = AnswerNo;
        break;
    default:
        box.setStandardButtons(QMessageBox::Ok);
        break;
    }
    if (x != 0 || y != 0)
        box.move(x, y);
    bool timedOut = false;
    QTimer::singleShot(MsgAutoCloseMs, Qt::PreciseTimer, &box, [&box, &timedOut] {
        timedOut = true;
        box.done(0);
    });
    const int result = box.exec();
    if (timedOut)
        return closedAnswer;
    switch (result) {
    case QMessageBox::Ok: return AnswerOk;
    case QMessageBox::Cancel: return AnswerCancel;
    case QMessageBox::Yes: return AnswerYes;
    case QMessageBox::No: return AnswerNo;
    default: return closedAnswer;
    }
}
} // namespace

QString AppTitle() { return QStringLiteral("Fondarix MySQL"); }

int MsgBoxPos(const QString &text, int style, QString &title, int x, int y)
{
    if (title.isEmpty())
        title = AppTitle();
    if (g_sink && g_sink->message)
        return g_sink->message(text, style, title);
    return realMessage(text, style, title, x, y);
}

int MsgBox(const QString &text, int style, const QString &title)
{
    QString t = title;
    return MsgBoxPos(text, style, t);
}

bool Confirmed(int answer) { return answer == AnswerOk || answer == AnswerYes; }

std::optional<QString> InputBox(const QString &prompt, const QString &title, const QString &defaultText)
{
    const QString t = title.isEmpty() ? AppTitle() : title;
    if (g_sink && g_sink->input)
        return g_sink->input(prompt, t, defaultText);
    bool ok = false;
    const QString text = QInputDialog::getText(QApplication::activeWindow(), t, prompt,
                                               QLineEdit::Normal, defaultText, &ok);
    if (!ok)
        return std::nullopt;
    return text;
}

void SetMessageSink(const MessageSink *sink) { g_sink = sink; }

void EndProcess(int code)
{
    if (g_endHandler) {
        g_endHandler(code);
        return;
    }
    std::exit(code);
}

void SetEndProcessHandler(std::function<void(int)> handler) { g_endHandler = std::move(handler); }

void FatalConnectionError()
{
    // Without the account nothing can connect: the file to put right is named first.
    QString accountError;
    if (!ReadOptionFile(OptionFilePath(), &accountError))
        MsgBox(accountError, MsgCritical);
    MsgBox(QString::fromUtf8(TextNotConnected) + QLatin1Char('\n') + QString::fromUtf8(TextWillEnd), MsgCritical);
    EndProcess(1);
}
