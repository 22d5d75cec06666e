#pragma once
// Local settings of a workstation: the configuration file "Fondarix MySQL.ini"
// (read and written with private-profile rules) and the per-user settings store.
// Every getter reads afresh at each call; nothing is cached.

#include <QString>
#include <QStringList>

// --- the configuration file ---------------------------------------------------

// Folder of the configuration file and of scratch work, from the environment
// ($FONDARIX_WINDIR, $FONDARIX_TEMP) or per-user defaults; fills the session record.
void InitSpecialDirs();
// Full path of the configuration file (the session's IniPath, else the default).
QString IniFilePath();

// Cuts a read value at its first control character, after trimming.
QString ClipIniValue(const QString &value);

// A value of the file as the platform reads it into a buffer of `width` characters:
// sections and keys without regard to case, at most width - 1 characters taken.
// The result is not yet clipped.
QString ReadProfileString(const QString &section, const QString &key, const QString &defaultValue,
                          int width, const QString &file = QString());
// Writes or replaces a key; the file and the section are created when missing.
bool WriteProfileString(const QString &section, const QString &key, const QString &value,
                        const QString &file = QString());

// --- the settings store ---------------------------------------------------------

QString GetSetting(const QString &section, const QString &key);
void SaveSetting(const QString &section, const QString &key, const QString &value);
void DeleteSetting(const QString &section, const QString &key);

// --- getters ----------------------------------------------------------------------

QString GetServerIP();
QString GetServerPort();
QString GetDirExe();
QString GetLastDir();
QString GetSelectTypBottom();
QString GetTypFormulara();
QString GetZadankySave();
QString GetDNS();
QString GetDatumOd();
QString GetDatumDo();
QString GetFiltrUctyRozp();
QString GetVyrizuje();
QString GetTelefon();
QString GetTelefonEng();
QString GetEmail();
QString GetUctyNotControl();
QString GetLinka();
QString GetSpravObj();
QString GetPrikObj();
double GetStudioFrmTop();
double GetStudioFrmLeft();

// The default database server of the site, when the file names none.
inline constexpr const char *DefaultServerIP = "127.0.0.1";

// Column positions of the accounting exports, file only.
inline constexpr const char *SectionPoziceTab = "DEFINE POZICE TAB";    // movements
inline constexpr const char *SectionPoziceTab2 = "DEFINE POZICE TAB2";  // account list
const QStringList &PoziceTabKeys();    // "Datum" ... "N_Nazev DAL"
const QStringList &PoziceTab2Keys();   // "Ucet" ... "N_Mena"
QString GetPoziceTab(const QString &key);
QString GetPoziceTab2(const QString &key);
bool SetPoziceTab(const QString &key, const QString &value);
bool SetPoziceTab2(const QString &key, const QString &value);

// --- setters ------------------------------------------------------------------------

// The keys the settings screen saves into the store; "UctyNotControl" loses all blanks.
void SaveFormSetting(const QString &section, const QString &key, const QString &value);
// "Datum od"/"Datum do": into the store (movement import) or into the file (revision),
// only when the text is a date; otherwise "Špatný formát datumu." and false.
enum class DateTarget { Store, File };
bool SaveDatumOd(const QString &text, DateTarget target);
bool SaveDatumDo(const QString &text, DateTarget target);
bool IsDateText(const QString &text);
void SetFiltrUctyRozp(const QString &value);
void SetStudioFrmTop(float value);
void SetStudioFrmLeft(float value);

// --- per-user print values in sys_users_print -------------------------------------
// With a value (not blank) they store it for the logged-in user; with empty text they
// read it, inserting the user's row from the file's value when there is none.
QString GetSetPrintSize(QString &value);
QString GetSetPrintRows(QString &value);
QString GetSetPrintTop(QString &value);
QString GetSetPrintMargin(QString &value);
QString GetSetToolBar(QString &value);
