// Routing engine messages to Python's standard output.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

namespace zrv {

// Both may be called from any thread, with or without the interpreter lock.
void WriteMessage(const char *text);
void FlushOutput();

// The message handler registered with the engine while the environment is
// started: writes messages of the environment, not those of problems.
int GlobalMessageCallback(void *object, void *data, void *thread, const char *msg, int len,
                          int msgtype);

// True when Python can still be entered from a native thread.
bool PythonAvailable();

}  // namespace zrv
