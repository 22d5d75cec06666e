#include "registers/frmListDir.h"

#include "core/config.h"
#include "core/session.h"

#include <QComboBox>
#include <QDir>
#include <QFileSystemModel>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeView>
#include <QVBoxLayout>

frmListDir::frmListDir(QWidget *parent) : QDialog(parent)
{
    setWindowTitle(QStringLiteral("Vybrat adresář..."));
    Drive1 = new QComboBox(this);
    Drive1->setObjectName(QStringLiteral("Drive1"));
    for (const QFileInfo &drive : QDir::drives())
        Drive1->addItem(QDir::toNativeSeparators(drive.absoluteFilePath()));
    m_model = new QFileSystemModel(this);
    m_model->setFilter(QDir::AllDirs | QDir::NoDotAndDotDot);
    m_model->setRootPath(QString());
    Dir1 = new QTreeView(this);
    Dir1->setObjectName(QStringLiteral("Dir1"));
    Dir1->setModel(m_model);
    for (int c = 1; c < m_model->columnCount(); ++c)
        Dir1->hideColumn(c);
    Dir1->header()->hide();
    TextDirList = new QLineEdit(this);
    TextDirList->setObjectName(QStringLiteral("TextDirList"));
    cmdOk = new QPushButton(QStringLiteral("Vybrat"), this);
    cmdOk->setObjectName(QStringLiteral("cmdOk"));
    cmdCancel = new QPushButton(QStringLiteral("Zavřít"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOk);
    buttons->addWidget(cmdCancel);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(Drive1);
    layout->addWidget(Dir1, 1);
    layout->addWidget(TextDirList);
    layout->addLayout(buttons);
    resize(460, 420);

    connect(Drive1, &QComboBox::textActivated, this, &frmListDir::showFolder);
    connect(Dir1, &QTreeView::clicked, this,
            [this](const QModelIndex &index) { TextDirList->setText(QDir::toNativeSeparators(m_model->filePath(index))); });
    connect(cmdOk, &QPushButton::clicked, this, &frmListDir::cmdOk_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
}

void frmListDir::Load(const QString &start)
{
    QString folder = !start.isEmpty() ? start : !DirList.isEmpty() ? DirList : QDir::homePath();
    if (!QFileInfo(folder).isDir())
        folder = QDir::homePath();
    showFolder(folder);
}

void frmListDir::showFolder(const QString &path)
{
    const QModelIndex index = m_model->index(path);
    Dir1->setCurrentIndex(index);
    Dir1->scrollTo(index);
    Dir1->expand(index);
    TextDirList->setText(QDir::toNativeSeparators(QDir::cleanPath(path)));
}

void frmListDir::cmdOk_Click()
{
    const QString folder = TextDirList->text().trimmed();
    if (folder.isEmpty() || !QFileInfo(folder).isDir())
        return;
    DirList = folder;
    if (ImportLoad)
        DataPathImp = folder;
    else
        SaveDirSettings(folder, FileList);
    accept();
}

void SaveDirSettings(const QString &dirLokal, const QString &databaze)
{
    const QString section = QStringLiteral("NASTAVENI");
    SaveSetting(section, QStringLiteral("Dir k EXE"), Session().DirExe);
    SaveSetting(section, QStringLiteral("Dir Lokal"), dirLokal);
    SaveSetting(section, QStringLiteral("Databaze"), databaze);
}
