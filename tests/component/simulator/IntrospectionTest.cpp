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
        while (m_reader.readNextStartElement()) {
            const QString member = m_reader.name() + " %1.%2"_s.arg(interface, attribute("name"));
            const QString arguments = readArguments().join(", "_s);
            if (!interface.startsWith("org.freedesktop.DBus."_s)) {
                m_lines.append(member + QLatin1Char('(') + arguments + QLatin1Char(')'));
            }
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

QStringList members(const char *interface, QStringList lines)
{
    return lines.replaceInStrings("%1"_s, QString::fromLatin1(interface));
}

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
    const QString propertiesType = "org.qtproject.QtDBus.QtTypeName.Out0=QVariantMap"_s;
    const QStringList settings{"method %1.GetProperties(out a{sv} properties, "_s + propertiesType + ")"_s,
                               "method %1.SetProperty(in s name, in v value)"_s,
                               "signal %1.PropertyChanged(s name, v value)"_s};
    QTest::newRow("manager")
        << "/"_s
        << members("net.connman.Manager",
                   settings +
                       QStringList{"method %1.GetTechnologies(out a(oa{sv}) technologies)"_s,
                                   "method %1.GetServices(out a(oa{sv}) services)"_s,
                                   "method %1.GetPeers(out a(oa{sv}) peers)"_s,
                                   "method %1.GetTetheringClients(out as tethering_clients)"_s,
                                   "method %1.RegisterAgent(in o path)"_s,
                                   "method %1.UnregisterAgent(in o path)"_s,
                                   "method %1.RegisterCounter(in o path, in u accuracy, in u period)"_s,
                                   "method %1.UnregisterCounter(in o path)"_s,
                                   "signal %1.TechnologyAdded(o path, a{sv} properties)"_s,
                                   "signal %1.TechnologyRemoved(o path)"_s,
                                   "signal %1.ServicesChanged(a(oa{sv}) changed, ao removed)"_s}) +
               members("net.connman.Clock", settings.mid(0, 1)) + QStringList{"node net"_s};
    QTest::newRow("technology") << "/net/connman/technology/wifi"_s
                                << members("net.connman.Technology",
                                           settings + QStringList{"method %1.Scan()"_s});
    QTest::newRow("service") << "/net/connman/service/"_s + serviceId
                             << members("net.connman.Service",
                                        settings + QStringList{"method %1.ClearProperty(in s name)"_s,
                                                               "method %1.Connect()"_s,
                                                               "method %1.Disconnect()"_s,
                                                               "method %1.Remove()"_s,
                                                               "method %1.MoveBefore(in o service)"_s,
                                                               "method %1.MoveAfter(in o service)"_s,
                                                               "method %1.ResetCounters()"_s});
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

static const Suite<IntrospectionTest> suite;
#include "IntrospectionTest.moc"
