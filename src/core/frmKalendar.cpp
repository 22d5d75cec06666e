#include "core/frmKalendar.h"

#include <QCalendarWidget>
#include <QComboBox>
#include <QDate>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
constexpr int YearsAround = 15;   // the year list reaches this far either side of the start

const QString &Cancelled()
{
    static const QString text = QStringLiteral("00:00:00");
    return text;
}
} // namespace

QString KalendarDateText(const QDate &date) { return date.toString(QStringLiteral("dd.MM.yyyy")); }

QDate KalendarStartDate(const QString &selDate)
{
    QString text = selDate;
    text.remove(Cancelled());
    text = text.trimmed();
    // A value with a time part other than midnight: only the date counts.
    text = text.section(QLatin1Char(' '), 0, 0);
    for (const char *format : {"d.M.yyyy", "yyyy-M-d"}) {
        const QDate date = QDate::fromString(text, QLatin1String(format));
        if (date.isValid())
            return date;
    }
    return QDate::currentDate();
}

frmKalendar::frmKalendar(QWidget *parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("frmKalendar"));
    setWindowTitle(QStringLiteral("Kalendář"));

    Calendar1 = new QCalendarWidget(this);
    Calendar1->setObjectName(QStringLiteral("Calendar1"));
    Calendar1->setGridVisible(true);
    Combo1 = new QComboBox(this);
    Combo1->setObjectName(QStringLiteral("Combo1"));
    cmdClose = new QPushButton(QStringLiteral("&Ok"), this);
    cmdClose->setObjectName(QStringLiteral("cmdClose"));
    cmdClose->setDefault(true);

    auto *bottom = new QHBoxLayout;
    bottom->addWidget(Combo1);
    bottom->addStretch();
    bottom->addWidget(cmdClose);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(Calendar1);
    layout->addLayout(bottom);

    connect(Calendar1, &QCalendarWidget::clicked, this, &frmKalendar::takeDate);
    connect(cmdClose, &QPushButton::clicked, this, [this] { takeDate(Calendar1->selectedDate()); });
    connect(Combo1, &QComboBox::activated, this, [this](int index) {
        const int year = Combo1->itemText(index).toInt();
        const QDate current = Calendar1->selectedDate();
        // 29 February in a year without it becomes 28 February.
        QDate moved(year, current.month(), 1);
        moved = moved.addDays(qMin(current.day(), moved.daysInMonth()) - 1);
        Calendar1->setSelectedDate(moved);
        Calendar1->setCurrentPage(year, current.month());
    });
}

int frmKalendar::exec()
{
    const QDate start = KalendarStartDate(SelDate);
    Calendar1->setSelectedDate(start);
    Combo1->clear();
    for (int year = start.year() - YearsAround; year <= start.year() + YearsAround; ++year)
        Combo1->addItem(QString::number(year));
    Combo1->setCurrentText(QString::number(start.year()));
    const int result = QDialog::exec();
    if (result != Accepted)
        SelDate = Cancelled();
    return result;
}

void frmKalendar::takeDate(const QDate &date)
{
    SelDate = KalendarDateText(date);
    accept();
}

std::optional<QString> PickDate(QWidget *parent, const QString &initial)
{
    frmKalendar picker(parent);
    picker.SelDate = initial;
    if (picker.exec() != QDialog::Accepted)
        return std::nullopt;
    return picker.SelDate;
}
