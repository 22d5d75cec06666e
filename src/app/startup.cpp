#include "app/startup.h"

#include "app/frmMDIMain.h"
#include "app/frmZast.h"
#include "app/screens.h"
#include "admin/print.h"
#include "core/config.h"
#include "core/czech.h"
#include "core/htmlviewer.h"
#include "core/msg.h"
#include "core/session.h"

#include <QApplication>
#include <QCursor>

std::unique_ptr<QLockFile> AcquireInstanceLock()
{
    auto lock = std::make_unique<QLockFile>(Session().TempDir + QStringLiteral("/fondarix.lock"));
    lock->setStaleLockTime(0);   // a lock left by a crashed run is recognised by its dead process
    if (lock->tryLock(0))
        return lock;
    QApplication::restoreOverrideCursor();
    QString title;
    MsgBoxPos(QStringLiteral("Mate tento program už jedno zpuštěn !"), MsgInformation, title);
    return nullptr;
}

int RunFondarix(int argc, char **argv)
{
    QApplication app(argc, argv);
    UseCzech();
    QApplication::setApplicationName(QStringLiteral("Fondarix"));
    QApplication::setOrganizationName(QStringLiteral("Fondarix"));
    QApplication::setOverrideCursor(Qt::WaitCursor);

    // The lock lives in the scratch folder, so the folders are known first.
    InitSpecialDirs();
    const std::unique_ptr<QLockFile> lock = AcquireInstanceLock();
    if (!lock)
        return 0;
    Session().UserTyp = -1;
    RegisterScreens();
    // The viewer prints with the user's page setup: margins, header and footer.
    HtmlViewer::setPrintHandler(PrintWithPageSetup);

    {
        frmZast splash;
        splash.exec();
    }

    frmMDIMain main;
    main.show();
    // Asked for explicitly: a desktop without a window manager activates nothing by itself,
    // and the activation is what opens the login.
    main.activateWindow();
    QApplication::restoreOverrideCursor();
    return app.exec();
}
