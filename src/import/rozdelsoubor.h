#pragma once
// An import never reads the user's file directly: the file is first copied into numbered
// chunk files "IF000<n>.txt" of 499 lines each in the session's scratch folder (TempDir),
// cleaned on the way, and the importers read the chunks in series until one is missing.

#include <QString>

#include <functional>

// Path of chunk n (from 1, without padding: "IF0001.txt", "IF00012.txt").
QString ChunkFileName(int n);

// Deletes the old series, then splits the file into chunks: double quotes, NUL bytes and bytes of
// code 255 removed, commas turned into points, lines cut at 100,000 characters; CR LF,
// LF and CR alone all end a line.
// Returns the number of lines read; 0 when the file does not exist.
int RozdelSoubor(const QString &fileName);

// Reads the chunk series of a split file of `lines` lines, record by record: a chunk ends
// at its end or at its first empty record. `record` gets each record; `tick` the share of
// the file done (0..100) and the chunk's time of last change, every `every` records.
// Either returning false stops the walk, which then gives false.
bool WalkChunks(int lines, int every, const std::function<bool(const QString &record)> &record,
                const std::function<bool(double percent, const QString &chunkTime)> &tick);
