// What the simulated ConnMan says of itself: its objects' interfaces, and its tree.

#include "DeviceFixture.h"
#include "Suite.h"
#include "Text.h"
#include <QTest>
#include <QXmlStreamReader>

using namespace test_support;
using namespace simulator_test;

namespace {
const QString serviceId = "wifi_raw_managed_psk"_s;

/// An object's own members, one line each as in C, and its children.
class Introspection
{
public:
    explicit Introspection(const QString &xml)
        : m_reader(xml)
    {
        m_reader.readNextStartElement();
        while (m_reader.readNextStartElement()) {
            if (m_reader.name() == QLatin1String("node")) {
                m_lines.append("node "_s + attribute("name"));
                m_reader.skipCurrentElement();
            } else {
                readInterface();
            }
        }
    }
    QStringList lines() const { return m_lines; }

private:
    void readInterface()
    {
        const QString interface = attribute("name");
        if (interface.startsWith("org.freedesktop.DBus."_s)) {
            m_reader.skipCurrentElement();
            return;
        }
        m_lines.append("interface "_s + interface);
        while (m_reader.readNextStartElement()) {
            const QString member = m_reader.name() + QLatin1Char(' ') + attribute("name");
            m_lines.append("%1(%2)"_s.arg(member, readArguments().join(", "_s)));
        }
    }

    QStringList readArguments()
    {
        QStringList arguments;
        while (m_reader.readNextStartElement()) {
            arguments.append(
                m_reader.name() == QLatin1String("arg")
                    ? "%1 %2 %3"_s.arg(attribute("direction"), attribute("type"), attribute("name")).trimmed()
                    : "%1=%2"_s.arg(attribute("name"), attribute("value")));
            m_reader.skipCurrentElement();
        }
        return arguments;
    }

    QString attribute(const char *name) const
    {
        return m_reader.attributes().value(QLatin1String(name)).toString();
    }

    QXmlStreamReader m_reader;
    QStringList m_lines;
};

QStringList inOrder(QStringList lines)
{
    lines.sort();
    return lines;
}
} // namespace

class IntrospectionTest : public DeviceFixture
{
    Q_OBJECT

private slots:
    void tellsMembersAndChildren_data();
    void tellsMembersAndChildren();
};

void IntrospectionTest::tellsMembersAndChildren_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QStringList>("lines");
    const QString getProperties =
        "method GetProperties(out a{sv} properties, org.qtproject.QtDBus.QtTypeName.Out0=QVariantMap)"_s;
    const QString setProperty = "method SetProperty(in s name, in v value)"_s;
    const QString propertyChanged = "signal PropertyChanged(s name, v value)"_s;
    QTest::newRow("manager") << "/"_s
                             << QStringList{"node net"_s,
                                            "interface net.connman.Manager"_s,
                                            getProperties,
                                            "method GetTechnologies(out a(oa{sv}) technologies)"_s,
                                            "method GetServices(out a(oa{sv}) services)"_s,
                                            "method GetPeers(out a(oa{sv}) peers)"_s,
                                            "method RegisterAgent(in o path)"_s,
                                            "method UnregisterAgent(in o path)"_s,
                                            propertyChanged,
                                            "signal TechnologyAdded(o path, a{sv} properties)"_s,
                                            "signal TechnologyRemoved(o path)"_s,
                                            "signal ServicesChanged(a(oa{sv}) changed, ao removed)"_s};
    QTest::newRow("technology") << "/net/connman/technology/wifi"_s
                                << QStringList{"interface net.connman.Technology"_s, getProperties,
                                               setProperty, "method Scan()"_s, propertyChanged};
    QTest::newRow("service") << "/net/connman/service/"_s + serviceId
                             << QStringList{"interface net.connman.Service"_s,
                                            getProperties,
                                            setProperty,
                                            "method Connect()"_s,
                                            "method Disconnect()"_s,
                                            "method Remove()"_s,
                                            propertyChanged};
    QTest::newRow("net") << "/net"_s << QStringList{"node connman"_s};
    QTest::newRow("net/connman") << "/net/connman"_s << QStringList{"node service"_s, "node technology"_s};
    QTest::newRow("services") << "/net/connman/service"_s << QStringList{"node "_s + serviceId};
    QTest::newRow("technologies") << "/net/connman/technology"_s
                                  << QStringList{"node ethernet"_s, "node wifi"_s};
    QTest::newRow("no such place") << "/nope"_s << QStringList();
}

void IntrospectionTest::tellsMembersAndChildren()
{
    QFETCH(QString, path);
    QFETCH(QStringList, lines);
    m_simulator->addService(serviceId);
    const Answer answer =
        m_client->call("net.connman"_s, path, "org.freedesktop.DBus.Introspectable"_s, "Introspect"_s);
    QVERIFY2(!answer.isError, qPrintable(answer.error));
    const QStringList told = Introspection(answer.arguments.first().toString()).lines();
    QCOMPARE(inOrder(told), inOrder(lines));
}

static const Suite<IntrospectionTest> introspectionTest;
#include "IntrospectionTest.moc"
