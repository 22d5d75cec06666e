#pragma once
// Zip archives of grant documents: one file at the archive's root, deflated.
// Unpacking refuses entries that would land outside the target folder and archives
// that claim or expand to more than UnzipLimit bytes, before anything is written.

#include <QString>
#include <QStringList>

#include <optional>

// The most an archive may unpack to, all entries together.
inline constexpr qint64 UnzipLimit = qint64(1) << 30;

// Appends ".zip" unless the name already ends in it (any letter case).
QString ZipName(const QString &zip);

// Packs the file `source` into a new archive `zip` (replaced when it exists), under its
// own name. False with a Czech message in `error` when it cannot.
bool ZipFile(const QString &source, const QString &zip, QString *error);

// Unpacks every file of the archive into `folder`. Returns the written paths, or nothing
// with a Czech message; on a refusal nothing stays written.
std::optional<QStringList> UnzipFile(const QString &zip, const QString &folder, QString *error);
