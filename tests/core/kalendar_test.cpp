#include "core/frmKalendar.h"
#include "support/testenv.h"

#include <QApplication>
#include <QCalendarWidget>
#include <QComboBox>
#include <QDate>
#include <QPushButton>
#include <QTimer>

#include <gtest/gtest.h>

using namespace testenv;

namespace {
// Runs the action on the picker once its modal loop is running.
void whenShown(std::function<void(frmKalendar *)> action)
{
    QTimer::singleShot(0, [action] {
        auto *picker = qobject_cast<frmKalendar *>(QApplication::activeModalWidget());
        ASSERT_NE(picker, nullptr);
        action(picker);
    });
}
} // namespace

TEST(Kalendar, DateTextsAndStartDates)
{
    EXPECT_EQ(KalendarDateText(QDate(2013, 3, 5)), "05.03.2013");
    EXPECT_EQ(KalendarDateText(QDate(2024, 12, 31)), "31.12.2024");
    EXPECT_EQ(KalendarStartDate("5.3.2013"), QDate(2013, 3, 5));
    EXPECT_EQ(KalendarStartDate("05.03.2013 00:00:00"), QDate(2013, 3, 5));
    EXPECT_EQ(KalendarStartDate("2013-03-05 10:11:12"), QDate(2013, 3, 5));
    for (const char *bad : {"", "00:00:00", "31.2.2013", "zítra", "5.3."})
        EXPECT_EQ(KalendarStartDate(bad), QDate::currentDate()) << bad;
}

TEST(Kalendar, ClickOnADayOkAndCancel)
{
    frmKalendar picker;
    picker.SelDate = "5.3.2013 00:00:00";
    whenShown([](frmKalendar *p) {
        auto *calendar = p->findChild<QCalendarWidget *>("Calendar1");
        EXPECT_EQ(calendar->selectedDate(), QDate(2013, 3, 5));
        SaveScreen(p, "frmKalendar");
        emit calendar->clicked(QDate(2013, 3, 9));
    });
    EXPECT_EQ(picker.exec(), QDialog::Accepted);
    EXPECT_EQ(picker.SelDate, "09.03.2013");

    // A year picked in the list keeps the day and month; 29 February falls back to the 28th.
    picker.SelDate = "29.02.2024";
    whenShown([](frmKalendar *p) {
        auto *years = p->findChild<QComboBox *>("Combo1");
        const int index = years->findText("2023");
        ASSERT_GE(index, 0);
        years->setCurrentIndex(index);
        emit years->activated(index);
        p->findChild<QPushButton *>("cmdClose")->click();
    });
    picker.exec();
    EXPECT_EQ(picker.SelDate, "28.02.2023");

    picker.SelDate = "01.01.2020";
    whenShown([](frmKalendar *p) { p->reject(); });
    EXPECT_EQ(picker.exec(), QDialog::Rejected);
    EXPECT_EQ(picker.SelDate, "00:00:00");

    whenShown([](frmKalendar *p) { p->reject(); });
    EXPECT_EQ(PickDate(nullptr, "1.1.2020"), std::nullopt);
    whenShown([](frmKalendar *p) { p->findChild<QPushButton *>("cmdClose")->click(); });
    EXPECT_EQ(PickDate(nullptr, "7.8.2021"), std::optional<QString>("07.08.2021"));
}
