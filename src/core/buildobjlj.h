#pragma once
// The writer behind every generated HTML document: grant reports and order forms are
// written line by line into one file in Windows-1250, each line ended by CR LF. The
// generators of the grant reports and of the order forms take a BuildObjLJ and write
// through it; TypeViewForm carries the layout a caller asked for.

#include <QFile>
#include <QString>

class BuildObjLJ {
public:
    short TypeViewForm = 0;

    // Opens the file for output, replacing what was there. On failure Error() says why
    // in Czech and nothing is written.
    bool Open(const QString &path);
    // One line; characters outside Windows-1250 become '?'.
    void Line(const QString &text);
    // Closes the file; false when any write failed (a full disk, a vanished folder).
    bool Close();

    bool IsOpen() const { return m_file.isOpen(); }
    QString Path() const { return m_file.fileName(); }
    QString Error() const { return m_error; }

private:
    QFile m_file;
    QString m_error;
    bool m_writeFailed = false;
};
