#include "BootScenarios.h"
#include "Scenarios.h"
#include "Text.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTest>

namespace {

const QString results = "/run/results/"_s;
const QString acknowledged = results + "acknowledged"_s;
const QString hostNamePrefix = "printer-"_s;

/// What each file that the daemon writes looks like when it is whole.
struct KnownFile
{
    QString path;
    QString whole;
};

const KnownFile knownFiles[] = {
    {"/etc/hostname"_s, "printer-\\d+|printer\n"_s},
    {"/etc/xdg/Tactora AB/region.conf"_s,
     "\\[wifi\\]\n(region=[A-Z]{2}\n|regionLocked=(true|false)\n){1,2}"_s},
    {"/etc/xdg/Tactora AB/main.conf"_s, "(\\[wifi\\]\nprefered=[A-Za-z]*\n)?"_s},
};
const QString wholeProvisioning =
    "\\[service_peap\\]\nType=wifi\nName=Office\nEAP=peap\nPhase2=MSCHAPV2\n?"_s;

bool isWhole(const QString &path, const QString &pattern)
{
    const QString content = contentOf(path);
    const bool whole =
        QRegularExpression(QRegularExpression::anchoredPattern(pattern)).match(content).hasMatch();
    if (!whole) {
        qWarning().noquote() << path << "is torn:" << content;
    }
    return whole;
}

bool everyFileIsWhole()
{
    bool whole = true;
    for (const KnownFile &file : knownFiles) {
        whole = (!QFile::exists(file.path) || isWhole(file.path, file.whole)) && whole;
    }
    const QDir connman("/var/lib/connman"_s);
    const QStringList files = connman.entryList({"*.config"_s}, QDir::Files);
    for (const QString &name : files) {
        whole = isWhole(connman.filePath(name), wholeProvisioning) && whole;
    }
    return whole;
}

/// Out of the machine, where no power cut reaches it.
void remember(int number)
{
    QFile file(acknowledged);
    if (file.open(QIODevice::Append)) {
        file.write(QByteArray::number(number) + '\n');
    }
}

/// The last number of which the daemon said that it had been written.
int lastRemembered()
{
    return contentOf(acknowledged).section(QLatin1Char('\n'), -2, -2).toInt();
}

int storedNumber()
{
    return contentOf("/etc/hostname"_s).midRef(hostNamePrefix.size()).toInt();
}

void callForTheCut()
{
    QFile(results + "cut"_s).open(QIODevice::WriteOnly);
}

} // namespace

/// The power is cut at a random instant while all of them are written; the disk then forgets what it was not
/// told to keep.
void BootScenarios::powerCutsLeaveEveryFileWhole()
{
    QVERIFY(everyFileIsWhole());
    QVERIFY2(storedNumber() >= lastRemembered(),
             qPrintable("%1 was acknowledged, %2 is there"_s.arg(lastRemembered()).arg(storedNumber())));
    QVERIFY(m_world.powerOn());
    QVERIFY(m_world.client().call("getWifiRegion").isValid());
    if (m_boot <= m_cuts) {
        writeUntilThePowerIsCut();
    }
}

void BootScenarios::writeUntilThePowerIsCut()
{
    test_support::DaemonClient &client = m_world.client();
    QVERIFY(m_world.connman().setWifiPowered(true));
    const QString office = m_world.connman().find("Office"_s, "ieee8021x"_s);
    QVERIFY(!office.isEmpty());
    client.send("forgetWifi", office);
    client.send("registerWiFiWpa2Enterprise", Secret::officeUser, office, Secret::officePassword, "peap"_s,
                "MSCHAPV2"_s);
    const int first = storedNumber() + 1;
    for (int number = first;; ++number) {
        const QString name = hostNamePrefix + QString::number(number);
        if (client.call("setHostName", name).toBool()) {
            remember(number);
        }
        if (number == first) {
            callForTheCut(); // from here on files are being written
        }
        client.call("setLockRegion", number % 2 == 0);
    }
}
