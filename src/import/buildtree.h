#pragma once
// The account tree of every grant, built from the account list (memImport) and the
// movements (ImportUctyCastky): accounts found only in the movements are added with "* ",
// each account gets its movement total, the rows go to the level tables by the length of
// their account, and each grant's Castka3 gets its first value.

#include <QString>

#include <functional>

class DbConnection;

// Which step runs and how far it is; returning false cancels (nothing of the step stays).
struct TreeProgress {
    QString step;        // shown in Label3
    int accounts = 0;    // 0..100, ProgressBar1
    int movements = 0;   // 0..100, ProgressBar2
};
using TreeProgressFn = std::function<bool(const TreeProgress &)>;

struct TreeResult {
    bool ok = false;
    bool cancelled = false;
    bool nothing = false;   // the account list or the movements are empty: nothing to build
    int added = 0;        // accounts added from the movements
    int summed = 0;       // accounts whose total was written
    int levels[4] = {};   // rows of GrantTabl_main, Grant_devize_1, _2, _3
    QString failure;      // why it stopped, in Czech (empty on success)
};

// TypAkce 1 builds the tree, 2 adds missing accounts and sums before it. An empty account
// list or movement table stops the build with the message that says which file to import.
TreeResult BuildTree(DbConnection &conn, bool sum, const TreeProgressFn &progress = {});

extern const char *const TextTreeDone;
