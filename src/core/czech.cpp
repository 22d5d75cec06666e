#include "core/czech.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

bool UseCzech()
{
    QLocale::setDefault(QLocale(QLocale::Czech, QLocale::CzechRepublic));
    // A desktop's own file dialog would speak the system's language, not ours.
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    auto *translator = new QTranslator(QCoreApplication::instance());
    if (!translator->load(QStringLiteral("qtbase_cs"), QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        delete translator;
        return false;
    }
    return QCoreApplication::installTranslator(translator);
}
