#include "ConnmanTypes.h"

#include "Loopback.h"
#include "OddValues.h"
#include "Suite.h"

#include <QDBusMetaType>
#include <QDebug>
#include <QMap>
#include <QTest>

namespace {

const QLatin1String NameKey("Name");
const QLatin1String StateKey("State");
const QLatin1String StrengthKey("Strength");

ConnmanServiceInfo info(const QString &path, const QVariantMap &properties = {})
{
    return {QDBusObjectPath(path), properties};
}

QStringList paths(const ConnmanServiceInfoList &list)
{
    QStringList result;
    for (const ConnmanServiceInfo &entry : list) {
        result << entry.path.path();
    }
    return result;
}

QString printed(const ConnmanServiceInfo &value)
{
    QString text;
    QDebug(&text) << value;
    return text.trimmed();
}

/// The keys of an a{sv} in the order they were sent.
QStringList keysInWireOrder(const QDBusArgument &argument)
{
    QStringList keys;
    argument.beginMap();
    while (!argument.atEnd()) {
        QString key;
        QVariant value;
        argument.beginMapEntry();
        argument >> key >> value;
        argument.endMapEntry();
        keys << key;
    }
    argument.endMap();
    return keys;
}

/// A record (oa{sv}) whose dictionary has one key twice.
struct InfoWithRepeatedKey
{
    QDBusObjectPath path;
    RepeatedKey properties;
};

QDBusArgument &operator<<(QDBusArgument &argument, const InfoWithRepeatedKey &record)
{
    argument.beginStructure();
    argument << record.path;
    argument.appendVariant(QVariant::fromValue(record.properties));
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, InfoWithRepeatedKey & /*onlyEverSent*/)
{
    return argument;
}

} // namespace

Q_DECLARE_METATYPE(InfoWithRepeatedKey)

class ConnmanTypesTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void bothTypesHaveTheirMetaTypeNames();
    void bothTypesHaveTheirSignatures();
    void registeringAgainIsHarmless();

    void recordComesThroughTheBusEqual();
    void recordWithoutPropertiesComesThroughTheBus();
    void propertiesAreSentInTheMapsOrder();
    void valuesAreUnwrappedAndNotConvertedFurther();
    void laterEntryOfARepeatedKeyWins();
    void readingARecordForgetsItsEarlierProperties();

    void listComesThroughTheBusInOrder();
    void emptyListComesThroughTheBus();
    void readingAListForgetsItsEarlierRecords();

    void recordPrintsItsPathAndProperties();
    void recordWithoutPropertiesPrintsAnEmptyMap();
    void printingARecordLeavesTheStreamAsItWas();

private:
    Loopback m_loopback;
};

void ConnmanTypesTest::initTestCase()
{
    registerConnmanTypes();
    registerOddTypes();
    qDBusRegisterMetaType<InfoWithRepeatedKey>();
}

void ConnmanTypesTest::bothTypesHaveTheirMetaTypeNames()
{
    QCOMPARE(QMetaType::type("ConnmanServiceInfo"), qMetaTypeId<ConnmanServiceInfo>());
    QCOMPARE(QMetaType::type("ConnmanServiceInfoList"), qMetaTypeId<ConnmanServiceInfoList>());
}

void ConnmanTypesTest::bothTypesHaveTheirSignatures()
{
    QCOMPARE(QDBusMetaType::typeToSignature(qMetaTypeId<ConnmanServiceInfo>()), "(oa{sv})");
    QCOMPARE(QDBusMetaType::typeToSignature(qMetaTypeId<ConnmanServiceInfoList>()), "a(oa{sv})");
}

void ConnmanTypesTest::registeringAgainIsHarmless()
{
    const int before = qMetaTypeId<ConnmanServiceInfoList>();
    registerConnmanTypes();
    QCOMPARE(QMetaType::type("ConnmanServiceInfoList"), before);
    bothTypesHaveTheirSignatures();
}

void ConnmanTypesTest::recordComesThroughTheBusEqual()
{
    const QVariantMap properties{{NameKey, QStringLiteral("Café")},
                                 {StrengthKey, QVariant::fromValue(uchar(61))},
                                 {StateKey, QStringLiteral("idle")}};
    const QVariant sent = QVariant::fromValue(info(QStringLiteral("/net/connman/service/x"), properties));
    const auto received = qdbus_cast<ConnmanServiceInfo>(m_loopback.argument(sent));
    QCOMPARE(received.path.path(), QStringLiteral("/net/connman/service/x"));
    QCOMPARE(received.properties, properties);
    QCOMPARE(received.properties.value(StrengthKey).userType(), int(QMetaType::UChar));
}

void ConnmanTypesTest::recordWithoutPropertiesComesThroughTheBus()
{
    const QVariant sent = QVariant::fromValue(info(QStringLiteral("/x")));
    const auto received = qdbus_cast<ConnmanServiceInfo>(m_loopback.argument(sent));
    QCOMPARE(received.path.path(), QStringLiteral("/x"));
    QVERIFY(received.properties.isEmpty());
}

void ConnmanTypesTest::propertiesAreSentInTheMapsOrder()
{
    const QVariantMap properties{
        {QStringLiteral("c"), 1}, {QStringLiteral("a"), 2}, {QStringLiteral("b"), 3}};
    const QVariant sent = QVariant::fromValue(info(QStringLiteral("/x"), properties));
    const auto raw = m_loopback.argument(sent).value<QDBusArgument>();
    raw.beginStructure();
    QDBusObjectPath path;
    raw >> path;
    QCOMPARE(raw.currentSignature(), QStringLiteral("a{sv}"));
    const QStringList keys = keysInWireOrder(raw);
    raw.endStructure();
    QCOMPARE(keys, QStringList(properties.keys()));
}

void ConnmanTypesTest::valuesAreUnwrappedAndNotConvertedFurther()
{
    const QVariantMap ethernet{{QStringLiteral("Interface"), QStringLiteral("eth0")}};
    const QVariantMap properties{{NameKey, QStringLiteral("Wired")}, {QStringLiteral("Ethernet"), ethernet}};
    const QVariant sent = QVariant::fromValue(info(QStringLiteral("/x"), properties));
    const auto received = qdbus_cast<ConnmanServiceInfo>(m_loopback.argument(sent));
    QCOMPARE(received.properties.value(NameKey).userType(), int(QMetaType::QString));
    const QVariant nested = received.properties.value(QStringLiteral("Ethernet"));
    QCOMPARE(nested.userType(), qMetaTypeId<QDBusArgument>());
    QCOMPARE(qdbus_cast<QVariantMap>(nested), ethernet);
}

void ConnmanTypesTest::laterEntryOfARepeatedKeyWins()
{
    const RepeatedKey twice{NameKey, QStringLiteral("first"), QStringLiteral("second")};
    const InfoWithRepeatedKey record{QDBusObjectPath(QStringLiteral("/x")), twice};
    const QVariant raw = m_loopback.argument(QVariant::fromValue(record));
    QCOMPARE(raw.value<QDBusArgument>().currentSignature(), QStringLiteral("(oa{sv})"));
    const QVariantMap expected{{NameKey, QStringLiteral("second")}};
    QCOMPARE(qdbus_cast<ConnmanServiceInfo>(raw).properties, expected);
}

void ConnmanTypesTest::readingARecordForgetsItsEarlierProperties()
{
    const QVariant sent =
        QVariant::fromValue(info(QStringLiteral("/new"), {{StateKey, QStringLiteral("idle")}}));
    ConnmanServiceInfo record = info(QStringLiteral("/old"), {{NameKey, QStringLiteral("Old")}});
    m_loopback.argument(sent).value<QDBusArgument>() >> record;
    QCOMPARE(record.path.path(), QStringLiteral("/new"));
    QCOMPARE(record.properties.keys(), {StateKey});
}

void ConnmanTypesTest::listComesThroughTheBusInOrder()
{
    const ConnmanServiceInfoList sent{
        info(QStringLiteral("/net/connman/service/c"), {{NameKey, QStringLiteral("C")}}),
        info(QStringLiteral("/net/connman/service/a")),
        info(QStringLiteral("/net/connman/service/b"),
             {{StateKey, QStringLiteral("idle")}, {NameKey, QString()}}),
    };
    const auto received = qdbus_cast<ConnmanServiceInfoList>(m_loopback.argument(QVariant::fromValue(sent)));
    QCOMPARE(paths(received), paths(sent));
    for (int i = 0; i < sent.size(); ++i) {
        QCOMPARE(received[i].properties, sent[i].properties);
    }
}

void ConnmanTypesTest::emptyListComesThroughTheBus()
{
    const QVariant raw = m_loopback.argument(QVariant::fromValue(ConnmanServiceInfoList()));
    QCOMPARE(raw.value<QDBusArgument>().currentSignature(), QStringLiteral("a(oa{sv})"));
    QVERIFY(qdbus_cast<ConnmanServiceInfoList>(raw).isEmpty());
}

void ConnmanTypesTest::readingAListForgetsItsEarlierRecords()
{
    const QVariant sent = QVariant::fromValue(ConnmanServiceInfoList{info(QStringLiteral("/new"))});
    ConnmanServiceInfoList list{info(QStringLiteral("/old")), info(QStringLiteral("/older"))};
    m_loopback.argument(sent).value<QDBusArgument>() >> list;
    QCOMPARE(paths(list), {QStringLiteral("/new")});
}

void ConnmanTypesTest::recordPrintsItsPathAndProperties()
{
    const QVariantMap properties{{NameKey, QStringLiteral("Home")}, {StateKey, QStringLiteral("idle")}};
    QCOMPARE(printed(info(QStringLiteral("/net/connman/service/x"), properties)),
             QStringLiteral("ConnmanServiceInfo(\"/net/connman/service/x\", "
                            "QMap((\"Name\", QVariant(QString, \"Home\"))"
                            "(\"State\", QVariant(QString, \"idle\"))))"));
}

void ConnmanTypesTest::recordWithoutPropertiesPrintsAnEmptyMap()
{
    QCOMPARE(printed(info(QStringLiteral("/x"))), QStringLiteral("ConnmanServiceInfo(\"/x\", QMap())"));
}

void ConnmanTypesTest::printingARecordLeavesTheStreamAsItWas()
{
    QString spaced;
    QDebug(&spaced) << 1 << info(QStringLiteral("/x")) << 2 << QStringLiteral("t");
    QCOMPARE(spaced.trimmed(), QStringLiteral("1 ConnmanServiceInfo(\"/x\", QMap()) 2 \"t\""));

    QString tight;
    QDebug(&tight).nospace().noquote() << 1 << info(QStringLiteral("/x")) << 2 << QStringLiteral("t");
    QCOMPARE(tight, QStringLiteral("1ConnmanServiceInfo(/x, QMap())2t"));
}

static const Suite<ConnmanTypesTest> suite;
#include "ConnmanTypesTest.moc"
