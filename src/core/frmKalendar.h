#pragma once
// The date picker. The caller sets SelDate (a date text, possibly with a time part),
// runs exec() and reads SelDate back as "dd.MM.yyyy". A picker closed without a choice
// leaves "00:00:00" in SelDate, the value callers strip away.

#include <QDialog>
#include <QString>

#include <optional>

class QCalendarWidget;
class QComboBox;
class QPushButton;

class frmKalendar : public QDialog {
    Q_OBJECT
public:
    explicit frmKalendar(QWidget *parent = nullptr);

    QString SelDate;

    int exec() override;

private:
    void takeDate(const QDate &date);

    QCalendarWidget *Calendar1;
    QComboBox *Combo1;
    QPushButton *cmdClose;
};

// Day and month padded to two digits: "05.03.2013".
QString KalendarDateText(const QDate &date);
// The date a picker starts from: the text's date with any "00:00:00" cut, else today.
QDate KalendarStartDate(const QString &selDate);

// Runs the picker from the initial text; the chosen date, or nothing when cancelled.
std::optional<QString> PickDate(QWidget *parent, const QString &initial);
