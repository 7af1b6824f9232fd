#pragma once

#include <QStringList>

namespace lab {

/// Orders the push socket of running services by hand: arguments are one order; without any, each line of
/// standard input is one. CONTROL of the environment, or --control, is the services' control address.
int runPush(const QStringList &arguments);

} // namespace lab
