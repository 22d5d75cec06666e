#include "app/screens.h"

#include "admin/frmSYS.h"
#include "app/commands.h"
#include "fondarix_paths.h"
#include "core/frmAbout.h"
#include "core/frmKalendar.h"
#include "core/routing.h"
#include "core/session.h"
#include "core/text.h"
#include "grants/frmGrantPlan.h"
#include "grants/frmGraph.h"
#include "grants/frmGranty.h"
#include "grants/frmStavyUctu.h"
#include "grants/frmStredisko.h"
#include "import/DefinFieldsExport.h"
#include "import/frmImportBegin.h"
#include "import/frmImportPohyb.h"
#include "import/frmImportRozpocet.h"
#include "import/frmProgressBuildTree.h"
#include "import/frmRevize.h"
#include "admin/frmSysPageSetup.h"
#include "orders/frmArchObj.h"
#include "orders/frmObjSablona.h"
#include "orders/frmTvorObj.h"
#include "protocols/frmDocDesignForm.h"
#include "protocols/frmDocPacient.h"
#include "registers/frmFirmy.h"
#include "stock/frmTyp.h"
#include "stock/frmVydeji.h"

#include <QAction>
#include <QCoreApplication>
#include <QFileInfo>

QString HelpFilePath()
{
    // Beside the executable when installed (or where the settings put it), else in the sources.
    const QStringList candidates{
        Session().DirExe + QStringLiteral("/help/index.html"),
        QCoreApplication::applicationDirPath() + QStringLiteral("/../share/fondarix/help/index.html"),
        QStringLiteral(FONDARIX_SOURCE_DIR "/share/help/index.html"),
    };
    for (const QString &path : candidates)
        if (QFileInfo::exists(path))
            return QFileInfo(path).canonicalFilePath();
    return candidates.last();
}

void RegisterScreens()
{
    RegisterCommand(QLatin1String(CommandAbout), [](QWidget *main) {
        frmAbout about(main);
        about.exec();
    });
    RegisterCommand(QStringLiteral("mnuKalendar"), [](QWidget *main) {
        frmKalendar kalendar(main);
        kalendar.exec();
    });
    RegisterCommand(QStringLiteral("mnuHelp"), [](QWidget *) {
        QString path = HelpFilePath();
        ViewHTML(path);
    });

    RegisterCommand(QStringLiteral("mnuDefineFields"), ShowDefinFieldsExport);
    RegisterCommand(QStringLiteral("mnuStredisko"), ShowStredisko);
    RegisterCommand(QStringLiteral("mnuBuildSkup"), [](QWidget *main) { ShowStavyUctu(main, false); });
    RegisterCommand(QStringLiteral("mnuSkupiny"), [](QWidget *main) { ShowStavyUctu(main, true); });
    RegisterCommand(QStringLiteral("mnuRozpocet"), [](QWidget *main) { ShowGrantPlan(main); });
    // Drawdown: the grid is locked while the heading "Správa GRANTu" is off for the user.
    RegisterCommand(QStringLiteral("mnuGrantTree"), [](QWidget *main) {
        const QAction *granty = main ? main->findChild<QAction *>(QStringLiteral("mnuGranty")) : nullptr;
        ShowGranty(main, false, !granty || granty->isEnabled());
    });
    RegisterCommand(QStringLiteral("mnuActualSkup"), [](QWidget *main) { ShowGranty(main, true); });
    RegisterCommand(QStringLiteral("mnuGraf"), ShowGraph);

    // Orders.
    RegisterCommand(QStringLiteral("mnuObjednVyd"), ShowArchObj);
    RegisterCommand(QStringLiteral("mnuObjednSklad"), [](QWidget *main) { ShowTvorObj(main, 1); });
    RegisterCommand(QStringLiteral("mnuObjednText"), [](QWidget *main) { ShowTvorObj(main, 2); });
    RegisterCommand(QStringLiteral("mnuObjednSluzby"), [](QWidget *main) { ShowTvorObj(main, 5); });
    RegisterCommand(QStringLiteral("mnuHlavFormCZ"), [](QWidget *main) { ShowObjSablona(main, 0); });
    RegisterCommand(QStringLiteral("mnuHlavFormAN"), [](QWidget *main) { ShowObjSablona(main, 1); });
    // The order screens' "Page setup" button.
    RegisterCommand(QStringLiteral("cmdPageSetup"), [](QWidget *from) {
        frmSysPageSetup setup(from);
        setup.exec();
    });

    // Protocols: the patient register and the Studio.
    RegisterCommand(QStringLiteral("mnuArchivProt"), ShowDocPacient);
    RegisterCommand(QStringLiteral("mnu131"), ShowStudio);

    // Stock and firms.
    RegisterCommand(QStringLiteral("mnuPrijVydItem"), ShowSklady);
    RegisterCommand(QStringLiteral("mnuFirmyItem"), ShowFirmy);
    RegisterCommand(QStringLiteral("mnuVydeji"), ShowVydeji);

    // The accounting import.
    RegisterCommand(QStringLiteral("mnuImport"), ShowImportBegin);
    RegisterCommand(QStringLiteral("mnuRevize"), ShowRevize);
    RegisterCommand(QStringLiteral("mnuImportRozpocet"), ShowImportRozpocet);
    SetAccountPicker(PickAccounts);
    RegisterCommand(QStringLiteral("mnuImportMDDal"), [](QWidget *main) { ShowImportPohyb(main, QStringLiteral("MD")); });
    RegisterCommand(QStringLiteral("mnuImportDal"), [](QWidget *main) { ShowImportPohyb(main, QStringLiteral("Dal")); });
    SetMovementListHook(ShowMovementList);
    RegisterCommand(QStringLiteral("mnuBuildTree"), [](QWidget *main) { ShowBuildTree(main, 1, 1, false); });
    RegisterCommand(QStringLiteral("mnuAktuaImport"), [](QWidget *main) { ShowBuildTree(main, 2, 2, false); });

    // Administration: the settings, also from SPRAVA PR and mnu112.
    RegisterCommand(QStringLiteral("mnuSysItem"), ShowSYS);
}
