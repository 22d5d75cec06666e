#pragma once
// Page setup for printing reports (header, footer and four margins in inches, kept in
// the per-user settings store) and the look-ups of the default mail host.

#include <QString>

// Section of the settings store that holds the six page values.
inline constexpr const char *PageSetupKey = "PageSetup";
// Mail host when nothing better is configured.
inline constexpr const char *DefaultMailHost = "localhost";
// A margin never saved, in inches.
inline constexpr const char *DefaultMargin = "0,31596";

class SetPageSetup {
public:
    enum PageValue { Footer, Header, MarginTop, MarginBottom, MarginLeft, MarginRight };

    // Reads the chosen value into `value` and returns it; an absent margin gives the default.
    QString SetPagesSetup(PageValue name, QString &value) const;
    // Configured SMTP server.
    QString GetSMTPSetup() const;
    void SavePagesSetup(const QString &header, const QString &footer, const QString &top, const QString &bottom,
                        const QString &left, const QString &right) const;
    // The user's DNS domain from the environment.
    QString GetSMTPSetup2() const;
    // The computer's DNS domain (asked twice in the past, from two places).
    QString GetSMTPSetup3() const;
    QString GetSMTPSetup4() const;
    void WriteRegistry(const QString &key, const QString &name, const QString &value) const;
};

// The six values ready for printing, margins as numbers of inches.
struct PageSetupValues {
    QString header;
    QString footer;
    double top = 0;
    double bottom = 0;
    double left = 0;
    double right = 0;
};
PageSetupValues ReadPageSetup();

// --- the editor's conversions -------------------------------------------------------

// A stored margin in inches ("0,31596" or "0.31596"); unreadable text gives the default.
double MarginInches(const QString &stored);
// Inches as the millimetre text the editor shows: decimal comma, at most two decimals.
QString MillimetresText(double inches);
// Largest margin the editor accepts, in millimetres.
inline constexpr double MaxMarginMm = 100.0;
// The editor's millimetre text as the stored inch text (five decimals, decimal comma).
// False when the text is not a number from 0 to MaxMarginMm.
bool InchesText(const QString &millimetreText, QString *inchText);
// A margin field while typing: digits only, "." becomes ",".
QString MarginTyped(const QString &text);
// A margin field when left: empty gives "0".
QString MarginFinished(const QString &text);
