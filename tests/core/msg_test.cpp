#include "core/msg.h"
#include "support/testenv.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCalendarWidget>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QLocale>
#include <QMessageBox>
#include <QTemporaryDir>
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
// The texts of the visible buttons of the dialog that opens once the event loop runs
// (shortcut marks left out); the dialog is then cancelled and saved as a picture.
void readButtonsLater(QStringList *texts, const QString &picture)
{
    QTimer::singleShot(200, [texts, picture] {
        auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        for (QAbstractButton *b : dialog->findChildren<QAbstractButton *>())
            if (b->isVisible() && !b->text().isEmpty())
                *texts << b->text().remove(QLatin1Char('&'));
        testenv::SaveScreen(dialog, picture);
        dialog->reject();
    });
}
} // namespace

// On a workstation whose language is not Czech (the test main makes every test so),
// Qt's own buttons and dialogs and the calendar speak Czech.
TEST(CzechEverywhere, QuestionFileDialogAndCalendarOnANonCzechSystem)
{
    ASSERT_NE(QLocale::system().language(), QLocale::Czech);

    QStringList question;
    readButtonsLater(&question, "czech_question");
    EXPECT_EQ(MsgBox("Opravdu?", MsgQuestionOkCancel, "Informace"), AnswerCancel);
    question.sort();
    EXPECT_EQ(question, (QStringList{"OK", "Zrušit"}));

    QStringList yesNo;
    readButtonsLater(&yesNo, "czech_yes_no");
    MsgBox("Ano, nebo ne?", 36);
    yesNo.sort();
    EXPECT_EQ(yesNo, (QStringList{"Ano", "Ne"}));

    // Qt's own file dialog, not a desktop's, which would speak the system's language.
    EXPECT_TRUE(QCoreApplication::testAttribute(Qt::AA_DontUseNativeDialogs));
    QStringList file;
    readButtonsLater(&file, "czech_file_dialog");
    QTemporaryDir folder;
    EXPECT_TRUE(QFileDialog::getOpenFileName(nullptr, "Vyberte soubor", folder.path()).isEmpty());
    EXPECT_TRUE(file.contains("Otevřít")) << file.join('|').toStdString();
    EXPECT_TRUE(file.contains("Zrušit")) << file.join('|').toStdString();
    for (const char *english : {"Open", "Cancel", "Yes", "No"})
        EXPECT_FALSE(file.contains(english) || question.contains(english) || yesNo.contains(english)) << english;

    QCalendarWidget calendar;
    EXPECT_EQ(calendar.firstDayOfWeek(), Qt::Monday);
    EXPECT_EQ(calendar.locale().standaloneMonthName(1), "leden");
    EXPECT_EQ(QLocale().toString(QDate(2026, 3, 5), QLocale::ShortFormat), "05.03.26");
}

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
