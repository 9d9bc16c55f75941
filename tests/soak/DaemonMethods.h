#pragma once

#include <QByteArray>

#include <vector>

namespace soak {

const QByteArray daemonName = QByteArrayLiteral("com.tactora.NetworkManager");

/// A method of the daemon's interface and the types of its arguments.
struct DaemonMethod
{
    QByteArray name;
    QByteArray signature;
};

/// All 34 of them.
const std::vector<DaemonMethod> &daemonMethods();

} // namespace soak
