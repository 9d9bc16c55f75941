#include "ConnmanTypes.h"

#include "Loopback.h"
#include "OddValues.h"
#include "Suite.h"
#include "Text.h"

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
    const QVariantMap properties{
        {NameKey, "Café"_s}, {StrengthKey, QVariant::fromValue(uchar(61))}, {StateKey, "idle"_s}};
    const QVariant sent = QVariant::fromValue(info("/net/connman/service/x"_s, properties));
    const auto received = qdbus_cast<ConnmanServiceInfo>(m_loopback.argument(sent));
    QCOMPARE(received.path.path(), "/net/connman/service/x"_s);
    QCOMPARE(received.properties, properties);
    QCOMPARE(received.properties.value(StrengthKey).userType(), int(QMetaType::UChar));
}

void ConnmanTypesTest::recordWithoutPropertiesComesThroughTheBus()
{
    const QVariant sent = QVariant::fromValue(info("/x"_s));
    const auto received = qdbus_cast<ConnmanServiceInfo>(m_loopback.argument(sent));
    QCOMPARE(received.path.path(), "/x"_s);
    QVERIFY(received.properties.isEmpty());
}

void ConnmanTypesTest::propertiesAreSentInTheMapsOrder()
{
    const QVariantMap properties{{"c"_s, 1}, {"a"_s, 2}, {"b"_s, 3}};
    const QVariant sent = QVariant::fromValue(info("/x"_s, properties));
    const auto raw = m_loopback.argument(sent).value<QDBusArgument>();
    raw.beginStructure();
    QDBusObjectPath path;
    raw >> path;
    QCOMPARE(raw.currentSignature(), "a{sv}"_s);
    const QStringList keys = keysInWireOrder(raw);
    raw.endStructure();
    QCOMPARE(keys, QStringList(properties.keys()));
}

void ConnmanTypesTest::valuesAreUnwrappedAndNotConvertedFurther()
{
    const QVariantMap ethernet{{"Interface"_s, "eth0"_s}};
    const QVariantMap properties{{NameKey, "Wired"_s}, {"Ethernet"_s, ethernet}};
    const QVariant sent = QVariant::fromValue(info("/x"_s, properties));
    const auto received = qdbus_cast<ConnmanServiceInfo>(m_loopback.argument(sent));
    QCOMPARE(received.properties.value(NameKey).userType(), int(QMetaType::QString));
    const QVariant nested = received.properties.value("Ethernet"_s);
    QCOMPARE(nested.userType(), qMetaTypeId<QDBusArgument>());
    QCOMPARE(qdbus_cast<QVariantMap>(nested), ethernet);
}

void ConnmanTypesTest::laterEntryOfARepeatedKeyWins()
{
    const RepeatedKey twice{NameKey, "first"_s, "second"_s};
    const InfoWithRepeatedKey record{QDBusObjectPath("/x"_s), twice};
    const QVariant raw = m_loopback.argument(QVariant::fromValue(record));
    QCOMPARE(raw.value<QDBusArgument>().currentSignature(), "(oa{sv})"_s);
    const QVariantMap expected{{NameKey, "second"_s}};
    QCOMPARE(qdbus_cast<ConnmanServiceInfo>(raw).properties, expected);
}

void ConnmanTypesTest::readingARecordForgetsItsEarlierProperties()
{
    const QVariant sent = QVariant::fromValue(info("/new"_s, {{StateKey, "idle"_s}}));
    ConnmanServiceInfo record = info("/old"_s, {{NameKey, "Old"_s}});
    m_loopback.argument(sent).value<QDBusArgument>() >> record;
    QCOMPARE(record.path.path(), "/new"_s);
    QCOMPARE(record.properties.keys(), {StateKey});
}

void ConnmanTypesTest::listComesThroughTheBusInOrder()
{
    const ConnmanServiceInfoList sent{
        info("/net/connman/service/c"_s, {{NameKey, "C"_s}}),
        info("/net/connman/service/a"_s),
        info("/net/connman/service/b"_s, {{StateKey, "idle"_s}, {NameKey, QString()}}),
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
    QCOMPARE(raw.value<QDBusArgument>().currentSignature(), "a(oa{sv})"_s);
    QVERIFY(qdbus_cast<ConnmanServiceInfoList>(raw).isEmpty());
}

void ConnmanTypesTest::readingAListForgetsItsEarlierRecords()
{
    const QVariant sent = QVariant::fromValue(ConnmanServiceInfoList{info("/new"_s)});
    ConnmanServiceInfoList list{info("/old"_s), info("/older"_s)};
    m_loopback.argument(sent).value<QDBusArgument>() >> list;
    QCOMPARE(paths(list), {"/new"_s});
}

void ConnmanTypesTest::recordPrintsItsPathAndProperties()
{
    const QVariantMap properties{{NameKey, "Home"_s}, {StateKey, "idle"_s}};
    QCOMPARE(printed(info("/net/connman/service/x"_s, properties)),
             "ConnmanServiceInfo(\"/net/connman/service/x\", "
             "QMap((\"Name\", QVariant(QString, \"Home\"))"
             "(\"State\", QVariant(QString, \"idle\"))))"_s);
}

void ConnmanTypesTest::recordWithoutPropertiesPrintsAnEmptyMap()
{
    QCOMPARE(printed(info("/x"_s)), "ConnmanServiceInfo(\"/x\", QMap())"_s);
}

void ConnmanTypesTest::printingARecordLeavesTheStreamAsItWas()
{
    QString spaced;
    QDebug(&spaced) << 1 << info("/x"_s) << 2 << "t"_s;
    QCOMPARE(spaced.trimmed(), "1 ConnmanServiceInfo(\"/x\", QMap()) 2 \"t\""_s);

    QString tight;
    QDebug(&tight).nospace().noquote() << 1 << info("/x"_s) << 2 << "t"_s;
    QCOMPARE(tight, "1ConnmanServiceInfo(/x, QMap())2t"_s);
}

static const Suite<ConnmanTypesTest> connmanTypesTest;
#include "ConnmanTypesTest.moc"
