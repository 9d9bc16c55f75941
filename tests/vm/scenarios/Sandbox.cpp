#include "Command.h"
#include "Device.h"
#include "EventWait.h"
#include "MachineScenarios.h"
#include "Systemd.h"
#include "Text.h"

#include <QDateTime>
#include <QFile>
#include <QRegularExpression>
#include <QTest>

using test_support::eventually;

namespace {

constexpr double highestExposure = 2.0;

QByteArray hostNameFile()
{
    QFile file("/etc/hostname"_s);
    return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed() : QByteArray();
}

/// What a shell prints that the daemon would start.
QString asTheDaemonSees(const QString &command)
{
    const QString process = Systemd::property(daemonUnit, "MainPID"_s);
    return outputOf("nsenter"_s,
                    {"--target"_s, process, "--mount"_s, "--root"_s, "--"_s, "sh"_s, "-c"_s, command});
}

} // namespace

/// hostnamectl puts a new file in the old one's place, editors do likewise.
void MachineScenarios::hostNameIsWrittenAfterOthersReplacedItsFile()
{
    QVERIFY(run("hostnamectl"_s, {"set-hostname"_s, "second"_s}));
    QCOMPARE(hostNameFile(), QByteArray("second"));
    QCOMPARE(client().call("getHostName").toString(), "second"_s);

    QVERIFY(does("setHostName", "third"_s));

    QCOMPARE(hostNameFile(), QByteArray("third"));
    QCOMPARE(client().call("getHostName").toString(), "third"_s);
}

/// Kernel file systems aside, whose nodes have rules of their own.
void MachineScenarios::nothingButItsFilesIsWritable()
{
    const QString directories =
        asTheDaemonSees("find / '(' -path /proc -o -path /sys -o -path /dev ')' -prune -o "
                        "-type d -writable -print -prune | sort"_s);
    const QString powerfulFiles =
        asTheDaemonSees("cd /etc && find passwd group shadow ld.so.cache default dbus-1 "
                        "init.d systemd -writable && echo none"_s);

    QCOMPARE(directories, "/etc\n/tmp\n/var/lib/connman\n/var/tmp\n"_s);
    QCOMPARE(powerfulFiles, "none\n"_s);
}

void MachineScenarios::exposureStaysLow()
{
    const QString report = outputOf("systemd-analyze"_s, {"security"_s, "--no-pager"_s, daemonUnit});
    const QRegularExpression expression("Overall exposure level for [^:]*: ([0-9.]+)"_s);
    const QString exposure = expression.match(report).captured(1);

    qInfo().noquote() << "exposure" << exposure;
    QVERIFY(!exposure.isEmpty());
    QVERIFY(exposure.toDouble() <= highestExposure);
}

void MachineScenarios::journalHasThePriorities()
{
    const qint64 start = QDateTime::currentMSecsSinceEpoch();
    QVERIFY(!does("connect", QString()));
    QVERIFY(!does("forgetWifi", QString()));
    QVERIFY(does("setWifiRegion", "SE"_s));
    m_world.spoil();
    const auto tells = [&](const QString &priorities, const QString &text) {
        return Systemd::journal(daemonUnit, start, priorities).contains(text);
    };
    const QString critical = "Can't connect with an empty network-name."_s;
    const QString warning = "Can't forget an empty SSID."_s;
    const QString debug = "The region has been set successfully."_s;

    QVERIFY(eventually([&] { return tells("debug..debug"_s, debug); }));
    QVERIFY(tells("err..err"_s, critical));
    QVERIFY(tells("warning..warning"_s, warning));
    QVERIFY(!tells("debug..debug"_s, critical));
    QVERIFY(!tells("info"_s, debug));
}

void MachineScenarios::cleaningTheUnitTakesNothing()
{
    m_world.spoil();
    const QString identifier = joinAtelier();
    QVERIFY(!identifier.isEmpty());
    QVERIFY(m_world.stopDaemon());

    outputOf("systemctl"_s, {"clean"_s, "--what=all"_s, daemonUnit});

    QVERIFY(Connman::hasStored(identifier, Secret::atelier));
    QCOMPARE(World::preferredNetwork(), "Atelier"_s);
}
