#include "core/frmAbout.h"

#include "core/msg.h"
#include "core/session.h"

#include <QDate>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
QString year() { return QString::number(QDate::currentDate().year()); }
} // namespace

QString VersionLabelText() { return QStringLiteral("verze ") + ProgramVersion().trimmed(); }

QString CopyrightLabelText() { return QStringLiteral("© Copyright ") + year() + QStringLiteral(". All rights reserved"); }

QString StatusVersionText()
{
    return QStringLiteral("Fondarix verze ") + ProgramVersion() + QStringLiteral("  © Copyright ") + year();
}

frmAbout::frmAbout(QWidget *parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("frmAbout"));
    setWindowTitle(QStringLiteral("O autoře"));

    auto *name = new QLabel(AppTitle(), this);
    name->setObjectName(QStringLiteral("lblName"));
    QFont big = name->font();
    big.setPointSizeF(big.pointSizeF() * 1.6);
    big.setBold(true);
    name->setFont(big);
    auto *version = new QLabel(VersionLabelText(), this);
    version->setObjectName(QStringLiteral("lblVersion"));
    // The splash's copyright line is the system's own English text; this box is ours, in Czech.
    auto *copyright =
        new QLabel(QStringLiteral("© Copyright ") + year() + QStringLiteral(". Všechna práva vyhrazena"), this);
    copyright->setObjectName(QStringLiteral("lblCopyright"));
    auto *cmdOk = new QPushButton(QStringLiteral("&Ok"), this);
    cmdOk->setObjectName(QStringLiteral("cmdOk"));
    cmdOk->setDefault(true);
    connect(cmdOk, &QPushButton::clicked, this, &QDialog::accept);

    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOk);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(name);
    layout->addWidget(version);
    layout->addWidget(copyright);
    layout->addSpacing(12);
    layout->addLayout(buttons);
}
