#include "MirrorWorld.h"

#include "ConnmanService.h"
#include "OddValues.h"
#include "Text.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QLoggingCategory>
#include <QMetaMethod>
#include <QTest>

using namespace test_support;

namespace {

const QLatin1String ServiceInterface("net.connman.Service");
const QLatin1String ManagerInterface("net.connman.Manager");
const QLatin1String ManagerPath("/");
const QLatin1String ServicePrefix("/net/connman/service/");

QString newConnectionName()
{
    static int count = 0;
    return "mirror-%1"_s.arg(++count);
}

} // namespace

MirrorWorld::MirrorWorld()
    : m_simulator(m_bus.address())
    , m_connectionName(newConnectionName())
    , m_connection(QDBusConnection::connectToBus(m_bus.address(), m_connectionName))
{
    registerConnmanTypes();
    registerOddTypes();
    qRegisterMetaType<ConnmanService::State>("ConnmanService::State");
    QLoggingCategory::setFilterRules("Connman*=true\nUtils=true"_s);
    removeAllServices();
    m_connection.connect("net.connman"_s, ManagerPath, ManagerInterface, "ServicesChanged"_s, "a(oa{sv})ao"_s,
                         this, SLOT(announced(ConnmanServiceInfoList, QList<QDBusObjectPath>)));
    m_simulator.clearCalls();
}

MirrorWorld::~MirrorWorld()
{
    QLoggingCategory::setFilterRules({});
    QDBusConnection::disconnectFromBus(m_connectionName);
}

QDBusConnection MirrorWorld::noConnection()
{
    return QDBusConnection("no such connection"_s);
}

void MirrorWorld::removeAllServices()
{
    const QStringList identifiers = m_simulator.services();
    for (const QString &identifier : identifiers) {
        m_simulator.removeService(identifier);
    }
}

QDBusObjectPath MirrorWorld::addService(const QString &identifier, const QVariantMap &properties)
{
    QDBusObjectPath path = m_simulator.addService(identifier, properties);
    const bool seen = QTest::qWaitFor([&] { return m_announced.contains(path.path()); }, 10000);
    if (!seen) {
        qCritical() << "ConnMan has not announced" << path.path();
    }
    m_simulator.clearCalls();
    return path;
}

Fault MirrorWorld::answerGetProperties(const QVariantMap &properties)
{
    return m_simulator.injectFault(ServiceInterface, "GetProperties"_s, FaultKind::reply({properties}), {},
                                   0);
}

Fault MirrorWorld::failGetProperties(const QString &errorName, const QString &message)
{
    return m_simulator.injectFault(ServiceInterface, "GetProperties"_s, FaultKind::error(errorName, message),
                                   {}, 0);
}

void MirrorWorld::emitPropertyChanged(const QString &path, const QString &name, const QVariant &value)
{
    m_simulator.emitSignal(path, ServiceInterface, "PropertyChanged"_s,
                           {name, QVariant::fromValue(QDBusVariant(value))});
}

void MirrorWorld::emitServicesChanged(const QStringList &changed, const QStringList &removed)
{
    ConnmanServiceInfoList records;
    for (const QString &path : changed) {
        records.append({QDBusObjectPath(path), {}});
    }
    QList<QDBusObjectPath> gone;
    for (const QString &path : removed) {
        gone.append(QDBusObjectPath(path));
    }
    m_simulator.emitSignal(ManagerPath, ManagerInterface, "ServicesChanged"_s,
                           {QVariant::fromValue(records), QVariant::fromValue(gone)});
}

void MirrorWorld::receive()
{
    // The bus keeps the order of one sender's messages: what was sent before this answer is here with it.
    const QDBusMessage ping =
        QDBusMessage::createMethodCall("net.connman"_s, ManagerPath, "org.freedesktop.DBus.Peer"_s, "Ping"_s);
    const QDBusMessage answer = m_connection.call(ping);
    if (answer.type() != QDBusMessage::ReplyMessage) {
        qCritical() << "ConnMan does not answer:" << answer.errorMessage();
    }
}

void MirrorWorld::deliver()
{
    receive();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::MetaCall);
}

QStringList MirrorWorld::complaints() const
{
    QStringList lines;
    const QVector<LogMessage> messages = m_log.messages();
    for (const LogMessage &message : messages) {
        if (message.type == QtCriticalMsg) {
            lines << critical(message.category, message.text);
        } else if (message.type == QtWarningMsg) {
            lines << warning(message.category, message.text);
        }
    }
    return lines;
}

QStringList MirrorWorld::debugLines(const QString &category) const
{
    return m_log.lines(category, QtDebugMsg);
}

QString MirrorWorld::pathOf(const QString &identifier)
{
    return ServicePrefix + identifier;
}

QString MirrorWorld::getPropertiesCall(const QString &path)
{
    return path + " net.connman.Service.GetProperties()"_s;
}

void MirrorWorld::announced(const ConnmanServiceInfoList &changed, const QList<QDBusObjectPath> & /*removed*/)
{
    for (const ConnmanServiceInfo &info : changed) {
        m_announced.insert(info.path.path());
    }
}

QString critical(const QString &category, const QString &text)
{
    return "critical %1: %2"_s.arg(category, text);
}

QString warning(const QString &category, const QString &text)
{
    return "warning %1: %2"_s.arg(category, text);
}

QStringList ownMethods(const QMetaObject &metaObject)
{
    QStringList signatures;
    for (int index = metaObject.methodOffset(); index < metaObject.methodCount(); ++index) {
        signatures << QString::fromLatin1(metaObject.method(index).methodSignature());
    }
    return signatures;
}
