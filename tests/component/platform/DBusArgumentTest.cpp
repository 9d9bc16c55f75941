#include "BusName.h"
#include "PrivateBus.h"
#include "Suite.h"
#include "Text.h"
#include <libtactora/DBusArgument.h>

#include <memory>
#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusUnixFileDescriptor>
#include <QDBusVirtualObject>
#include <QMap>
#include <QSignalSpy>
#include <QTest>

using libtactora::dbusArgumentUnpack;
using test_support::PrivateBus;

namespace {

struct Pair
{
    QString text;
    int number = 0;
};

QDBusArgument &operator<<(QDBusArgument &argument, const Pair &pair)
{
    argument.beginStructure();
    argument << pair.text << pair.number;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, Pair &pair)
{
    argument.beginStructure();
    argument >> pair.text >> pair.number;
    argument.endStructure();
    return argument;
}

using PairList = QList<Pair>;
using TextByNumber = QMap<int, QString>;
using TextByByte = QMap<uchar, QString>;
using TextByPath = QMap<QDBusObjectPath, QString>;
using NumberByText = QMap<QString, int>;
using TextByText = QMap<QString, QString>;
using TextListByText = QMap<QString, QStringList>;
using PairByText = QMap<QString, Pair>;
using MapList = QList<QVariantMap>;
using IntList = QList<int>;
using IntListList = QList<IntList>;
using MapByMapText = QMap<QString, QVariantMap>;

QDBusVariant boxed(const QVariant &value)
{
    return QDBusVariant(value);
}

/// Answers every call with the value it holds, in a variant.
class Sender : public QDBusVirtualObject
{
    Q_OBJECT

public:
    using QDBusVirtualObject::QDBusVirtualObject;

    QString introspect(const QString & /*path*/) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        return connection.send(message.createReply(QVariant::fromValue(QDBusVariant(value))));
    }

    QVariant value;
};

} // namespace

Q_DECLARE_METATYPE(Pair)
Q_DECLARE_METATYPE(PairList)
Q_DECLARE_METATYPE(TextByNumber)
Q_DECLARE_METATYPE(TextByByte)
Q_DECLARE_METATYPE(TextByPath)
Q_DECLARE_METATYPE(NumberByText)
Q_DECLARE_METATYPE(TextByText)
Q_DECLARE_METATYPE(TextListByText)
Q_DECLARE_METATYPE(PairByText)
Q_DECLARE_METATYPE(MapList)
Q_DECLARE_METATYPE(IntList)
Q_DECLARE_METATYPE(IntListList)
Q_DECLARE_METATYPE(MapByMapText)

class DBusArgumentTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void receivedValueBecomesPlain_data();
    void receivedValueBecomesPlain();
    void everyValueOfAMapIsUnpacked();
    void everyValueOfAListIsUnpacked();
    void unpackingLeavesTheOriginalAsItWas();
    void deepNestingIsUnpackedToTheBottom();
    void valuesWithoutDBusPartsComeBackUnchanged_data();
    void valuesWithoutDBusPartsComeBackUnchanged();
    void fileDescriptorsStayFileDescriptors();
    void argumentThatHoldsNothingReceivedComesBackUnchanged();

private:
    QVariant sendAcross(const QVariant &value);

    std::unique_ptr<PrivateBus> m_bus;
    std::unique_ptr<BusName> m_sending;
    std::unique_ptr<BusName> m_receiving;
    Sender m_sender;
};

void DBusArgumentTest::initTestCase()
{
    m_bus = std::make_unique<PrivateBus>();
    QVERIFY(m_bus->isRunning());
    m_sending = std::make_unique<BusName>(m_bus->address(), "sending"_s);
    m_receiving = std::make_unique<BusName>(m_bus->address(), "receiving"_s);
    QVERIFY(m_sending->connection().registerVirtualObject("/"_s, &m_sender));
    QMetaType::registerComparators<QDBusObjectPath>();
    qDBusRegisterMetaType<QByteArrayList>();
    qDBusRegisterMetaType<Pair>();
    qDBusRegisterMetaType<PairList>();
    qDBusRegisterMetaType<TextByNumber>();
    qDBusRegisterMetaType<TextByByte>();
    qDBusRegisterMetaType<TextByPath>();
    qDBusRegisterMetaType<NumberByText>();
    qDBusRegisterMetaType<TextByText>();
    qDBusRegisterMetaType<TextListByText>();
    qDBusRegisterMetaType<PairByText>();
    qDBusRegisterMetaType<MapList>();
    qDBusRegisterMetaType<IntList>();
    qDBusRegisterMetaType<IntListList>();
    qDBusRegisterMetaType<MapByMapText>();
}

void DBusArgumentTest::cleanupTestCase()
{
    m_receiving.reset();
    m_sending.reset();
    m_bus.reset();
}

/// The value as the receiver gets it: in a variant, whose content may be a raw argument.
QVariant DBusArgumentTest::sendAcross(const QVariant &value)
{
    m_sender.value = value;
    const QDBusMessage question = QDBusMessage::createMethodCall(m_sending->connection().baseService(), "/"_s,
                                                                 "test.Sender"_s, "value"_s);
    const QDBusPendingCall call = m_receiving->connection().asyncCall(question);
    QDBusPendingCallWatcher watcher(call);
    QSignalSpy finished(&watcher, &QDBusPendingCallWatcher::finished);
    if (!finished.wait() || watcher.isError()) {
        qFatal("the value was not sent: %s", qPrintable(watcher.error().message()));
    }
    return watcher.reply().arguments().constFirst();
}

void DBusArgumentTest::receivedValueBecomesPlain_data()
{
    QTest::addColumn<QVariant>("sent");
    QTest::addColumn<QVariant>("expected");
    const auto row = [](const char *name, const QVariant &sent, const QVariant &expected) {
        QTest::newRow(name) << QVariant::fromValue(boxed(sent)) << expected;
    };
    const QString a = "a"_s;
    const QString b = "b"_s;
    const QVariantMap systemInfo{{"serialNo"_s, 5}, {"name"_s, a}};

    row("s", a, a);
    row("i", 5, 5);
    row("b", true, true);
    row("o", QVariant::fromValue(QDBusObjectPath("/x"_s)), QVariant::fromValue(QDBusObjectPath("/x"_s)));
    row("v", QVariant::fromValue(boxed(a)), a);
    row("v of v of i", QVariant::fromValue(boxed(QVariant::fromValue(boxed(5)))), 5);

    row("a{sv}", systemInfo, systemInfo);
    row("a{sv}, empty", QVariantMap(), QVariantMap());
    row("a{sv} in a{sv}", QVariantMap{{"systemInfo"_s, systemInfo}},
        QVariantMap{{"systemInfo"_s, systemInfo}});
    row("a{ss}", QVariant::fromValue(TextByText{{a, b}}), QVariantMap{{a, b}});
    row("a{si}", QVariant::fromValue(NumberByText{{a, 5}}), QVariantMap{{a, 5}});
    row("a{sas}", QVariant::fromValue(TextListByText{{a, {a, b}}}), QVariantMap{{a, QStringList{a, b}}});
    row("a{s(si)}", QVariant::fromValue(PairByText{{a, {b, 5}}}), QVariantMap{{a, QVariantList{b, 5}}});
    row("a{sa{sv}}", QVariant::fromValue(MapByMapText{{a, systemInfo}}), QVariantMap{{a, systemInfo}});

    row("a{is}", QVariant::fromValue(TextByNumber{{-5, a}, {12, b}}), QVariantMap{{"-5"_s, a}, {"12"_s, b}});
    row("a{ys}", QVariant::fromValue(TextByByte{{65, a}}), QVariantMap{{"65"_s, a}});
    row("a{os}", QVariant::fromValue(TextByPath{{QDBusObjectPath("/x"_s), a}}), QVariantMap{{"/x"_s, a}});

    row("as", QStringList{a, b}, QStringList{a, b});
    row("as, empty", QStringList(), QStringList());
    row("ay", QByteArray("xyz"), QByteArray("xyz"));
    row("aay", QVariant::fromValue(QByteArrayList{"x", "y"}), QVariantList{QByteArray("x"), QByteArray("y")});
    row("ai", QVariant::fromValue(IntList{1, 2}), QVariantList{1, 2});
    row("ai, empty", QVariant::fromValue(IntList()), QVariantList());
    row("aai", QVariant::fromValue(IntListList{{1}, {}, {2, 3}}),
        QVariantList{QVariantList{1}, QVariantList{}, QVariantList{2, 3}});
    row("av", QVariantList{a, 5, systemInfo}, QVariantList{a, 5, systemInfo});
    row("ao", QVariant::fromValue(QList<QDBusObjectPath>{QDBusObjectPath("/x"_s)}),
        QVariantList{QVariant::fromValue(QDBusObjectPath("/x"_s))});
    row("aa{sv}", QVariant::fromValue(MapList{systemInfo, {}}), QVariantList{systemInfo, QVariantMap()});
    row("(si)", QVariant::fromValue(Pair{a, 5}), QVariantList{a, 5});
    row("a(si)", QVariant::fromValue(PairList{{a, 5}, {b, 6}}),
        QVariantList{QVariantList{a, 5}, QVariantList{b, 6}});
    row("a(si), empty", QVariant::fromValue(PairList()), QVariantList());
}

void DBusArgumentTest::receivedValueBecomesPlain()
{
    QFETCH(QVariant, sent);
    QFETCH(QVariant, expected);
    const QVariant unpacked = dbusArgumentUnpack(sendAcross(sent));
    QCOMPARE(QString::fromLatin1(unpacked.typeName()), QString::fromLatin1(expected.typeName()));
    QCOMPARE(unpacked, expected);
}

void DBusArgumentTest::everyValueOfAMapIsUnpacked()
{
    const QVariantMap inner{{"serialNo"_s, 5}};
    const QVariantMap received{{"systemInfo"_s, sendAcross(inner)},
                               {"list"_s, sendAcross(QVariant::fromValue(IntList{1}))},
                               {"plain"_s, 5}};
    const QVariantMap unpacked = dbusArgumentUnpack(received);
    QCOMPARE(unpacked, (QVariantMap{{"systemInfo"_s, inner}, {"list"_s, QVariantList{1}}, {"plain"_s, 5}}));
}

void DBusArgumentTest::everyValueOfAListIsUnpacked()
{
    const QVariantMap inner{{"serialNo"_s, 5}};
    const QVariantList received{sendAcross(inner), QVariant::fromValue(boxed(5)), 6};
    QCOMPARE(dbusArgumentUnpack(QVariant(received)), QVariant(QVariantList{inner, 5, 6}));
}

void DBusArgumentTest::unpackingLeavesTheOriginalAsItWas()
{
    const QVariantMap map{{"serialNo"_s, 5}};
    const QVariant received = sendAcross(map);
    QCOMPARE(dbusArgumentUnpack(received), QVariant(map));
    QCOMPARE(dbusArgumentUnpack(received), QVariant(map));
}

void DBusArgumentTest::deepNestingIsUnpackedToTheBottom()
{
    constexpr int depth = 10; // of a bus message's 32 levels of arrays, each map in a variant takes one
    QVariant nested = QVariant::fromValue(IntList{1});
    QVariant expected = QVariantList{1};
    for (int level = 0; level < depth; ++level) {
        nested = QVariantList{QVariantMap{{"inner"_s, nested}}};
        expected = QVariantList{QVariantMap{{"inner"_s, expected}}};
    }
    QCOMPARE(dbusArgumentUnpack(sendAcross(nested)), expected);
}

void DBusArgumentTest::valuesWithoutDBusPartsComeBackUnchanged_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::newRow("nothing") << QVariant();
    QTest::newRow("text") << QVariant("a"_s);
    QTest::newRow("list") << QVariant(QVariantList{1, "a"_s});
    QTest::newRow("map") << QVariant(QVariantMap{{"a"_s, QStringList{"b"_s}}});
}

void DBusArgumentTest::valuesWithoutDBusPartsComeBackUnchanged()
{
    QFETCH(QVariant, value);
    QCOMPARE(dbusArgumentUnpack(value), value);
}

void DBusArgumentTest::fileDescriptorsStayFileDescriptors()
{
    const QVariant received = sendAcross(QVariant::fromValue(QDBusUnixFileDescriptor(0)));
    const auto descriptor = dbusArgumentUnpack(received).value<QDBusUnixFileDescriptor>();
    QVERIFY(descriptor.isValid());
}

void DBusArgumentTest::argumentThatHoldsNothingReceivedComesBackUnchanged()
{
    const QVariant empty = QVariant::fromValue(QDBusArgument());
    QCOMPARE(dbusArgumentUnpack(empty).userType(), qMetaTypeId<QDBusArgument>());
}

static const Suite<DBusArgumentTest> dBusArgumentTest;
#include "DBusArgumentTest.moc"
