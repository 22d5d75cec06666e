#include "app/frmZast.h"

#include "core/config.h"
#include "core/frmAbout.h"
#include "core/msg.h"

#include <QFrame>
#include <QLabel>
#include <QTimer>
#include <QVBoxLayout>

namespace {
// The splash closes after as many ticks as its interval in milliseconds: 35 x 35 ms.
constexpr int TimerInterval = 35;
} // namespace

frmZast::frmZast(QWidget *parent)
    : QDialog(parent, Qt::SplashScreen | Qt::FramelessWindowHint)
{
    setObjectName(QStringLiteral("frmZast"));
    auto *name = new QLabel(AppTitle(), this);
    QFont big = name->font();
    big.setPointSizeF(big.pointSizeF() * 2.2);
    big.setBold(true);
    name->setFont(big);
    name->setAlignment(Qt::AlignCenter);
    auto *version = new QLabel(VersionLabelText(), this);
    version->setObjectName(QStringLiteral("lblVersion"));
    version->setAlignment(Qt::AlignCenter);
    auto *copyright = new QLabel(CopyrightLabelText(), this);
    copyright->setObjectName(QStringLiteral("lblCopyright"));
    copyright->setAlignment(Qt::AlignCenter);
    // Without a window frame the splash needs an edge of its own against the desktop.
    auto *edge = new QFrame(this);
    edge->setFrameStyle(QFrame::Panel | QFrame::Raised);
    edge->setLineWidth(2);
    auto *outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->addWidget(edge);
    auto *layout = new QVBoxLayout(edge);
    layout->setContentsMargins(40, 30, 40, 30);
    layout->addWidget(name);
    layout->addWidget(version);
    layout->addWidget(copyright);

    InitSpecialDirs();

    Timer1 = new QTimer(this);
    Timer1->setObjectName(QStringLiteral("Timer1"));
    Timer1->setInterval(TimerInterval);
    connect(Timer1, &QTimer::timeout, this, [this] {
        if (++ticks == Timer1->interval())
            accept();
    });
    Timer1->start();
}
