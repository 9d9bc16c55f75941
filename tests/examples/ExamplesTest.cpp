#include "EventWait.h"
#include "RegisteringScene.h"
#include "Suite.h"
#include <QTest>

using namespace scene;
using test_support::ChildProcess;
using test_support::PrivateBus;
using test_support::waitUntil;

/// The example clients, which do the same things in three languages.
class ExamplesTest : public QObject
{
    Q_OBJECT
private slots:
    void listsIdentifierStateAndName_data() { clients(); }
    void listsIdentifierStateAndName();
    void registersWithThePassphraseFromStandardInput_data() { clients(); }
    void registersWithThePassphraseFromStandardInput();
    void tellsTheReasonOfAFailure_data() { clients(); }
    void tellsTheReasonOfAFailure();
    void cancelsAnAttemptThatTakesTooLong_data() { clients(); }
    void cancelsAnAttemptThatTakesTooLong();
    void connectsByDhcp_data() { clients(); }
    void connectsByDhcp();
    void connectsWithAnAddressOfItsOwn_data() { clients(); }
    void connectsWithAnAddressOfItsOwn();
    void tellsSignalsAsTheyCome_data() { clients(); }
    void tellsSignalsAsTheyCome();
    void saysSoWhenThereIsNoDaemon_data() { clients(); }
    void saysSoWhenThereIsNoDaemon();

private:
    static void clients();
};

namespace {
enum ExitStatus { Done = 0, Refused = 1, NoAnswer = 3 };

const QString rightSecret = "right secret"_s;

/// The example of the current row, on the bus of the test.
class Example
{
public:
    explicit Example(const QStringList &arguments, const QString &input = {})
    {
        QFETCH(QString, program);
        m_process.start(program, arguments);
        m_process.write(input.toUtf8() + '\n');
        m_process.closeWriteChannel();
    }

    int exitStatus()
    {
        const bool ended = waitUntil([this] { return m_process.state() == QProcess::NotRunning; });
        return ended ? m_process.exitCode() : -1;
    }

    bool waitForLine(const QString &line)
    {
        return waitUntil([this, &line] {
            m_output += QString::fromUtf8(m_process.readAllStandardOutput());
            return m_output.split(QLatin1Char('\n')).contains(line);
        });
    }

    /// True once it listens, which it says in its first line.
    bool waitForFirstLine()
    {
        return waitUntil([this] { return m_process.canReadLine(); });
    }

    QString output() { return QString::fromUtf8(m_process.readAllStandardOutput()); }
    QString complaint() { return QString::fromUtf8(m_process.readAllStandardError()).trimmed(); }

private:
    ChildProcess m_process;
    QString m_output;
};

/// An attached daemon, and the network Den in reach. What a critical line says is told by other tests.
struct Printer : Operations
{
    bool begin()
    {
        simulator.addNetwork(network("Den"_s, "psk"_s));
        return Operations::begin();
    }

    ~Printer()
    {
        QVERIFY(daemon.stop());
        const QStringList problems = log().problems();
        for (const QString &problem : problems) {
            log().tolerate(problem);
        }
    }
};
} // namespace

void ExamplesTest::clients()
{
    QTest::addColumn<QString>("program");
    QTest::newRow("C++") << QStringLiteral(CPP_EXAMPLE);
    QTest::newRow("Python") << QStringLiteral(PYTHON_EXAMPLE);
    QTest::newRow("shell") << QStringLiteral(SHELL_EXAMPLE);
}

void ExamplesTest::listsIdentifierStateAndName()
{
    Printer printer;
    QVERIFY(printer.begin());
    Example example({"list"_s});
    QCOMPARE(example.exitStatus(), int(Done));
    QCOMPARE(example.output(), den + "\tidle\tDen\n"_s);
}

void ExamplesTest::registersWithThePassphraseFromStandardInput()
{
    Printer printer;
    QVERIFY(printer.begin());
    Example example({"register"_s, den}, rightSecret);
    QCOMPARE(example.exitStatus(), int(Done));
    QCOMPARE(printer.simulator.storedPassphrase(den), rightSecret);
}

void ExamplesTest::tellsTheReasonOfAFailure()
{
    Printer printer;
    QVERIFY(printer.begin());
    Example example({"register"_s, den}, "wrong secret"_s);
    QCOMPARE(example.exitStatus(), int(Refused));
    QCOMPARE(example.complaint(), "failed: invalid-key"_s);
}

void ExamplesTest::cancelsAnAttemptThatTakesTooLong()
{
    Printer printer;
    QVERIFY(printer.begin());
    printer.simulator.setTiming("association"_s, 60000);
    Example example({"--timeout"_s, "2"_s, "register"_s, den}, rightSecret);
    QCOMPARE(example.exitStatus(), int(NoAnswer));
    QVERIFY(printer.changes().contains(callOf(den, "Disconnect()"_s)));
}

void ExamplesTest::connectsByDhcp()
{
    Printer printer;
    QVERIFY(printer.begin());
    QVERIFY(printer.client.call("registerWifi", den, rightSecret).toBool());
    QVERIFY(printer.client.call("disconnect", den).toBool());
    printer.client.clearRecord();
    Example example({"connect"_s, den});
    QCOMPARE(example.exitStatus(), int(Done));
    QVERIFY(printer.client.waitFor("networkConnected(\"%1\")"_s.arg(den)));
    QCOMPARE(printer.client.call("getConfiguration", den).toMap().value("Method"_s).toString(), "dhcp"_s);
}

void ExamplesTest::connectsWithAnAddressOfItsOwn()
{
    Printer printer;
    QVERIFY(printer.begin());
    QVERIFY(printer.client.call("registerWifi", den, rightSecret).toBool());
    QVERIFY(printer.client.call("disconnect", den).toBool());
    const QString option = QTest::currentDataTag() == QByteArray("Python") ? "--address"_s : QString();
    QStringList arguments{"connect"_s, den, option, "10.0.0.5"_s, "255.255.255.0"_s, "10.0.0.1"_s};
    arguments.removeAll(QString());
    Example example(arguments);
    QCOMPARE(example.exitStatus(), int(Done));
    QCOMPARE(printer.client.call("getAddress", den).toString(), "10.0.0.5"_s);
    QCOMPARE(printer.client.call("activeNetworks").toStringList(), QStringList("Den"_s));
}

void ExamplesTest::tellsSignalsAsTheyCome()
{
    Printer printer;
    QVERIFY(printer.begin());
    Example example({"watch"_s});
    QVERIFY(example.waitForFirstLine());
    QVERIFY(!printer.client.call("connect", QString()).toBool());
    QVERIFY(example.waitForLine("error Can't connect with an empty network-name."_s));
}

void ExamplesTest::saysSoWhenThereIsNoDaemon()
{
    const PrivateBus bus;
    Example example({"list"_s});
    QCOMPARE(example.exitStatus(), int(NoAnswer));
    QVERIFY2(example.complaint().contains("com.tactora.NetworkManager"_s), qPrintable(example.complaint()));
}

static const Suite<ExamplesTest> examplesTest;
#include "ExamplesTest.moc"
