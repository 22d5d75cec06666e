#include "documents/zip.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <zip.h>

#include <memory>
#include <vector>

namespace {
QString libzipText(int code)
{
    zip_error_t e;
    zip_error_init_with_code(&e, code);
    const QString text = QString::fromUtf8(zip_error_strerror(&e));
    zip_error_fini(&e);
    return text;
}

QByteArray localPath(const QString &path) { return QFile::encodeName(QDir::toNativeSeparators(path)); }

struct ZipCloser {
    void operator()(zip_t *z) const { zip_discard(z); }
};
using ZipHandle = std::unique_ptr<zip_t, ZipCloser>;

struct EntryCloser {
    void operator()(zip_file_t *f) const { zip_fclose(f); }
};

// The path an entry unpacks to, inside `folder`; empty when the name would leave it.
// Both separators count: archives made on Windows use "\".
QString entryTarget(const QString &folder, const QString &name)
{
    QString rel = name;
    rel.replace(QLatin1Char('\\'), QLatin1Char('/'));
    if (rel.isEmpty() || rel.startsWith(QLatin1Char('/')) || rel.contains(QLatin1Char(':')))
        return QString();
    for (const QString &part : rel.split(QLatin1Char('/')))
        if (part == QLatin1String(".."))
            return QString();
    const QString root = QDir::cleanPath(folder);
    const QString target = QDir::cleanPath(root + QLatin1Char('/') + rel);
    return target.startsWith(root + QLatin1Char('/')) ? target : QString();
}

struct Entry {
    zip_uint64_t index;
    QString target;
    zip_uint64_t size;
};
} // namespace

QString ZipName(const QString &zip)
{
    return zip.toUpper().endsWith(QLatin1String(".ZIP")) ? zip : zip + QStringLiteral(".zip");
}

bool ZipFile(const QString &source, const QString &zip, QString *error)
{
    const QString path = ZipName(zip);
    const QFileInfo info(source);
    if (!info.isFile()) {
        *error = QStringLiteral("Soubor %1 nebyl nalezen.").arg(source);
        return false;
    }
    if (QFileInfo::exists(path) && !QFile::remove(path)) {
        *error = QStringLiteral("Starý archiv %1 nelze smazat.").arg(path);
        return false;
    }
    int code = 0;
    ZipHandle archive(zip_open(localPath(path).constData(), ZIP_CREATE | ZIP_TRUNCATE, &code));
    const auto fail = [&](const QString &why) {
        archive.reset();
        QFile::remove(path);
        *error = QStringLiteral("Soubor %1 nelze zabalit do archivu %2: %3").arg(source, path, why);
        return false;
    };
    if (!archive)
        return fail(libzipText(code));
    zip_source_t *data = zip_source_file(archive.get(), localPath(source).constData(), 0, 0);
    if (!data)
        return fail(QString::fromUtf8(zip_strerror(archive.get())));
    const zip_int64_t index = zip_file_add(archive.get(), info.fileName().toUtf8().constData(), data,
                                           ZIP_FL_ENC_UTF_8 | ZIP_FL_OVERWRITE);
    if (index < 0) {
        zip_source_free(data);
        return fail(QString::fromUtf8(zip_strerror(archive.get())));
    }
    // Level 1: a document is mostly compressed already; speed matters more than a few bytes.
    if (zip_set_file_compression(archive.get(), zip_uint64_t(index), ZIP_CM_DEFLATE, 1) != 0)
        return fail(QString::fromUtf8(zip_strerror(archive.get())));
    // zip_close writes the archive; on failure the handle stays ours to discard.
    if (zip_close(archive.get()) != 0)
        return fail(QString::fromUtf8(zip_strerror(archive.get())));
    archive.release();
    return true;
}

std::optional<QStringList> UnzipFile(const QString &zip, const QString &folder, QString *error)
{
    const QString path = ZipName(zip);
    const QFileInfo info(path);
    if (!info.isFile()) {
        *error = QStringLiteral("Archiv %1 nebyl nalezen.").arg(path);
        return std::nullopt;
    }
    if (info.size() == 0) {
        *error = QStringLiteral("Archiv %1 je prázdný (0 bajtů), žádný soubor v něm není.").arg(path);
        return std::nullopt;
    }
    int code = 0;
    ZipHandle archive(zip_open(localPath(path).constData(), ZIP_RDONLY | ZIP_CHECKCONS, &code));
    if (!archive) {
        *error = QStringLiteral("Soubor %1 není platný archiv zip: %2").arg(path, libzipText(code));
        return std::nullopt;
    }

    // Everything is checked before the first byte is written.
    std::vector<Entry> entries;
    zip_uint64_t total = 0;
    const zip_int64_t count = zip_get_num_entries(archive.get(), 0);
    for (zip_int64_t i = 0; i < count; ++i) {
        zip_stat_t st;
        if (zip_stat_index(archive.get(), zip_uint64_t(i), 0, &st) != 0 || !(st.valid & ZIP_STAT_NAME)
            || !(st.valid & ZIP_STAT_SIZE)) {
            *error = QStringLiteral("Archiv %1 je poškozený: %2").arg(path, QString::fromUtf8(zip_strerror(archive.get())));
            return std::nullopt;
        }
        const QString name = QString::fromUtf8(st.name);
        const QString target = entryTarget(folder, name);
        if (target.isEmpty()) {
            *error = QStringLiteral("Archiv %1 obsahuje položku „%2“ s cestou mimo cílovou složku; nic nebylo "
                                    "rozbaleno.").arg(path, name);
            return std::nullopt;
        }
        if (st.size > zip_uint64_t(UnzipLimit) || total + st.size > zip_uint64_t(UnzipLimit)) {
            *error = QStringLiteral("Archiv %1 by se rozbalil na více než %2 bajtů; nic nebylo rozbaleno.")
                         .arg(path).arg(UnzipLimit);
            return std::nullopt;
        }
        total += st.size;
        if (!name.endsWith(QLatin1Char('/')))   // folders hold no data of their own
            entries.push_back({zip_uint64_t(i), target, st.size});
    }
    if (entries.empty()) {
        *error = QStringLiteral("Archiv %1 neobsahuje žádný soubor.").arg(path);
        return std::nullopt;
    }

    QStringList written;
    const auto fail = [&](const QString &why) -> std::optional<QStringList> {
        for (const QString &w : written)
            QFile::remove(w);
        *error = why;
        return std::nullopt;
    };
    std::vector<char> buffer(1 << 20);
    for (const Entry &e : entries) {
        QDir().mkpath(QFileInfo(e.target).absolutePath());
        // An old file or link of that name goes first: the new file never writes through it.
        QFile::remove(e.target);
        std::unique_ptr<zip_file_t, EntryCloser> in(zip_fopen_index(archive.get(), e.index, 0));
        QSaveFile out(e.target);
        if (!in || !out.open(QIODevice::WriteOnly))
            return fail(QStringLiteral("Soubor %1 nelze z archivu %2 rozbalit: %3")
                            .arg(e.target, path, in ? out.errorString() : QString::fromUtf8(zip_strerror(archive.get()))));
        zip_uint64_t done = 0;
        for (;;) {
            const zip_int64_t n = zip_fread(in.get(), buffer.data(), buffer.size());
            if (n < 0)
                return fail(QStringLiteral("Archiv %1 je poškozený: %2")
                                .arg(path, QString::fromUtf8(zip_file_strerror(in.get()))));
            if (n == 0)
                break;
            done += zip_uint64_t(n);
            // An entry that expands beyond what it claims is a bomb, whatever its header says.
            if (done > e.size)
                return fail(QStringLiteral("Položka archivu %1 se rozbaluje na více bajtů, než uvádí; nic nebylo "
                                           "rozbaleno.").arg(path));
            if (out.write(buffer.data(), n) != n)
                return fail(QStringLiteral("Soubor %1 nelze zapsat: %2").arg(e.target, out.errorString()));
        }
        if (done != e.size || !out.commit())
            return fail(QStringLiteral("Soubor %1 nelze z archivu %2 rozbalit celý.").arg(e.target, path));
        written << e.target;
    }
    return written;
}
