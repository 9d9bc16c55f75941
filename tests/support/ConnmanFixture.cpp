#include "ConnmanFixture.h"

#include "ConnmanNames.h"
#include "ConnmanService.h"
#include "Text.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QLoggingCategory>
#include <QTest>

namespace test_support {

ConnmanFixture::ConnmanFixture()
    : m_presence(ConnmanNames::Service, connection())
{
    registerConnmanTypes();
    qRegisterMetaType<ConnmanService::State>("ConnmanService::State");
    connection().connect(ConnmanNames::Service, ConnmanNames::ManagerObject, ConnmanNames::ManagerInterface,
                         ConnmanNames::ServicesChanged, ConnmanNames::ServicesChangedSignature, this,
                         SLOT(announced(ConnmanServiceInfoList, QList<QDBusObjectPath>)));
}

void ConnmanFixture::init()
{
    m_connman = std::make_unique<SimulatorClient>(m_bus.address());
    QVERIFY(connman().isReady());
    const QStringList identifiers = connman().services();
    for (const QString &identifier : identifiers) {
        connman().removeService(identifier);
    }
    // What the last test's ConnMan and this one have sent by now is nobody's business.
    deliver();
    m_announced.clear();
    connman().clearCalls();
    QLoggingCategory::setFilterRules("Connman*=true\nUtils=true"_s);
    m_log = std::make_unique<LogCapture>();
}

void ConnmanFixture::cleanup()
{
    m_connman.reset();
    m_log.reset();
    QLoggingCategory::setFilterRules({});
}

QDBusConnection ConnmanFixture::noConnection()
{
    return QDBusConnection("no such connection"_s);
}

QDBusObjectPath ConnmanFixture::addService(const QString &identifier, const QVariantMap &properties)
{
    QDBusObjectPath path = connman().addService(identifier, properties);
    const bool seen = QTest::qWaitFor([&] { return m_announced.contains(path.path()); }, 10000);
    if (!seen) {
        qCritical() << "ConnMan has not announced" << path.path();
    }
    connman().clearCalls();
    return path;
}

Fault ConnmanFixture::answerGetProperties(const QVariantMap &properties)
{
    return connman().injectFault(ConnmanNames::ServiceInterface, ConnmanNames::GetProperties,
                                 FaultKind::reply({properties}), {}, 0);
}

Fault ConnmanFixture::failGetProperties(const QString &errorName, const QString &message)
{
    return connman().injectFault(ConnmanNames::ServiceInterface, ConnmanNames::GetProperties,
                                 FaultKind::error(errorName, message), {}, 0);
}

void ConnmanFixture::emitPropertyChanged(const QString &path, const QString &name, const QVariant &value)
{
    connman().emitSignal(path, ConnmanNames::ServiceInterface, ConnmanNames::PropertyChanged,
                         {name, QVariant::fromValue(QDBusVariant(value))});
}

void ConnmanFixture::emitServicesChanged(const QStringList &changed, const QStringList &removed)
{
    ConnmanServiceInfoList records;
    for (const QString &path : changed) {
        records.append({QDBusObjectPath(path), {}});
    }
    QList<QDBusObjectPath> gone;
    for (const QString &path : removed) {
        gone.append(QDBusObjectPath(path));
    }
    connman().emitSignal(ConnmanNames::ManagerObject, ConnmanNames::ManagerInterface,
                         ConnmanNames::ServicesChanged,
                         {QVariant::fromValue(records), QVariant::fromValue(gone)});
}

void ConnmanFixture::receive()
{
    // The bus keeps the order of one sender's messages: what was sent before this answer is here with it.
    const QDBusMessage ping = QDBusMessage::createMethodCall(
        ConnmanNames::Service, ConnmanNames::ManagerObject, "org.freedesktop.DBus.Peer"_s, "Ping"_s);
    const QDBusMessage answer = connection().call(ping);
    if (answer.type() != QDBusMessage::ReplyMessage) {
        qCritical() << "ConnMan does not answer:" << answer.errorMessage();
    }
}

void ConnmanFixture::deliver()
{
    receive();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::MetaCall);
}

void ConnmanFixture::forget()
{
    connman().clearCalls();
    log().clear();
}

QString ConnmanFixture::pathOf(const QString &identifier)
{
    return "/net/connman/service/"_s + identifier;
}

QString ConnmanFixture::callLine(const QString &path, const QString &interface, const QString &member,
                                 const QString &arguments)
{
    return "%1 %2.%3(%4)"_s.arg(path, interface, member, arguments);
}

QString ConnmanFixture::getPropertiesCall(const QString &path)
{
    return callLine(path, ConnmanNames::ServiceInterface, ConnmanNames::GetProperties);
}

void ConnmanFixture::announced(const ConnmanServiceInfoList &changed,
                               const QList<QDBusObjectPath> & /*removed*/)
{
    for (const ConnmanServiceInfo &info : changed) {
        m_announced.insert(info.path.path());
    }
}

} // namespace test_support
