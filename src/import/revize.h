#pragma once
// The revision of a movement export: which accounts of the period's bookings are not in
// the account list (memImport) and not excused by UctyNotControl. Nothing is stored.

#include <QString>
#include <QStringList>

#include <functional>

class DbConnection;

struct RevizeResult {
    bool ok = false;
    QStringList lines;      // one per account not found, MD and DAL sides
    double totalMD = 0;
    double totalDal = 0;
    QString failure;        // why it did not run, in Czech
};

// Reads the file through the chunks, records outside the range (when given) skipped.
// `progress` gets the share done; returning false stops the revision.
RevizeResult KontrolaSouboru(DbConnection &conn, const QString &fileName, const QString &dateFrom,
                             const QString &dateTo, const std::function<bool(int percent)> &progress = {});

// Is the account excused by the list "501,6*" (items without "*" compared as prefixes)?
bool UcetNotControl(const QString &account, const QString &notControl);

inline constexpr const char *TitleRevize = "Seznam neevidováných nebo neexistujících účtů: ";
inline constexpr const char *TextRevizeQuestion =
    "Přejéte sí provest kontrolu vstupneho souboru na přítomnost chybneho nebo neexistujícího účtu?";
inline constexpr const char *TitleChybyImportu = "Seznam chyb v import souboru :";
