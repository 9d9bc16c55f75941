#include "BusUser.h"

#include "Command.h"
#include "Text.h"

#include <grp.h>
#include <pwd.h>
#include <QDBusPendingCallWatcher>
#include <QEventLoop>
#include <unistd.h>

BusUser::BusUser(const QString &name, const QString &group)
    : m_name(name)
    , m_connection(QString())
{
    if (getpwnam(qPrintable(name)) == nullptr) {
        QStringList arguments{name};
        if (!group.isEmpty()) {
            arguments = QStringList{"--groups"_s, group, name};
        }
        run("useradd"_s, arguments);
    }
    m_connection = connectAs(name);
}

BusUser::~BusUser()
{
    QDBusConnection::disconnectFromBus(m_name);
}

/// The bus takes a connection for the user that the process is while it connects.
QDBusConnection BusUser::connectAs(const QString &name)
{
    const passwd *user = getpwnam(qPrintable(name));
    if (user == nullptr || initgroups(user->pw_name, user->pw_gid) != 0 || setegid(user->pw_gid) != 0 ||
        seteuid(user->pw_uid) != 0) {
        return QDBusConnection(QString());
    }
    QDBusConnection connection = QDBusConnection::connectToBus(QDBusConnection::SystemBus, name);
    if (seteuid(0) != 0 || setegid(0) != 0 || setgroups(0, nullptr) != 0) {
        qFatal("the process cannot be root again");
    }
    return connection;
}

QString BusUser::errorOf(const QDBusMessage &call)
{
    QEventLoop loop;
    const QDBusPendingCallWatcher pending(m_connection.asyncCall(call));
    if (!pending.isFinished()) {
        QObject::connect(&pending, &QDBusPendingCallWatcher::finished, &loop, &QEventLoop::quit);
        loop.exec();
    }
    return pending.reply().errorName();
}
