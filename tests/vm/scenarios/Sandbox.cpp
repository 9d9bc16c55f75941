#include "Command.h"
#include "Device.h"
#include "Eventually.h"
#include "MachineScenarios.h"
#include "Systemd.h"

#include <QDateTime>
#include <QFile>
#include <QRegularExpression>
#include <QTest>

namespace {

const QString daemonUnit = QStringLiteral("network-manager.service");
constexpr double highestExposure = 2.0;

QByteArray hostNameFile()
{
    QFile file(QStringLiteral("/etc/hostname"));
    return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed() : QByteArray();
}

/// What a shell prints that the daemon would start.
QString asTheDaemonSees(const QString &command)
{
    const QString process = Systemd::property(daemonUnit, QStringLiteral("MainPID"));
    return outputOf(QStringLiteral("nsenter"),
                    {QStringLiteral("--target"), process, QStringLiteral("--mount"), QStringLiteral("--root"),
                     QStringLiteral("--"), QStringLiteral("sh"), QStringLiteral("-c"), command});
}

} // namespace

/// hostnamectl puts a new file in the old one's place, editors do likewise.
void MachineScenarios::hostNameIsWrittenAfterOthersReplacedItsFile()
{
    QVERIFY(run(QStringLiteral("hostnamectl"), {QStringLiteral("set-hostname"), QStringLiteral("second")}));
    QCOMPARE(hostNameFile(), QByteArray("second"));
    QCOMPARE(daemon().call(QStringLiteral("getHostName")).toString(), QStringLiteral("second"));

    QVERIFY(does(QStringLiteral("setHostName"), {QStringLiteral("third")}));

    QCOMPARE(hostNameFile(), QByteArray("third"));
    QCOMPARE(daemon().call(QStringLiteral("getHostName")).toString(), QStringLiteral("third"));
}

/// Kernel file systems aside, whose nodes have rules of their own.
void MachineScenarios::nothingButItsFilesIsWritable()
{
    const QString directories =
        asTheDaemonSees(QStringLiteral("find / '(' -path /proc -o -path /sys -o -path /dev ')' -prune -o "
                                       "-type d -writable -print -prune | sort"));
    const QString powerfulFiles =
        asTheDaemonSees(QStringLiteral("cd /etc && find passwd group shadow ld.so.cache default dbus-1 "
                                       "init.d systemd -writable && echo none"));

    QCOMPARE(directories, QStringLiteral("/etc\n/tmp\n/var/lib/connman\n/var/tmp\n"));
    QCOMPARE(powerfulFiles, QStringLiteral("none\n"));
}

void MachineScenarios::exposureStaysLow()
{
    const QString report = outputOf(QStringLiteral("systemd-analyze"),
                                    {QStringLiteral("security"), QStringLiteral("--no-pager"), daemonUnit});
    const QRegularExpression expression(QStringLiteral("Overall exposure level for [^:]*: ([0-9.]+)"));
    const QString exposure = expression.match(report).captured(1);

    qInfo().noquote() << "exposure" << exposure;
    QVERIFY(!exposure.isEmpty());
    QVERIFY(exposure.toDouble() <= highestExposure);
}

void MachineScenarios::journalHasThePriorities()
{
    const qint64 start = QDateTime::currentMSecsSinceEpoch();
    QVERIFY(!does(QStringLiteral("connect"), {QString()}));
    QVERIFY(!does(QStringLiteral("forgetWifi"), {QString()}));
    QVERIFY(does(QStringLiteral("setWifiRegion"), {QStringLiteral("SE")}));
    m_world.spoil();
    const auto tells = [&](const QString &priorities, const QString &text) {
        return Systemd::journal(daemonUnit, start, priorities).contains(text);
    };
    const QString critical = QStringLiteral("Can't connect with an empty network-name.");
    const QString warning = QStringLiteral("Can't forget an empty SSID.");
    const QString debug = QStringLiteral("The region has been set successfully.");

    QVERIFY(eventually([&] { return tells(QStringLiteral("debug..debug"), debug); }));
    QVERIFY(tells(QStringLiteral("err..err"), critical));
    QVERIFY(tells(QStringLiteral("warning..warning"), warning));
    QVERIFY(!tells(QStringLiteral("debug..debug"), critical));
    QVERIFY(!tells(QStringLiteral("info"), debug));
}

void MachineScenarios::cleaningTheUnitTakesNothing()
{
    m_world.spoil();
    const QString identifier = joinAtelier();
    QVERIFY(!identifier.isEmpty());
    QVERIFY(daemon().stopAndWait());

    outputOf(QStringLiteral("systemctl"),
             {QStringLiteral("clean"), QStringLiteral("--what=all"), daemonUnit});

    QVERIFY(Connman::hasStored(identifier, Secret::atelier));
    QCOMPARE(World::preferredNetwork(), QStringLiteral("Atelier"));
}
