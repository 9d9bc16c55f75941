// The bus policy on a real dbus-daemon: who gets through to the daemon's connection, and who does not.
#include "Suite.h"
#include "Text.h"

#include <grp.h>
#include <memory>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QFile>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <unistd.h>

namespace {

const QString serviceName = "com.tactora.NetworkManager"_s;
constexpr uint nobody = 65534;
constexpr int finishTimeout = 20000;

/// What the daemon exports: one method for the device's programs, at "/".
class Daemon : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.tactora.NetworkManager")
public slots:
    bool getWifiPower() { return true; }
};

/// What the daemon exports for ConnMan, at "/agent".
class Agent : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "net.connman.Agent")
public slots:
    bool Release() { return true; }
};

/// A private dbus-daemon that denies what the system bus denies, with one policy file (or none) included.
class Bus
{
public:
    explicit Bus(const QByteArray &policy)
    {
        // Other users must reach the socket.
        QFile::setPermissions(m_dir.path(), QFile::Permissions(0x7755));
        write("policy.conf"_s, policy);
        write("bus.conf"_s,
              "<busconfig><listen>unix:path=" + QFile::encodeName(m_dir.filePath("socket"_s)) +
                  "</listen><auth>EXTERNAL</auth><policy context=\"default\">"
                  "<allow user=\"*\"/><deny own=\"*\"/><deny send_type=\"method_call\"/>"
                  "<allow send_type=\"signal\"/><allow receive_type=\"signal\"/>"
                  "<allow send_requested_reply=\"true\" send_type=\"method_return\"/>"
                  "<allow send_requested_reply=\"true\" send_type=\"error\"/>"
                  "<allow receive_type=\"method_call\"/><allow receive_type=\"method_return\"/>"
                  "<allow receive_type=\"error\"/><allow send_destination=\"org.freedesktop.DBus\"/>"
                  "</policy><include>policy.conf</include></busconfig>");
        m_process.start("dbus-daemon"_s, {"--nofork"_s, "--print-address"_s,
                                          "--config-file="_s + m_dir.filePath("bus.conf"_s)});
        while (m_process.waitForReadyRead(finishTimeout) && !m_process.canReadLine()) {
        }
        m_address = QString::fromUtf8(m_process.readLine()).trimmed();
    }

    ~Bus()
    {
        m_process.terminate();
        m_process.waitForFinished(finishTimeout);
    }
    Q_DISABLE_COPY_MOVE(Bus)

    QString address() const { return m_address; }
    QByteArray complaints() { return m_process.readAllStandardError(); }

private:
    void write(const QString &name, const QByteArray &content)
    {
        QFile file(m_dir.filePath(name));
        if (file.open(QIODevice::WriteOnly)) {
            file.write(content);
        }
    }

    QTemporaryDir m_dir;
    QProcess m_process;
    QString m_address;
};

QByteArray contentOf(const char *path)
{
    QFile file(QString::fromUtf8(path));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// A group of every Debian system that nobody is a member of.
const char *const testGroup = "games";

} // namespace

class BusPolicyTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void installedFileNamesAGroup();
    void busTakesTheFileWithoutComplaint();
    void rootOwnsTheName();
    void othersCannotOwnTheName();
    void callsGetThrough_data();
    void callsGetThrough();
    void connectionMayHoldThousandsOfMatchRules();

private:
    enum class Who { Root, Member, Stranger };

    QString callAs(Who who, const QStringList &dbusSend);
    static QStringList identity(Who who);

    std::unique_ptr<Bus> m_bus;
    std::unique_ptr<QDBusConnection> m_connection;
    Daemon m_daemon;
    Agent m_agent;
};

void BusPolicyTest::init()
{
    m_bus = std::make_unique<Bus>(contentOf(POLICY_TEMPLATE).replace("@NETWORK_GROUP@", testGroup));
    QVERIFY2(!m_bus->address().isEmpty(), m_bus->complaints().constData());
    m_connection =
        std::make_unique<QDBusConnection>(QDBusConnection::connectToBus(m_bus->address(), "daemon"_s));
    QVERIFY(m_connection->isConnected());
    QVERIFY(m_connection->registerObject("/"_s, &m_daemon, QDBusConnection::ExportAllSlots));
    QVERIFY(m_connection->registerObject("/agent"_s, &m_agent, QDBusConnection::ExportAllSlots));
}

void BusPolicyTest::cleanup()
{
    m_connection.reset();
    QDBusConnection::disconnectFromBus("daemon"_s);
    m_bus.reset();
}

void BusPolicyTest::installedFileNamesAGroup()
{
    const QByteArray installed = contentOf(POLICY_INSTALLED);
    QVERIFY(installed.contains("<policy group=\""));
    QVERIFY(!installed.contains('@'));
}

void BusPolicyTest::busTakesTheFileWithoutComplaint()
{
    QCOMPARE(m_bus->complaints(), QByteArray());
}

void BusPolicyTest::rootOwnsTheName()
{
    QCOMPARE(m_connection->registerService(serviceName), geteuid() == 0);
}

void BusPolicyTest::othersCannotOwnTheName()
{
    if (geteuid() != 0) {
        QSKIP("only root can act as somebody else");
    }
    const QString answer =
        callAs(Who::Member, {"--dest=org.freedesktop.DBus"_s, "/"_s, "org.freedesktop.DBus.RequestName"_s,
                             "string:"_s + serviceName, "uint32:0"_s});
    QVERIFY2(answer.contains("AccessDenied"_s), qPrintable(answer));
}

void BusPolicyTest::callsGetThrough_data()
{
    QTest::addColumn<int>("who");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("method");
    QTest::addColumn<bool>("allowed");

    const auto power = "com.tactora.NetworkManager.getWifiPower"_s;
    const auto release = "net.connman.Agent.Release"_s;
    const auto introspect = "org.freedesktop.DBus.Introspectable.Introspect"_s;
    const auto root = "/"_s;
    const auto agent = "/agent"_s;
    QTest::newRow("root calls the daemon") << int(Who::Root) << root << power << true;
    QTest::newRow("root calls the agent") << int(Who::Root) << agent << release << true;
    QTest::newRow("member calls the daemon") << int(Who::Member) << root << power << true;
    QTest::newRow("member introspects the daemon") << int(Who::Member) << root << introspect << true;
    QTest::newRow("member calls the agent") << int(Who::Member) << agent << release << false;
    QTest::newRow("stranger calls the daemon") << int(Who::Stranger) << root << power << false;
    QTest::newRow("stranger calls the agent") << int(Who::Stranger) << agent << release << false;
    QTest::newRow("stranger introspects") << int(Who::Stranger) << root << introspect << false;
}

void BusPolicyTest::callsGetThrough()
{
    if (geteuid() != 0) {
        QSKIP("only root can act as somebody else");
    }
    QFETCH(const int, who);
    QFETCH(const QString, path);
    QFETCH(const QString, method);
    QVERIFY(m_connection->registerService(serviceName));

    // By either name of the connection: the policy is about the connection.
    const QStringList destinations = {serviceName, m_connection->baseService()};
    for (const QString &destination : destinations) {
        const QString answer = callAs(Who(who), {"--dest="_s + destination, path, method});
        const bool denied = answer.contains("org.freedesktop.DBus.Error.AccessDenied"_s);
        const bool answered = answer.startsWith("method return"_s);
        QVERIFY2(denied != answered, qPrintable(answer));
        QTEST(answered, "allowed");
    }
}

void BusPolicyTest::connectionMayHoldThousandsOfMatchRules()
{
    const auto rulesTaken = [](const QDBusConnection &connection) {
        constexpr int wanted = 5000;
        for (int i = 0; i < wanted; ++i) {
            auto call = QDBusMessage::createMethodCall("org.freedesktop.DBus"_s, "/org/freedesktop/DBus"_s,
                                                       "org.freedesktop.DBus"_s, "AddMatch"_s);
            call << "type='signal',path='/net/connman/service/n%1'"_s.arg(i);
            if (connection.call(call).type() == QDBusMessage::ErrorMessage) {
                return i;
            }
        }
        return wanted;
    };
    QCOMPARE(rulesTaken(*m_connection), 5000);

    // The bus by itself would not have allowed that many.
    const Bus plain("<busconfig/>");
    const auto connection = QDBusConnection::connectToBus(plain.address(), "plain"_s);
    QVERIFY(rulesTaken(connection) < 5000);
    QDBusConnection::disconnectFromBus("plain"_s);
}

QStringList BusPolicyTest::identity(Who who)
{
    const group *members = getgrnam(testGroup);
    switch (who) {
    case Who::Root:
        return {};
    case Who::Member:
        return {"--reuid=%1"_s.arg(nobody), "--regid=%1"_s.arg(nobody), "--groups=%1"_s.arg(members->gr_gid)};
    case Who::Stranger:
        return {"--reuid=%1"_s.arg(nobody), "--regid=%1"_s.arg(nobody), "--clear-groups"_s};
    }
    return {};
}

QString BusPolicyTest::callAs(Who who, const QStringList &dbusSend)
{
    QProcess caller;
    caller.setProcessChannelMode(QProcess::MergedChannels);
    QSignalSpy finished(&caller, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished));
    caller.start("setpriv"_s, identity(who)
                                  << "dbus-send"_s
                                  << "--bus="_s + m_bus->address() << "--print-reply"_s << dbusSend);
    // This process is the one called: its event loop has to run meanwhile.
    finished.wait(finishTimeout);
    return QString::fromUtf8(caller.readAll());
}

static const Suite<BusPolicyTest> busPolicyTest;
#include "BusPolicyTest.moc"
