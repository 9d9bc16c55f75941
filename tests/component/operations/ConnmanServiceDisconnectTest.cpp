#include "ServiceFixture.h"
#include "Suite.h"
#include "Text.h"

#include <QCoreApplication>
#include <QTest>

using test_support::Fault;
using test_support::FaultKind;

/// Disconnecting and removing a service.
class ConnmanServiceDisconnectTest : public ServiceFixture
{
    Q_OBJECT

private slots:
    void disconnectWritesTheAddressItHadAndRefreshesTwice();
    void disconnectReadsTheAddressBeforeAnythingElse();
    void disconnectWithoutNetmaskEvenWhenConfiguredManually();
    void disconnectOfAServiceThatIsNotConnectedSucceedsAndStillWrites();
    void disconnectOfAServiceThatIsGoneSucceedsSilently();
    void disconnectThatFailsIsLoggedAndStillWrites_data();
    void disconnectThatFailsIsLoggedAndStillWrites();
    void disconnectSucceedsWhenOnlyTheWriteIsRefused();
    void disconnectWithoutAddressesWritesEmptyOnes();
    void disconnectOfAServiceThatHasNoAddressYetNamesWhatIsMissing();
    void disconnectProcessesNoEvents();

    void removeReturnsToDhcpFirst();
    void removeGoesOnWhenTheReturnToDhcpIsRefused();
    void removeThatFailsIsLogged_data();
    void removeThatFailsIsLogged();
    void removeOfAServiceThatIsGoneIsLogged();
    void removeRefreshesTheCache();

private:
    static QString writeOfTheAddress();
    static QStringList disconnectCalls();
    static QStringList removeCalls();
};

QString ConnmanServiceDisconnectTest::writeOfTheAddress()
{
    return setProperty(
        "IPv4.Configuration",
        "{\"Address\": <\"10.0.0.7\">, \"Gateway\": <\"10.0.0.1\">, \"Method\": <\"manual\">}");
}

QStringList ConnmanServiceDisconnectTest::disconnectCalls()
{
    return {call("Disconnect"), writeOfTheAddress(), getProperties(), getProperties()};
}

QStringList ConnmanServiceDisconnectTest::removeCalls()
{
    return {setProperty("IPv4.Configuration", "{\"Method\": <\"dhcp\">}"),
            getProperties(),
            setProperty("Nameservers.Configuration", "@as []"),
            getProperties(),
            call("Remove"),
            getProperties()};
}

void ConnmanServiceDisconnectTest::disconnectWritesTheAddressItHadAndRefreshesTwice()
{
    const Fault taken = fault("SetProperty", FaultKind::reply({}));

    QVERIFY(service().disconnect());
    QCOMPARE(calls(), disconnectCalls());
    QCOMPARE(service().properties().value("State"_s).toString(), "idle"_s);
    QCOMPARE(complaints(), QStringList());
}

void ConnmanServiceDisconnectTest::disconnectReadsTheAddressBeforeAnythingElse()
{
    // Disconnecting takes the addresses away, and this write would have made them the proxy's.
    connman().setServiceProperty(
        identifier(), "IPv4"_s,
        QVariantMap{{"Method"_s, "dhcp"_s}, {"Address"_s, "10.9.9.9"_s}, {"Gateway"_s, "10.9.9.1"_s}}, true);
    const Fault taken = fault("SetProperty", FaultKind::reply({}));

    QVERIFY(service().disconnect());
    QCOMPARE(calls(), disconnectCalls());
}

void ConnmanServiceDisconnectTest::disconnectWithoutNetmaskEvenWhenConfiguredManually()
{
    connman().setServiceProperty(identifier(), "IPv4.Configuration"_s,
                                 QVariantMap{{"Method"_s, "manual"_s},
                                             {"Address"_s, "10.5.0.2"_s},
                                             {"Netmask"_s, "255.255.0.0"_s},
                                             {"Gateway"_s, "10.5.0.1"_s}});
    connman().setServiceProperty(identifier(), "IPv4"_s, QVariantMap{{"Method"_s, "manual"_s}});
    makeProxy();
    const Fault taken = fault("SetProperty", FaultKind::reply({}));

    QVERIFY(service().disconnect());
    QCOMPARE(calls().at(1),
             setProperty("IPv4.Configuration", "{\"Address\": <\"10.5.0.2\">, \"Gateway\": <\"10.5.0.1\">, "
                                               "\"Method\": <\"manual\">}"));
}

void ConnmanServiceDisconnectTest::disconnectOfAServiceThatIsNotConnectedSucceedsAndStillWrites()
{
    const Fault notConnected = fault("Disconnect", connmanError("NotConnected", "Not connected"));
    const Fault taken = fault("SetProperty", FaultKind::reply({}));

    QVERIFY(service().disconnect());
    QCOMPARE(calls(), disconnectCalls());
    QCOMPARE(complaints(), QStringList());
}

void ConnmanServiceDisconnectTest::disconnectOfAServiceThatIsGoneSucceedsSilently()
{
    removeServiceUnnoticed();

    QVERIFY(service().disconnect());
    QCOMPARE(calls(), disconnectCalls());
    QCOMPARE(complaints(), QStringList());
}

void ConnmanServiceDisconnectTest::disconnectThatFailsIsLoggedAndStillWrites_data()
{
    QTest::addColumn<QByteArray>("error");
    QTest::addColumn<QByteArray>("message");

    QTest::newRow("failed") << QByteArray("net.connman.Error.Failed") << QByteArray("Input/output error");
    QTest::newRow("in progress") << QByteArray("net.connman.Error.InProgress") << QByteArray("In progress");
    QTest::newRow("not connected, but another's word")
        << QByteArray("org.example.Error.NotConnected") << QByteArray("Not connected");
    QTest::newRow("access denied") << QByteArray("org.freedesktop.DBus.Error.AccessDenied")
                                   << QByteArray("No way");
    QTest::newRow("unknown method") << QByteArray("org.freedesktop.DBus.Error.UnknownMethod")
                                    << QByteArray("What?");
    QTest::newRow("no reply") << QByteArray("org.freedesktop.DBus.Error.NoReply") << QByteArray("Silence");
}

void ConnmanServiceDisconnectTest::disconnectThatFailsIsLoggedAndStillWrites()
{
    QFETCH(QByteArray, error);
    QFETCH(QByteArray, message);
    const Fault failing =
        fault("Disconnect", FaultKind::error(QString::fromLatin1(error), QString::fromLatin1(message)));
    const Fault taken = fault("SetProperty", FaultKind::reply({}));

    QVERIFY(!service().disconnect());
    QCOMPARE(calls(), disconnectCalls());
    QCOMPARE(complaints(), QStringList(failedCallLine("Disconnect", error.constData(), message.constData())));
}

void ConnmanServiceDisconnectTest::disconnectSucceedsWhenOnlyTheWriteIsRefused()
{
    const Fault refused = fault("SetProperty", connmanError("InvalidArguments", "Invalid arguments"));

    QVERIFY(service().disconnect());
    QCOMPARE(calls(), disconnectCalls());
    QCOMPARE(complaints(), QStringList(propertiesLine(
                               "Setting property \"IPv4.Configuration\" failed: \"Invalid arguments\""_s)));
}

void ConnmanServiceDisconnectTest::disconnectWithoutAddressesWritesEmptyOnes()
{
    connman().removeServiceProperty(identifier(), "IPv4"_s);
    makeProxy();
    const Fault taken = fault("SetProperty", FaultKind::reply({}));
    const QString missing = propertiesLine("Missing property \"IPv4\" of service \"%1\""_s.arg(path()));
    const QString empty = propertiesLine("Empty or missing ipv4-configuration."_s);

    QVERIFY(service().disconnect());
    QCOMPARE(calls(),
             QStringList({call("Disconnect"),
                          setProperty("IPv4.Configuration", "{\"Address\": <\"\">, \"Gateway\": <\"\">, "
                                                            "\"Method\": <\"manual\">}"),
                          getProperties(), getProperties()}));
    QCOMPARE(complaints(), QStringList({missing, empty, missing, empty}));
}

void ConnmanServiceDisconnectTest::disconnectOfAServiceThatHasNoAddressYetNamesWhatIsMissing()
{
    connman().setServiceProperty(identifier(), "IPv4"_s, QVariantMap{{"Method"_s, "dhcp"_s}}, true);
    makeProxy();
    const Fault taken = fault("SetProperty", FaultKind::reply({}));

    QVERIFY(service().disconnect());
    QCOMPARE(complaints(), QStringList({propertiesLine("Missing property \"Address\""_s),
                                        propertiesLine("Missing property \"Gateway\""_s)}));
}

void ConnmanServiceDisconnectTest::disconnectProcessesNoEvents()
{
    const Fault late = fault("Disconnect", FaultKind::delay(100));
    const Fault taken = fault("SetProperty", FaultKind::reply({}));
    bool processed = false;
    QMetaObject::invokeMethod(
        this, [&processed] { processed = true; }, Qt::QueuedConnection);

    QVERIFY(service().disconnect());
    QVERIFY(!processed);
    QCoreApplication::processEvents();
    QVERIFY(processed);
}

void ConnmanServiceDisconnectTest::removeReturnsToDhcpFirst()
{
    QVERIFY(service().remove());
    QCOMPARE(calls(), removeCalls());
    QCOMPARE(complaints(), QStringList());
}

void ConnmanServiceDisconnectTest::removeGoesOnWhenTheReturnToDhcpIsRefused()
{
    const Fault refused = fault("SetProperty", connmanError("NotSupported", "Not supported"), 2);

    QVERIFY(service().remove());
    QCOMPARE(refused.fired(), 2U);
    QCOMPARE(calls(), removeCalls());
    QCOMPARE(
        complaints(),
        QStringList(
            {propertiesLine("Setting property \"IPv4.Configuration\" failed: \"Not supported\""_s),
             propertiesLine("Setting property \"Nameservers.Configuration\" failed: \"Not supported\""_s)}));
}

void ConnmanServiceDisconnectTest::removeThatFailsIsLogged_data()
{
    QTest::addColumn<QByteArray>("error");
    QTest::addColumn<QByteArray>("message");

    QTest::newRow("not supported") << QByteArray("net.connman.Error.NotSupported")
                                   << QByteArray("Not supported");
    QTest::newRow("not connected") << QByteArray("net.connman.Error.NotConnected")
                                   << QByteArray("Not connected");
    QTest::newRow("unknown object") << QByteArray("org.freedesktop.DBus.Error.UnknownObject")
                                    << QByteArray("No such object");
    QTest::newRow("no reply") << QByteArray("org.freedesktop.DBus.Error.NoReply") << QByteArray("Silence");
}

void ConnmanServiceDisconnectTest::removeThatFailsIsLogged()
{
    QFETCH(QByteArray, error);
    QFETCH(QByteArray, message);
    const Fault failing =
        fault("Remove", FaultKind::error(QString::fromLatin1(error), QString::fromLatin1(message)));

    QVERIFY(!service().remove());
    QCOMPARE(calls(), removeCalls());
    QCOMPARE(complaints(), QStringList(failedCallLine("Remove", error.constData(), message.constData())));
}

void ConnmanServiceDisconnectTest::removeOfAServiceThatIsGoneIsLogged()
{
    removeServiceUnnoticed();

    QVERIFY(!service().remove());
    QCOMPARE(calls(), removeCalls());
    QCOMPARE(complaints().size(), 1);
    QVERIFY(complaints().constFirst().startsWith(
        serviceLine("Failed to asynchronously call Remove on \"%1\" : "
                    "QDBusError(\"org.freedesktop.DBus.Error.UnknownObject\", "_s.arg(path()))));
}

void ConnmanServiceDisconnectTest::removeRefreshesTheCache()
{
    QVERIFY(service().isFavorite());
    QVERIFY(service().remove());
    QVERIFY(!service().isFavorite());
}

static const Suite<ConnmanServiceDisconnectTest> connmanServiceDisconnectTest;
#include "ConnmanServiceDisconnectTest.moc"
