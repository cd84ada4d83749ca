#pragma once

#include <QtCore/QProcess>

#include <sys/prctl.h>

#include <csignal>

namespace selvane::test {

/// Makes sure that `process`, once started, doesn't outlive a test that is killed.
inline void endWithTest(QProcess& process) {
    process.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
}

} // namespace selvane::test
