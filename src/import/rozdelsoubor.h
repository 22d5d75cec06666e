#pragma once
// An import never reads the user's file directly: the file is first copied into numbered
// chunk files "IF000<n>.txt" of 499 lines each in the session's scratch folder (TempDir),
// cleaned on the way, and the importers read the chunks in series until one is missing.

#include <QString>

// Path of chunk n (from 1, without padding: "IF0001.txt", "IF00012.txt").
QString ChunkFileName(int n);

// Deletes the old series, then splits the file into chunks: double quotes and bytes of
// code 255 removed, commas turned into points, lines cut at 100,000 characters.
// Returns the number of lines read; 0 when the file does not exist.
int RozdelSoubor(const QString &fileName);
