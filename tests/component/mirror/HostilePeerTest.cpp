// Whatever shape ConnMan's replies and signals have, the mirror lives on and follows the next proper one.

#include "ConnmanFixture.h"
#include "ConnmanManager.h"
#include "ConnmanTechnology.h"
#include "ManagerScene.h"
#include "OddValues.h"
#include "Suite.h"
#include "Text.h"

#include <QDBusConnectionInterface>
#include <QTest>

using namespace test_support;

namespace {

const QLatin1String ServiceInterface("net.connman.Service");
const QLatin1String GetProperties("GetProperties");
const QLatin1String PropertyChanged("PropertyChanged");

/// Replies that are no list of records, with the signature Qt complains about.
void addReplyRows()
{
    QTest::addColumn<QVariantList>("arguments");
    QTest::addColumn<QString>("received");
    const auto row = [](const char *received, const QVariant &argument) {
        QTest::newRow(received) << QVariantList{argument} << QString(QLatin1String(received));
    };
    registerOddTypes();
    QTest::newRow("no arguments") << QVariantList() << "<empty signature>"_s;
    row("s", "text"_s);
    row("i", 7);
    row("as", QStringList{"/x"_s});
    row("a{sv}", QVariantMap{{"/x"_s, 1}});
    row("ao", QVariant::fromValue(QList<QDBusObjectPath>{QDBusObjectPath("/x"_s)}));
    row("ai", QVariant::fromValue(QList<int>{1}));
    row("av", QVariantList{1, "text"_s});
    row("a{ss}", QVariant::fromValue(TextMap{{"a"_s, "b"_s}}));
    row("(si)", QVariant::fromValue(OddPair{"text"_s, 7}));
    row("(oa{sv})", QVariant::fromValue(ConnmanServiceInfo{QDBusObjectPath("/x"_s), {}}));
}

QString unexpectedSignature(const QString &category, const QString &method, const QString &received)
{
    return critical(
        category, "Call to %1 failed: \"Unexpected reply signature: got \\\"%2\\\""_s.arg(method, received));
}

} // namespace

class HostilePeerTest : public ConnmanFixture
{
    Q_OBJECT

private slots:
    void propertiesThatAreNoDictionaryAreOneLineAndTheOldCache_data();
    void propertiesThatAreNoDictionaryAreOneLineAndTheOldCache();
    void servicesThatAreNoListAreOneLine_data();
    void servicesThatAreNoListAreOneLine();
    void technologiesThatAreNoListAreOneLine_data();
    void technologiesThatAreNoListAreOneLine();

    void propertyChangeOfAnotherShapeIsNotHeard_data();
    void propertyChangeOfAnotherShapeIsNotHeard();
    void announcementOfAnotherShapeIsNotHeard_data();
    void announcementOfAnotherShapeIsNotHeard();
    void signalsOfOthersThanConnmanAreNotHeard();
    void agentRegistrationAnsweredWithAValueSucceeds();
};

void HostilePeerTest::propertiesThatAreNoDictionaryAreOneLineAndTheOldCache_data()
{
    QTest::addColumn<QVariantList>("arguments");
    QTest::addColumn<QString>("received");
    QTest::newRow("no arguments") << QVariantList() << "<empty signature>"_s;
    const QVector<OddValue> values = rawOddValues();
    for (int i = 0; i < values.size(); ++i) {
        QTest::addRow("%d %s", i, values[i].signature)
            << QVariantList{values[i].value} << QString(QLatin1String(values[i].signature));
    }
    QTest::newRow("s") << QVariantList{"text"_s} << "s"_s;
    QTest::newRow("y") << QVariantList{QVariant::fromValue(uchar(7))} << "y"_s;
    QTest::newRow("as") << QVariantList{QStringList{"State"_s}} << "as"_s;
}

void HostilePeerTest::propertiesThatAreNoDictionaryAreOneLineAndTheOldCache()
{
    QFETCH(QVariantList, arguments);
    QFETCH(QString, received);
    addService(A);
    ConnmanService service(connection(), QDBusObjectPath(pathOf(A)), nullptr);
    service.serviceChanged();
    const QVariantMap before = service.properties();
    const Fault fault = connman().injectFault(ServiceInterface, GetProperties, FaultKind::reply(arguments));
    QVERIFY(service.dbusUpdateProperties());
    QCOMPARE(service.properties(), before);
    QCOMPARE(complaints().size(), 1);
    QVERIFY(complaints().constFirst().startsWith(
        unexpectedSignature("ConnmanService.properties"_s, GetProperties, received)));
}

void HostilePeerTest::servicesThatAreNoListAreOneLine_data()
{
    addReplyRows();
}

void HostilePeerTest::servicesThatAreNoListAreOneLine()
{
    QFETCH(QVariantList, arguments);
    QFETCH(QString, received);
    addService(A);
    ConnmanManager manager(connection(), nullptr);
    const Fault fault = connman().injectFault(ManagerInterface, "GetServices"_s, FaultKind::reply(arguments));
    QVERIFY(!manager.updateServices());
    QVERIFY(manager.services().isEmpty());
    QCOMPARE(complaints().size(), 1);
    QVERIFY(complaints().constFirst().startsWith(
        unexpectedSignature("ConnmanManager.services"_s, "GetServices"_s, received)));
    QVERIFY(manager.updateServices());
    QCOMPARE(registeredPaths(manager), {pathOf(A)});
}

void HostilePeerTest::technologiesThatAreNoListAreOneLine_data()
{
    addReplyRows();
}

void HostilePeerTest::technologiesThatAreNoListAreOneLine()
{
    QFETCH(QVariantList, arguments);
    QFETCH(QString, received);
    ConnmanManager manager(connection(), nullptr);
    const Fault fault =
        connman().injectFault(ManagerInterface, "GetTechnologies"_s, FaultKind::reply(arguments));
    QVERIFY(!manager.hasTechnology(QString()));
    QCOMPARE(complaints().size(), 1);
    QVERIFY(complaints().constFirst().startsWith(
        unexpectedSignature("ConnmanManager.technology"_s, "GetTechnologies"_s, received)));
    QVERIFY(manager.hasTechnology(QString()));
}

void HostilePeerTest::propertyChangeOfAnotherShapeIsNotHeard_data()
{
    QTest::addColumn<QVariantList>("arguments");
    const QString name = "Strength"_s;
    const QVariant wrapped = QVariant::fromValue(QDBusVariant(QVariant::fromValue(uchar(61))));
    QTest::newRow("none") << QVariantList();
    QTest::newRow("s") << QVariantList{name};
    QTest::newRow("ss") << QVariantList{name, "61"_s};
    QTest::newRow("sy") << QVariantList{name, QVariant::fromValue(uchar(61))};
    QTest::newRow("vs") << QVariantList{wrapped, name};
    QTest::newRow("svs") << QVariantList{name, wrapped, name};
    QTest::newRow("sa{sv}") << QVariantList{name, QVariantMap{{name, 61}}};
}

void HostilePeerTest::propertyChangeOfAnotherShapeIsNotHeard()
{
    QFETCH(QVariantList, arguments);
    const ConnmanManager manager(connection(), nullptr);
    const ConnmanTechnology wifi(connection(), "wifi"_s, nullptr);
    ConnmanService service(connection(), QDBusObjectPath(pathOf(A)), nullptr);
    log().clear();
    connman().emitSignal(pathOf(A), ServiceInterface, PropertyChanged, arguments);
    connman().emitSignal("/net/connman/technology/wifi"_s, "net.connman.Technology"_s, PropertyChanged,
                         arguments);
    connman().emitSignal(ManagerPath, ManagerInterface, PropertyChanged, arguments);
    deliver();
    QVERIFY(service.properties().isEmpty());
    QVERIFY(!log().contains(PropertyChanged));
    emitPropertyChanged(pathOf(A), "Strength"_s, QVariant::fromValue(uchar(61)));
    deliver();
    QCOMPARE(service.strength(), 61);
}

void HostilePeerTest::announcementOfAnotherShapeIsNotHeard_data()
{
    QTest::addColumn<QVariantList>("arguments");
    const QVariant records = QVariant::fromValue(ConnmanServiceInfoList{{QDBusObjectPath(pathOf(A)), {}}});
    const QVariant paths =
        QVariant::fromValue(QList<QDBusObjectPath>{QDBusObjectPath("/net/connman/service/b"_s)});
    QTest::newRow("none") << QVariantList();
    QTest::newRow("only the changed") << QVariantList{records};
    QTest::newRow("only the removed") << QVariantList{paths};
    QTest::newRow("swapped") << QVariantList{paths, records};
    QTest::newRow("removed as texts") << QVariantList{records, QStringList{pathOf(A)}};
    QTest::newRow("changed as paths") << QVariantList{paths, paths};
    QTest::newRow("changed as a dictionary") << QVariantList{QVariantMap{{"a"_s, 1}}, paths};
    QTest::newRow("one more") << QVariantList{records, paths, 1};
}

void HostilePeerTest::announcementOfAnotherShapeIsNotHeard()
{
    QFETCH(QVariantList, arguments);
    const ManagerScene recorded(*this);
    connman().emitSignal(ManagerPath, ManagerInterface, "ServicesChanged"_s, arguments);
    deliver();
    QVERIFY(recorded.manager.services().isEmpty());
    QCOMPARE(complaints(), QStringList());
    emitServicesChanged({pathOf(A)}, {});
    deliver();
    QCOMPARE(registeredPaths(recorded.manager), {pathOf(A)});
}

void HostilePeerTest::signalsOfOthersThanConnmanAreNotHeard()
{
    addService(A);
    const ManagerScene recorded(*this);
    connman().clearCalls();
    ConnmanService service(connection(), QDBusObjectPath(pathOf(A)), nullptr);
    QDBusConnection stranger = QDBusConnection::connectToBus(busAddress(), "stranger"_s);
    QDBusMessage signal = QDBusMessage::createSignal(pathOf(A), ServiceInterface, PropertyChanged);
    signal << "State"_s << QVariant::fromValue(QDBusVariant("online"_s));
    QVERIFY(stranger.send(signal));
    // A round trip to the bus, so that it has passed the signal on before ConnMan's next message.
    QVERIFY(stranger.interface()->isServiceRegistered("net.connman"_s));
    QDBusConnection::disconnectFromBus("stranger"_s);
    deliver();
    QVERIFY(service.properties().isEmpty());
    QCOMPARE(recorded.manager.services().constFirst()->state(), State::Idle);
    QCOMPARE(calls(), QStringList());
}

void HostilePeerTest::agentRegistrationAnsweredWithAValueSucceeds()
{
    ConnmanManager manager(connection(), nullptr);
    const Fault fault =
        connman().injectFault(ManagerInterface, "RegisterAgent"_s, FaultKind::reply({"text"_s}));
    QVERIFY(manager.registerAgent(QDBusObjectPath("/agent"_s)));
    QCOMPARE(complaints(), QStringList());
}

static const Suite<HostilePeerTest> hostilePeerTest;
#include "HostilePeerTest.moc"
