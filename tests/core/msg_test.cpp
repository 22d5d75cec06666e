#include "core/msg.h"
#include "support/testenv.h"

#include <QAbstractButton>
#include <QApplication>
#include <QElapsedTimer>
#include <QMessageBox>
#include <QTimer>

#include <gtest/gtest.h>

namespace {
// Presses a button of the box that is open once the event loop runs.
void pressLater(QMessageBox::StandardButton which)
{
    QTimer::singleShot(200, [which] {
        for (QWidget *w : QApplication::topLevelWidgets())
            if (auto *box = qobject_cast<QMessageBox *>(w); box && box->isVisible())
                box->button(which)->click();
    });
}
} // namespace

TEST(MsgBoxPos, UnansweredQuestionClosesItselfAsCancelAndTakesAppTitle)
{
    QString title;
    QElapsedTimer clock;
    clock.start();
    const int answer = MsgBoxPos("Opravdu?", MsgQuestionOkCancel, title, 40, 60);
    EXPECT_GE(clock.elapsed(), MsgAutoCloseMs - 100);
    EXPECT_LT(clock.elapsed(), MsgAutoCloseMs + 3000);
    EXPECT_EQ(answer, AnswerCancel);
    EXPECT_EQ(title, AppTitle());
}

TEST(MsgBoxPos, AnsweredBoxGivesTheButtonsAnswer)
{
    pressLater(QMessageBox::Ok);
    EXPECT_EQ(MsgBox("Opravdu?", MsgQuestionOkCancel, "Informace"), AnswerOk);
    pressLater(QMessageBox::Cancel);
    EXPECT_EQ(MsgBox("Opravdu?", MsgQuestionOkCancel, "Informace"), AnswerCancel);
    pressLater(QMessageBox::No);
    EXPECT_FALSE(Confirmed(MsgBox("Ano, nebo ne?", 36)));
}

TEST(MessageSink, RecordsAndScriptsAnswersAndInputs)
{
    testenv::ScriptedMessages messages;
    messages.answers = {AnswerCancel};
    messages.inputs = {QString("Nováková"), std::nullopt};
    QString title;
    EXPECT_EQ(MsgBoxPos("Smazat?", MsgQuestionOkCancel, title), AnswerCancel);
    EXPECT_EQ(MsgBox("Hotovo"), AnswerOk);
    EXPECT_EQ(InputBox("Zadejte jméno:", "Přidat položku").value_or("?"), "Nováková");
    EXPECT_FALSE(InputBox("Zadejte jméno:", "Přidat položku").has_value());
    ASSERT_EQ(messages.shown.size(), 2u);
    EXPECT_EQ(messages.shown[0].title, AppTitle());
    EXPECT_EQ(messages.shown[1].style, MsgInformation);
    EXPECT_EQ(messages.prompts.size(), 2);
}
