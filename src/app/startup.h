#pragma once
// The way from process start to the main window.

#include <QLockFile>

#include <memory>

// The lock that marks this program as running on the workstation, held for the
// life of the process. Another instance already running: the message, and nullptr.
std::unique_ptr<QLockFile> AcquireInstanceLock();

// The entry routine of the desktop client; returns the process's exit code.
int RunFondarix(int argc, char **argv);
