// The client on a terminal.
#include "ClientProgram.h"
#include "EventWait.h"
#include "FakeDaemon.h"
#include "PrivateBus.h"
#include "Suite.h"
#include "TerminalProgram.h"
#include "Text.h"
#include <memory>
#include <QFileInfo>
#include <QTest>

using namespace test_support;

namespace {

const QString prompt = "network> "_s;
const QString controlC = "\x03"_s;
const QString controlD = "\x04"_s;
const QString arrowUp = "\x1b[A"_s;

} // namespace

class ClientTerminalTest : public QObject
{
    Q_OBJECT
private slots:
    void init();

    void commandsAreTakenAtThePrompt();
    void lineBeforeIsOfferedAgain();
    void commandIsCompleted();
    void networkIsCompletedAndEscaped();
    void networkIsCompletedWithinQuotes();
    void numberInTheListIsANetwork();
    void passphraseIsNotShown();
    void identityIsShown();
    void terminalShowsAgainAfterAnInterruptedQuestion();
    void interruptAtThePromptBeginsTheLineAnew();
    void interruptDuringConnectLeadsBackToThePrompt();
    void plainTerminalIsNeverRedrawn();
    void tableIsShownOnATerminal();
    void shellCompletes_data();
    void shellCompletes();

private:
    bool waitForCall(const QString &call)
    {
        return waitUntil([&] { return m_daemon->calls().contains(call); });
    }

    PrivateBus m_bus;
    std::unique_ptr<FakeDaemon> m_daemon;
};

void ClientTerminalTest::init()
{
    m_daemon.reset(); // its name is taken until then
    m_daemon = std::make_unique<FakeDaemon>(m_bus.address());
    QVERIFY(m_daemon->isReady());
    m_daemon->setAnswer("networks"_s, QVariantMap{{kitchen, QVariantMap{{"Name"_s, "Big Kitchen"_s}}}});
}

void ClientTerminalTest::commandsAreTakenAtThePrompt()
{
    TerminalProgram client;
    QVERIFY(client.start(ClientProgram::path()));
    QVERIFY(client.waitFor(prompt));
    client.type("power\n"_s);
    QVERIFY(client.waitFor("on\n"_s));
    QVERIFY(client.waitFor(prompt));
    client.type("?\n"_s);
    QVERIFY(client.waitFor("connect NETWORK: "_s));
    QVERIFY(client.waitFor(prompt));
    client.type(controlD);
    QCOMPARE(client.waitForExit(), 0);
}

void ClientTerminalTest::lineBeforeIsOfferedAgain()
{
    TerminalProgram client;
    QVERIFY(client.start(ClientProgram::path()));
    QVERIFY(client.waitFor(prompt));
    client.type("region SE\n"_s);
    QVERIFY(client.waitFor("Done."_s));
    QVERIFY(client.waitFor(prompt));
    client.type(arrowUp + "\n"_s);
    QVERIFY(client.waitFor("Done."_s));
    QCOMPARE(m_daemon->calls(), (QStringList{"setWifiRegion SE"_s, "setWifiRegion SE"_s}));
    client.type("exit\n"_s);
    QCOMPARE(client.waitForExit(), 0);
}

void ClientTerminalTest::commandIsCompleted()
{
    TerminalProgram client;
    QVERIFY(client.start(ClientProgram::path()));
    QVERIFY(client.waitFor(prompt));
    client.type("techn\t\n"_s);
    QVERIFY(client.waitFor("Bluetooth: yes"_s));
    client.type("pow\tof\t\n"_s);
    QVERIFY(waitForCall("setWifiPower false"_s));
}

void ClientTerminalTest::networkIsCompletedAndEscaped()
{
    TerminalProgram client;
    QVERIFY(client.start(ClientProgram::path()));
    QVERIFY(client.waitFor(prompt));
    client.type("connect Bi\t"_s);
    QVERIFY(client.waitFor("Big\\ Kitchen"_s));
    client.type("\n"_s);
    QVERIFY(waitForCall("connect "_s + kitchen));
    QVERIFY(client.waitFor(prompt));
    client.type("disconnect Big\\ K\t\n"_s);
    QVERIFY(waitForCall("disconnect "_s + kitchen));
}

void ClientTerminalTest::networkIsCompletedWithinQuotes()
{
    TerminalProgram client;
    QVERIFY(client.start(ClientProgram::path()));
    QVERIFY(client.waitFor(prompt));
    client.type("connect \"Big K\t\n"_s);
    QVERIFY(waitForCall("connect "_s + kitchen));
}

void ClientTerminalTest::numberInTheListIsANetwork()
{
    TerminalProgram client;
    QVERIFY(client.start(ClientProgram::path()));
    QVERIFY(client.waitFor(prompt));
    client.type("list\n"_s);
    QVERIFY(client.waitFor("Big Kitchen"_s));
    client.type("connect 1\n"_s);
    QVERIFY(waitForCall("connect "_s + kitchen));
}

void ClientTerminalTest::passphraseIsNotShown()
{
    TerminalProgram client;
    QVERIFY(client.start(ClientProgram::path(), {"register"_s, "=a"_s}));
    QVERIFY(client.waitFor("Passphrase: "_s));
    client.type("sweet potato\n"_s);
    QCOMPARE(client.waitForExit(), 0);
    QCOMPARE(m_daemon->calls(), QStringList{"registerWifi a, sweet potato"_s});
    QCOMPARE(client.shown(), "Passphrase: \nDone.\n"_s);
}

void ClientTerminalTest::identityIsShown()
{
    TerminalProgram client;
    QVERIFY(client.start(ClientProgram::path(), {"register-enterprise"_s, "=a"_s, "peap"_s, "MSCHAPV2"_s}));
    QVERIFY(client.waitFor("Identity: "_s));
    client.type("me\n"_s);
    QVERIFY(client.waitFor("Password: "_s));
    client.type("six dots\n"_s);
    QCOMPARE(client.waitForExit(), 0);
    QCOMPARE(client.shown(), "Identity: me\nPassword: \nDone.\n"_s);
    QCOMPARE(m_daemon->calls(), QStringList{"registerWiFiWpa2Enterprise me, a, six dots, peap, MSCHAPV2"_s});
}

void ClientTerminalTest::terminalShowsAgainAfterAnInterruptedQuestion()
{
    TerminalProgram client;
    QVERIFY(client.start("/bin/sh"_s, {"-c"_s, "trap : INT; %1 register =a; echo status $?; stty -a"_s.arg(
                                                   ClientProgram::path())}));
    QVERIFY(client.waitFor("Passphrase: "_s));
    client.type("potato"_s + controlC);
    QVERIFY(client.waitFor("status 130"_s));
    QVERIFY(client.waitFor(" echo "_s));
    client.waitForExit();
    QVERIFY(!client.shown().contains("potato"_s));
    QCOMPARE(m_daemon->calls(), QStringList());
}

void ClientTerminalTest::interruptAtThePromptBeginsTheLineAnew()
{
    TerminalProgram client;
    QVERIFY(client.start(ClientProgram::path()));
    QVERIFY(client.waitFor(prompt));
    client.type("power o"_s);
    QVERIFY(client.waitFor("power o"_s));
    client.type(controlC);
    QVERIFY(client.waitFor(prompt));
    client.type("lock\n"_s);
    QVERIFY(client.waitFor("on\n"_s));
    QVERIFY(client.waitFor(prompt));
    QCOMPARE(m_daemon->calls(), QStringList{"getLockRegion (none)"_s});
    client.type(controlD);
    QCOMPARE(client.waitForExit(), 0);
}

void ClientTerminalTest::interruptDuringConnectLeadsBackToThePrompt()
{
    m_daemon->hold("connect"_s);
    TerminalProgram client;
    QVERIFY(client.start(ClientProgram::path()));
    QVERIFY(client.waitFor(prompt));
    client.type("connect =a\n"_s);
    QVERIFY(waitForCall("connect a"_s));
    client.type(controlC);
    QVERIFY(client.waitFor("Cancelled: the network is disconnected."_s));
    m_daemon->release();
    QVERIFY(client.waitFor(prompt));
    client.type("exit\n"_s);
    QCOMPARE(client.waitForExit(), 130);
}

void ClientTerminalTest::plainTerminalIsNeverRedrawn()
{
    TerminalProgram client;
    QVERIFY(client.start(ClientProgram::path(), {"--plain"_s}));
    QVERIFY(client.waitFor(prompt));
    client.type("list\n"_s);
    QVERIFY(client.waitFor("1. Big Kitchen, "_s));
    QVERIFY(client.waitFor(prompt));
    client.type(controlD);
    QCOMPARE(client.waitForExit(), 0);
    QVERIFY(!client.shown().contains(QLatin1Char('\x1b')));
    QVERIFY(!client.shown().contains(QLatin1Char('\b')));
}

void ClientTerminalTest::tableIsShownOnATerminal()
{
    TerminalProgram client;
    QVERIFY(client.start(ClientProgram::path(), {"list"_s}));
    QCOMPARE(client.waitForExit(), 0);
    QVERIFY2(client.shown().startsWith("NUMBER  NAME "_s), qPrintable(client.shown()));
}

void ClientTerminalTest::shellCompletes_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("completed");
    QTest::newRow("command") << "techn\t"_s
                             << "technologies "_s;
    QTest::newRow("word") << "lock of\t"_s
                          << "lock off "_s;
    QTest::newRow("network with a blank") << "disconnect Bi\t"_s
                                          << "disconnect Big\\ Kitchen "_s;
    QTest::newRow("network behind a quote") << "disconnect 'Bi\t"_s
                                            << "disconnect 'Big Kitchen' "_s;
    QTest::newRow("option") << "--js\t"_s
                            << "--json "_s;
}

void ClientTerminalTest::shellCompletes()
{
    QFETCH(const QString, typed);
    QFETCH(const QString, completed);
    m_daemon->setAnswer("activeNetworks"_s, QStringList{"Big Kitchen"_s, "Wired"_s});
    TerminalProgram shell;
    shell.setVariable("PS1"_s, "ready: "_s);
    shell.setVariable("PATH"_s,
                      QFileInfo(ClientProgram::path()).path() + ":"_s + qEnvironmentVariable("PATH"));
    QVERIFY(shell.start("/bin/bash"_s, {"--norc"_s, "--noprofile"_s, "-i"_s}));
    QVERIFY(shell.waitFor("ready: "_s));
    shell.type("source '" COMPLETION "'; bind 'set enable-bracketed-paste off'\n"_s);
    QVERIFY(shell.waitFor("ready: "_s));
    shell.type("network-managerctl "_s + typed);
    QVERIFY(shell.waitFor("network-managerctl "_s + completed));
}

static const Suite<ClientTerminalTest> clientTerminalTest;
#include "ClientTerminalTest.moc"
